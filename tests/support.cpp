#include "support.h"
#include "cases.h"

#include "frame/startup.h"
#include "game/enginestate.h"
#include "notation/notation.h"
#include "play/newgame.h"
#include "play/turns.h"
#include "search/hash.h"
#include "search/records.h"

#include <cstdlib>
#include <deque>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

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

std::string ReadCases(const char* file_name) {
    std::ifstream file(std::string(KORVANE_CASES) + "/" + file_name);
    std::string text(std::istreambuf_iterator<char>(file), {});
    if (text.empty()) std::abort(); // an empty file would check nothing
    return text;
}

namespace {

// For each file that RegisterFile has read: the suites of the file that are not registered yet.
std::map<std::string, std::set<std::string>>& SuitesLeft() {
    static std::map<std::string, std::set<std::string>> suites;
    return suites;
}

} // namespace

bool RegisterFile(const char* suite, const char* file_name, CheckOfCase<TextCase> check) {
    constexpr std::size_t MAX_FIELDS = 4;
    static std::deque<std::vector<TextCase>> files; // registered tests refer to these cases
    std::vector<TextCase>& cases = files.emplace_back();
    const std::string text = suite, group = text.substr(text.find('/') + 1);
    const bool is_new_file = SuitesLeft().try_emplace(file_name).second;
    std::istringstream lines(ReadCases(file_name));
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.front() == '#') continue;
        std::vector<std::string> fields;
        for (std::size_t from = 0, bar = 0; bar != std::string::npos; from = bar + 3) {
            bar = line.find(" | ", from);
            fields.push_back(line.substr(from, bar - from));
        }
        const std::size_t dot = fields[0].find('.');
        const std::string named = dot == std::string::npos ? group : fields[0].substr(0, dot);
        if (is_new_file) SuitesLeft()[file_name].insert(named);
        if (named != group) continue;
        cases.push_back({fields[0].substr(dot + 1), {fields.begin() + 1, fields.end()}});
        cases.back().fields.resize(MAX_FIELDS);
    }
    if (cases.empty()) std::abort(); // a suite without cases would check nothing
    SuitesLeft()[file_name].erase(group);
    return RegisterCases<TextCase>(suite, cases, check);
}

TEST(Cases, AllBelongToASuite) {
    for (const auto& [file, suites] : SuitesLeft()) {
        EXPECT_TRUE(suites.empty()) << file << ": " << *suites.begin();
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
    const int result = RUN_ALL_TESTS();
    FinalizeHashTable();
    return result;
}
