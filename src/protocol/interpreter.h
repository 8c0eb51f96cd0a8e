// The command interpreter of the Chess Engine Communication Protocol, version 2. A row of the
// command table holds a command's name, and what it does idle and during a search.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

// How a line is compared with a command's name.
enum class Match : std::uint8_t { EXACT, PREFIX };

// What becomes of a command that comes during a search.
enum class Hearing : std::uint8_t {
    WAIT,            // stays for the main loop, which gets it after the search
    STOP,            // ends the search and stays for the main loop
    ANSWER,          // is taken and carried out; the search goes on
    ANSWER_AND_STOP, // is taken and carried out, and ends the search
    DROP             // is taken and forgotten; the search goes on
};

struct DuringSearch {
    Match match; // a search is ended by the first letters alone; the main loop reads more strictly
    Hearing on_own_time;
    Hearing pondering;
    Hearing analysing;
};

// What most commands do.
inline constexpr DuringSearch TO_WAIT{Match::EXACT, Hearing::WAIT, Hearing::WAIT, Hearing::WAIT};
inline constexpr DuringSearch TO_STOP{Match::PREFIX, Hearing::STOP, Hearing::STOP, Hearing::STOP};
inline constexpr DuringSearch TO_REPLY{Match::EXACT, Hearing::ANSWER, Hearing::ANSWER,
                                       Hearing::ANSWER};

using CommandHandler = void (*)(std::string_view arguments);

// A row of the command table. The handlers get the arguments, from the end of the name on.
struct Command {
    std::string_view name;
    Match match;
    CommandHandler carry_out; // when no search runs
    DuringSearch during_search = TO_WAIT;
    // The same during a search; null: as carry_out. The position is somewhere in the tree then, and
    // the handler must not read it. Generation, making of moves and FEN assert that nobody does.
    CommandHandler answer = nullptr;
};

// The line has the name, as a whole or at its beginning.
inline bool IsMatch(std::string_view line, std::string_view name, Match match) {
    return match == Match::EXACT ? line == name : line.starts_with(name);
}

// All commands; the search polls for them too.
std::span<const Command> CommandTable();

// Carries out one command line, thinking included if the command starts it. An unknown line gets an
// error line.
void ParseCommand(const char* line);
