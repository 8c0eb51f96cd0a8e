// "go": the search of a UCI front end, the lines that arrive during it, and its reports.
#pragma once

#include "search/records.h"

#include <cstdint>
#include <string_view>

// The callbacks of the search.
extern const SearchHost UCI_HOST;

// The effect of a line that arrives during a search.
enum class LineEffect : std::uint8_t {
    ANSWER,     // carried out at once
    STOP,       // ends the search
    PONDER_HIT, // the opponent has played the expected move
    WAIT        // ends the search and is carried out after it
};

// Returns the effect of a line, after carrying it out if that is ANSWER. Set at start-up, because
// the commands are above "go".
extern LineEffect (*hear_line)(std::string_view line);

// Carries out "go" with its limits and sends one line "bestmove" at the end. An infinite search or
// a ponder search sends it only after the front end has ended the search.
void Go(std::string_view arguments);

// Polls the front end during a measurement, which only "stop" ends. Other commands that would end a
// search, and the end of the input, wait until the measurement is done.
void ListenWhileMeasuring();
