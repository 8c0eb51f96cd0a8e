#include "conversation.h"

// GCC 12 warns about its own <regex> under the sanitizers.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

#include "cases.h"
#include "engine_process.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <regex>
#include <span>
#include <sstream>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

struct Conversation {
    std::string directory = std::filesystem::temp_directory_path() / "korvane_test_XXXXXX";
    std::unique_ptr<EngineProcess> program = {};
    Texts transcript = {};
    std::array<std::string, 10> groups =
        {}; // texts for %1 to %9, from the last match of a pattern with groups
};

void ReplaceAll(std::string& text, std::string_view old, std::string_view by) {
    for (std::size_t at = 0; (at = text.find(old, at)) != std::string::npos; at += by.size()) {
        text.replace(at, old.size(), by);
    }
}

// Splits the text at each separator. Drops empty parts.
Texts Split(const std::string& text, const std::string& separator) {
    Texts parts;
    for (std::size_t from = 0, end = 0; end != std::string::npos; from = end + separator.size()) {
        end = text.find(separator, from);
        if (end != from && from < text.size()) parts.push_back(text.substr(from, end - from));
    }
    return parts;
}

// Expands "{3 text #}" to "text 1text 2text 3".
std::string Repeat(std::string text) {
    for (std::size_t open = 0; (open = text.find('{', open)) != std::string::npos; ++open) {
        const std::size_t blank = text.find_first_not_of("0123456789", open + 1);
        if (blank == open + 1 || blank == std::string::npos || text[blank] != ' ') continue;
        const int count = std::stoi(text.substr(open + 1));
        std::size_t close = blank;
        for (int depth = 1; close < text.size() && depth > 0;) {
            ++close;
            depth += text[close] == '{' ? 1 : text[close] == '}' ? -1 : 0;
        }
        const std::string repeated = text.substr(blank + 1, close - blank - 1);
        std::string all;
        for (int i = 1; i <= count; ++i) {
            std::string one = repeated;
            ReplaceAll(one, "#", std::to_string(i));
            all += one;
        }
        text.replace(open, close + 1 - open, all);
    }
    return text;
}

// Replaces the escapes, such as "\n" and "\x41", by their bytes.
std::string ToBytes(const std::string& text) {
    constexpr std::string_view LETTERS = "strn0e", BYTES{" \t\r\n\0", 5};
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t letter =
            text[i] == '\\' && i + 1 < text.size() ? LETTERS.find(text[i + 1]) : std::string::npos;
        if (text.compare(i, 2, "\\x") == 0) {
            bytes += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
            i += 3;
        } else if (letter != std::string::npos) {
            bytes += BYTES.substr(letter, 1); // adds nothing for "\e"
            ++i;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

// True if the line equals the expected text. If the text begins with "~ ", the rest is a pattern,
// and the line must match the pattern. Stores the groups of the match in `groups`.
bool IsLine(const std::string& expected, const std::string& line, std::smatch& groups) {
    if (!expected.starts_with("~ ")) return line == ToBytes(expected);
    return std::regex_match(line, groups, std::regex(expected.substr(2)));
}

// True if the lines match the expected lines. An expected line "..." matches any number of lines,
// but no line of standard error. `before` is the number of earlier lines, which have all matched.
// Raises `most` to the number of lines that match from the start of the transcript, for the report
// of a failure.
bool IsTranscript(std::span<const std::string> lines, std::span<const std::string> expected,
                  std::size_t before, std::size_t& most) {
    std::smatch groups;
    std::size_t i = 0;
    for (; i < expected.size() && expected[i] != "..."; ++i) {
        if (i == lines.size() || !IsLine(expected[i], lines[i], groups)) return false;
        most = std::max(most, before + i + 1);
    }
    if (i == expected.size()) return i == lines.size();
    for (std::size_t end = i; end <= lines.size(); ++end) {
        if (IsTranscript(lines.subspan(end), expected.subspan(i + 1), before + end, most))
            return true;
        if (end < lines.size() && lines[end].starts_with("error: ")) return false;
    }
    return false;
}

void Start(Conversation& talk, const std::string& command) {
    talk.program.reset();
    talk.program = std::make_unique<EngineProcess>(ToBytes(command), talk.directory);
}

void Send(Conversation& talk, const std::string& text) { SendText(*talk.program, ToBytes(text)); }

void SendLine(Conversation& talk, const std::string& line) { Send(talk, line + "\\n"); }

void SendMoves(Conversation& talk, const std::string& moves) {
    for (const std::string& move : Split(moves, " ")) {
        SendLine(talk, "usermove " + move);
    }
}

void Flood(Conversation& talk, const std::string& text) {
    SendWithoutReading(*talk.program, ToBytes(text));
}

void WaitForLine(Conversation& talk, const std::string& expected) {
    std::smatch groups;
    for (std::string line; ReadLine(*talk.program, talk.program->output, line);) {
        talk.transcript.push_back(line);
        if (!IsLine(expected, line, groups)) continue;
        if (groups.size() > 1) std::ranges::copy(groups, talk.groups.begin());
        return;
    }
    ADD_FAILURE() << "no such line: " << expected;
}

void WaitForEnd(Conversation& talk, const std::string&) {
    std::string line;
    const auto add = [&](const std::string& before) {
        if (WINDOWS_PROGRAMS) ReplaceAll(line, ".exe", "");
        talk.transcript.push_back(before + line);
    };
    while (ReadLine(*talk.program, talk.program->output, line)) {
        add("");
    }
    while (ReadLine(*talk.program, talk.program->errors, line)) {
        add("error: ");
    }
    talk.transcript.push_back(WaitForExit(*talk.program));
}

void HangUp(Conversation& talk, const std::string&) { CloseInput(*talk.program); }

void Refuse(Conversation&, const std::string&) { ADD_FAILURE() << "no step is called so"; }

void StopListening(Conversation& talk, const std::string&) { CloseOutput(*talk.program); }

void AddShell(Conversation& talk, const std::string& command) {
    const pid_t pid = talk.program ? talk.program->pid : 0;
    std::istringstream lines(RunShell(talk.directory, pid, command));
    for (std::string line; std::getline(lines, line);) {
        talk.transcript.push_back(line);
    }
}

void Save(Conversation& talk, const std::string& file_name) {
    std::ofstream file(talk.directory + "/" + file_name);
    for (const std::string& line : std::exchange(talk.transcript, {})) {
        file << line << '\n';
    }
}

// The texts that begin a step, and the functions that carry out the rest of the step. The first
// entry that matches a step counts.
const std::pair<std::string_view, void (*)(Conversation&, const std::string&)> STEPS[] = {
    {"< ", WaitForLine},
    {"$ ", AddShell},
    {"!run ", Start},
    {"!send ", Send},
    {"!flood ", Flood},
    {"!hang up", HangUp},
    {"!stop listening", StopListening},
    {"!end", WaitForEnd},
    {"!save ", Save},
    {"!", Refuse},
    {"moves ", SendMoves},
    {"", SendLine},
};

// Carries out the steps and returns the transcript. Stops at the first step that fails. The last
// step must wait for a line, a shell command or the end of the program. Otherwise the test fails,
// because the transcript would not contain the program's answer to the last step.
Texts Converse(const std::string& steps) {
    Conversation talk;
    if (!mkdtemp(talk.directory.data())) return {"no directory for the test"};
    const auto* entry = std::begin(STEPS);
    for (std::string step : Split(Repeat(steps), "; ")) {
        for (std::size_t group = 1; group < talk.groups.size(); ++group) {
            ReplaceAll(step, "%" + std::to_string(group), talk.groups[group]);
        }
        SCOPED_TRACE("at the step \"" + step.substr(0, 200) + "\"");
        entry = std::ranges::find_if(
            STEPS, [&](const auto& known) { return step.starts_with(known.first); });
        EXPECT_TRUE(talk.program || entry->second == Start || entry->second == AddShell)
            << "no program runs";
        if (!testing::Test::HasFailure()) entry->second(talk, step.substr(entry->first.size()));
        if (testing::Test::HasFailure()) break;
    }
    EXPECT_TRUE(entry->second == WaitForLine || entry->second == AddShell ||
                entry->second == WaitForEnd)
        << "the last step waits for nothing";
    talk.program.reset();
    std::error_code ignored;
    std::filesystem::remove_all(talk.directory, ignored);
    return talk.transcript;
}

} // namespace

void CheckConversation(const std::string& steps, const std::string& expected,
                       const std::string& left_out) {
    Texts lines = Converse(steps);
    const std::regex pattern(left_out);
    std::erase_if(lines, [&](const std::string& line) {
        return !left_out.empty() && std::regex_match(line, pattern);
    });
    const Texts wanted = Split(Repeat(expected), "; ");
    std::size_t right = 0;
    if (IsTranscript(lines, wanted, 0, right) && !testing::Test::HasFailure()) return;
    std::string report = "expected: " + expected + "\ngot " + std::to_string(lines.size()) +
                         " lines, of which " + std::to_string(right) + " are as expected; then:\n";
    for (std::size_t i = right; i < std::min(lines.size(), right + 30); ++i) {
        report += lines[i] + "\n";
    }
    ADD_FAILURE() << report;
}

namespace {

// A case. `fields` contains the fields of the case's own line. `suite` contains the fields of the
// line that begins its suite: name, steps, transcript and pattern.
struct Script {
    std::string name;
    Texts fields, suite;
};

void CheckScript(const Script& script) {
    Texts fields = script.suite;
    for (std::string& field : fields) {
        for (std::size_t i = 1; i <= 9; ++i) {
            ReplaceAll(field, "$" + std::to_string(i),
                       i < script.fields.size() ? script.fields[i] : "");
        }
    }
    CheckConversation(fields[1], fields[2], fields[3]);
}

// Returns the lines of the file without comments and empty lines. Joins each line with the
// continuation lines that follow it.
Texts ReadLines(const char* file_name) {
    std::istringstream file(ReadCases(file_name));
    Texts lines;
    for (std::string line; std::getline(file, line);) {
        line.erase(line.find_last_not_of(' ') + 1);
        if (line.empty() || line.front() == '#') continue;
        const std::size_t start = line.find_first_not_of(' ');
        if (start == 0) {
            lines.push_back(line);
        } else {
            std::string& last = lines.back();
            last += (last.ends_with(" |") || line[start] == '|' ? " " : "; ") + line.substr(start);
        }
    }
    return lines;
}

// Splits a line at " | ". Fields may be empty.
Texts ToFields(const std::string& line) {
    Texts fields;
    for (std::size_t from = 0, bar = 0; bar != std::string::npos; from = bar + 2) {
        bar = (line + " ").find(" | ", from);
        const std::string field = from < line.size() ? line.substr(from, bar - from) : "";
        fields.push_back(field.substr(field.starts_with(' ') ? 1 : 0));
    }
    fields.resize(std::max<std::size_t>(fields.size(), 4));
    return fields;
}

// Replaces each defined word in the line by its text. `words` contains the "let" lines, as pairs of
// word and text.
void Define(std::string& line, const std::vector<std::pair<std::string, std::string>>& words) {
    const auto is_part = [&](std::size_t at) {
        return at < line.size() && (line[at] == '_' || std::isalpha(line[at]) != 0);
    };
    for (const auto& [word, text] : words) {
        for (std::size_t at = 0; (at = line.find(word, at)) != std::string::npos;) {
            const bool is_word = !(at > 0 && is_part(at - 1)) && !is_part(at + word.size());
            if (is_word) line.replace(at, word.size(), text);
            at += is_word ? text.size() : 1;
        }
    }
}

} // namespace

bool RegisterConversations(const char* file_name) {
    static std::deque<Script> scripts; // registered tests refer to these scripts
    std::vector<std::pair<std::string, std::string>> words;
    std::vector<Texts> suites;
    bool has_cases = true;
    for (std::string& line : ReadLines(file_name)) {
        Define(line, words);
        if (line.starts_with("let ")) {
            const std::size_t sign = line.find(" = ");
            words.emplace_back(line.substr(4, sign - 4), line.substr(sign + 3));
        } else if (line.starts_with("suite ")) {
            if (std::exchange(has_cases, false)) suites.clear();
            suites.push_back(ToFields(line.substr(6)));
        } else {
            if (suites.empty()) std::abort(); // the case has no suite
            has_cases = true;
            const Texts fields = ToFields(line);
            for (const Texts& suite : suites) {
                scripts.push_back({fields[0], fields, suite});
                RegisterCases<Script>(suite[0].c_str(), {&scripts.back(), 1}, CheckScript);
            }
        }
    }
    if (!has_cases) std::abort(); // the last suite has no cases
    return true;
}
