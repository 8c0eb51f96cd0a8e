// The command interpreter of the Chess Engine Communication Protocol, version 2. A row of the
// command table contains a command's name and its behaviour, both when idle and during a search.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

// How a line is compared with a command's name.
enum class Match : std::uint8_t { EXACT, PREFIX };

// The treatment of a command that arrives during a search.
enum class Hearing : std::uint8_t {
    WAIT,            // left for the main loop, which reads it after the search
    STOP,            // ends the search; left for the main loop
    ANSWER,          // taken and carried out; the search continues
    ANSWER_AND_STOP, // taken and carried out; ends the search
    DROP             // taken and ignored; the search continues
};

struct DuringSearch {
    Match match; // may be looser than Command::match: a prefix can end a search
    Hearing on_own_time;
    Hearing pondering;
    Hearing analysing;
};

// The most common rows.
inline constexpr DuringSearch TO_WAIT{Match::EXACT, Hearing::WAIT, Hearing::WAIT, Hearing::WAIT};
inline constexpr DuringSearch TO_STOP{Match::PREFIX, Hearing::STOP, Hearing::STOP, Hearing::STOP};
inline constexpr DuringSearch TO_REPLY{Match::EXACT, Hearing::ANSWER, Hearing::ANSWER,
                                       Hearing::ANSWER};

using CommandHandler = void (*)(std::string_view arguments);

// A row of the command table. Handlers get the text after the name.
struct Command {
    std::string_view name;
    Match match;
    CommandHandler carry_out; // when no search runs
    DuringSearch during_search = TO_WAIT;
    // Handler during a search; null: carry_out. It must not read the position, which is inside the
    // tree then; move generation, move making and FEN output assert this.
    CommandHandler answer = nullptr;
};

// True if the line equals the name (EXACT) or begins with it (PREFIX).
inline bool IsMatch(std::string_view line, std::string_view name, Match match) {
    return match == Match::EXACT ? line == name : line.starts_with(name);
}

// Returns all commands; PollCommands reads the same table.
std::span<const Command> CommandTable();

// Carries out one command line, including any search that it starts. Answers an unknown line with
// an error line.
void ParseCommand(const char* line);
