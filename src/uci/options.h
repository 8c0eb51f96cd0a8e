// The options that a UCI front end can set.
#pragma once

#include <cstdint>
#include <string_view>

struct UciOptions {
    bool own_book;
    bool analyse_mode;          // if true, the book and the strength limit are off
    bool is_debugging;          // if true, unknown commands are reported
    std::int32_t move_overhead; // communication delay per move, in milliseconds
    bool limit_strength;
    std::int32_t elo;
};
extern UciOptions uci_options;

// Sets the defaults and loads the default book if it exists.
void InitializeUciOptions();

// Sends the "option" lines to the front end.
void TellOptions();

// Carries out "setoption name NAME [value VALUE]". If the option is unknown or the value is
// invalid, reports the error and changes nothing.
void SetUciOption(std::string_view arguments);
