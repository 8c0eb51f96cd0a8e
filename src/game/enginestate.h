// The engine's settings and modes.
#pragma once

#include <cstdint>
#include <string_view>

struct EngineState {
    std::int32_t depth_limit; // maximum iteration depth, in quarter-plies
    std::uint8_t force_mode;  // set if the engine plays neither side
    std::uint8_t analyze_mode;
    std::uint8_t san_notation; // set to write moves in SAN, clear for coordinate notation
    std::uint8_t use_book;
    std::uint8_t post_thinking; // set to print thinking lines
    std::uint8_t ponder;        // set to search on the opponent's time
    std::uint8_t pondering;     // set during a search on the opponent's time
    std::uint8_t use_random;    // set to choose at random among moves of nearly equal score
    std::uint8_t use_resign;
    std::uint8_t verbose;
    std::int32_t hash_size; // total size of the transposition tables, in megabytes
};
extern EngineState engine_state;

inline constexpr std::int32_t DEFAULT_HASH_SIZE = 128; // in megabytes

inline constexpr std::string_view PROGRAM_NAME = "Korvane";
inline constexpr std::string_view PROGRAM_VERSION = "1.0.3";
inline constexpr std::string_view AUTHORSHIP = "by the Korvane developers";

// Sets the defaults at program start.
void InitializeEngineState();

// Resets the depth limit and the pondering flag for a new game.
void NewEngineState();

// Prints "verbose: " and the text if verbose mode is on.
void PrintVerbose(std::string_view text);
