// The options that a UCI front end can set.
#pragma once

#include <cstdint>
#include <string_view>

struct UciOptions {
    bool own_book;
    bool analyse_mode;          // no book, and no level
    bool is_debugging;          // "debug on": report lines without a command
    std::int32_t move_overhead; // milliseconds reserved per move for communication delay
    bool limit_strength;
    std::int32_t elo;
};
extern UciOptions uci_options;

// Sets the defaults and loads the default book if it exists.
void InitializeUciOptions();

// Declares the options to the front end.
void TellOptions();

// Carries out "setoption name NAME [value VALUE]". An invalid option or
// value is reported and changes nothing.
void SetUciOption(std::string_view arguments);
