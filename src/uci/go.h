// The UCI command "go": the search, the input during the search, and the reports to the front end.
#pragma once

#include "search/records.h"

#include <cstdint>
#include <string_view>

// The callbacks of a search for a UCI front end.
extern const SearchHost UCI_HOST;

// The effect of a line that arrives during a search.
enum class LineEffect : std::uint8_t {
    ANSWER,     // is carried out at once; the search continues
    STOP,       // ends the search
    PONDER_HIT, // the opponent has played the expected reply
    WAIT        // ends the search, then is carried out
};

// Callback for a line that arrives during a search. Carries out a command with the effect ANSWER.
// Returns the line's effect. Set at start-up to HearDuringSearch.
extern LineEffect (*hear_line)(std::string_view line);

// Carries out "go": searches within the limits in the arguments and sends "bestmove". An infinite
// search or a ponder search waits for a command of the front end before it sends "bestmove".
void Go(std::string_view arguments);

// Must be called before a perft or a bench. Only "stop" ends such a measurement early. A command
// that would end a search, or the end of the input, takes effect after the measurement.
void ListenWhileMeasuring();
