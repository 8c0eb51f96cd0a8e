// The command interpreter of the Chess Engine Communication Protocol, version 2. The command table
// gives the handler of each command and the treatment of the command during a search.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

// EXACT: the line equals the command's name. PREFIX: the line begins with the name.
enum class Match : std::uint8_t { EXACT, PREFIX };

// The treatment of a command that arrives during a search.
enum class Hearing : std::uint8_t {
    WAIT,            // carried out after the search
    STOP,            // ends the search, then is carried out
    ANSWER,          // carried out at once; the search continues
    ANSWER_AND_STOP, // carried out at once; the search ends
    DROP             // ignored; the search continues
};

struct DuringSearch {
    Match match; // matching rule during a search; may differ from Command::match
    Hearing on_own_time;
    Hearing pondering;
    Hearing analysing;
};

// The most common treatments.
inline constexpr DuringSearch TO_WAIT{Match::EXACT, Hearing::WAIT, Hearing::WAIT, Hearing::WAIT};
inline constexpr DuringSearch TO_STOP{Match::PREFIX, Hearing::STOP, Hearing::STOP, Hearing::STOP};
inline constexpr DuringSearch TO_REPLY{Match::EXACT, Hearing::ANSWER, Hearing::ANSWER,
                                       Hearing::ANSWER};

using CommandHandler = void (*)(std::string_view arguments);

// A row of the command table. A handler receives the text after the command's name.
struct Command {
    std::string_view name;
    Match match;
    CommandHandler carry_out; // handler while no search runs
    DuringSearch during_search = TO_WAIT;
    // Handler during a search, or null to call carry_out. A handler that is called during a search
    // must not use the board, because the board then contains a position of the search tree.
    CommandHandler answer = nullptr;
};

inline bool IsMatch(std::string_view line, std::string_view name, Match match) {
    return match == Match::EXACT ? line == name : line.starts_with(name);
}

// Returns the command table. ParseCommand and PollCommands both use it.
std::span<const Command> CommandTable();

// Carries out a command line. If the command starts a search, returns after the search. Reports an
// unknown command to the front end.
void ParseCommand(const char* line);
