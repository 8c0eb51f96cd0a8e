#include "support.h"
#include "cases.h"

#include "frame/startup.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "play/newgame.h"
#include "play/turns.h"
#include "protocol/poll.h"
#include "search/hash.h"
#include "search/records.h"

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <utility>

void StartAt(const std::string& fen) {
    engine_state.san_notation = 0;
    NewGame();
    if (fen == "startpos") return;
    ASSERT_TRUE(SetBoardFen(fen)) << fen;
}

void Play(const std::string& moves) {
    std::istringstream words(moves);
    for (std::string word; words >> word;) {
        Move move;
        ASSERT_TRUE(FindLegalMove(word, move)) << word;
        PlayMove(move);
    }
}

std::string LegalMoves() {
    MoveList list;
    std::string text;
    GenerateAllLegalMoves(list, LastMove());
    for (std::int32_t i = 0; i < list.count; ++i) {
        if (i > 0) text += ' ';
        text += WrittenMove(list.moves[i]);
    }
    return text;
}

std::string ReadCases(const char* file_name) {
    std::ifstream file(std::string(KORVANE_CASES) + "/" + file_name);
    std::string text(std::istreambuf_iterator<char>(file), {});
    if (text.empty()) std::abort(); // no case would be run
    return text;
}

namespace {

using SuitesOfFiles = std::map<std::string, std::set<std::string>>;

// Those that the cases of each file name, and those that took cases from it.
std::pair<SuitesOfFiles, SuitesOfFiles>& Suites() {
    static std::pair<SuitesOfFiles, SuitesOfFiles> suites;
    return suites;
}

} // namespace

bool RegisterFile(const char* suite, const char* file_name, CheckOfCase<TextCase> check) {
    constexpr std::size_t MAX_FIELDS = 4;
    static std::deque<std::vector<TextCase>> files; // of the whole run
    auto& [suites_of_cases, suites_of_tests] = Suites();
    std::vector<TextCase>& cases = files.emplace_back();
    const std::string group = std::filesystem::path(suite).filename().string() + ".";
    std::istringstream lines(ReadCases(file_name));
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.front() == '#') continue;
        std::vector<std::string> fields;
        for (std::size_t from = 0, bar = 0; bar != std::string::npos; from = bar + 3) {
            bar = line.find(" | ", from);
            fields.push_back(line.substr(from, bar - from));
        }
        const std::size_t dot = fields[0].find('.');
        if (dot != std::string::npos)
            suites_of_cases[file_name].insert(fields[0].substr(0, dot + 1));
        if (dot != std::string::npos && !fields[0].starts_with(group)) continue;
        cases.push_back({fields[0].substr(dot + 1), {fields.begin() + 1, fields.end()}});
        cases.back().fields.resize(MAX_FIELDS);
    }
    if (cases.empty()) std::abort();
    suites_of_tests[file_name].insert(group);
    return RegisterCases<TextCase>(suite, cases, check);
}

TEST(Cases, AllBelongToASuite) {
    for (const auto& [file, suites] : Suites().first) {
        if (suites.empty()) continue; // one suite has them all
        EXPECT_EQ(suites, Suites().second[file]) << file;
    }
}

std::vector<Reference> ReadReferences() {
    std::vector<Reference> references;
    std::istringstream lines(ReadCases("thinking.txt"));
    for (std::string line, word; std::getline(lines, line);) {
        std::istringstream words(line);
        if (line.starts_with("name ")) {
            words >> word >> references.emplace_back().name;
        } else if (line.starts_with("position ")) {
            references.back().fen = line.substr(line.find(' ') + 1);
        } else if (line.starts_with("depth ")) {
            words >> word >> references.back().plies;
        } else if (!line.empty() && line.front() != '#') {
            references.back().text += line + "\n";
        }
    }
    return references;
}

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    InitializeTables();
    engine_state.use_book = 0;
    InitializeHashTable(engine_state.hash_size);
    search_host.tell_line = PrintThinking;
    const int result = RUN_ALL_TESTS();
    FinalizeHashTable();
    return result;
}
