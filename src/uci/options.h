// The options that a UCI front end can set.
#pragma once

#include <cstdint>
#include <string_view>

struct UciOptions {
    bool own_book;
    bool analyse_mode;          // no book, and no level
    bool is_debugging;          // "debug on": lines without a command are told
    std::int32_t move_overhead; // milliseconds of every move that the front end takes for itself
    bool limit_strength;
    std::int32_t elo;
};
extern UciOptions uci_options;

// The defaults, and the default book where there is one.
void InitializeUciOptions();

// Declares the options to the front end.
void TellOptions();

// Carries out "setoption name NAME [value VALUE]". What cannot be set is told, and changes nothing.
void SetUciOption(std::string_view arguments);
