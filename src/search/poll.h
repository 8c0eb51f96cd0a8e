// The command poll: the front end is heard while the search thinks. What it may say is a table that
// the start-up hands down, so the search need not know who carries commands out.
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

// A row of the command table. The handlers get what stands behind the name.
struct Command {
    std::string_view name;
    Match match;
    CommandHandler carry_out; // when no search runs
    DuringSearch during_search = TO_WAIT;
    // The same during a search; null: as carry_out. The position is somewhere in the tree then, and
    // the handler must not read it. Generation, making of moves and FEN assert that nobody does.
    CommandHandler answer = nullptr;
};

// Gives the poll its table; without one it hears nothing.
void SetCommandTable(std::span<const Command> table);

// The line has the name, as a whole or at its beginning.
bool IsMatch(std::string_view line, std::string_view name, Match match);

// Looks at the waiting lines and treats each as its row says; a line without a row waits. 1: the
// search must stop; 0: it goes on.
std::uint8_t PollCommands();
