// The engine's settings and modes.
#pragma once

#include <cstdint>
#include <string_view>

struct EngineState {
    std::int32_t depth_limit; // deepest iteration the search may start, in quarter-plies
    std::uint8_t force_mode;  // the engine makes no move of its own
    std::uint8_t analyze_mode;
    std::uint8_t san_notation; // moves are written in SAN instead of coordinate notation
    std::uint8_t use_book;
    std::uint8_t post_thinking; // thinking lines are printed
    std::uint8_t ponder;        // the engine thinks on the opponent's time
    std::uint8_t pondering;     // a ponder search is running now
    std::uint8_t use_random;    // the engine may choose at random among equally good moves
    std::uint8_t use_resign;
    std::uint8_t verbose;
    std::int32_t hash_size; // all transposition tables together, in megabytes
};
extern EngineState engine_state;

inline constexpr std::int32_t DEFAULT_HASH_SIZE = 128; // megabytes

inline constexpr std::string_view PROGRAM_NAME = "Korvane";
inline constexpr std::string_view PROGRAM_VERSION = "1.0.3";
inline constexpr std::string_view AUTHORSHIP = "by the Korvane developers";

// The defaults at start-up.
void InitializeEngineState();

// Resets the settings that do not outlast a game: the depth limit and pondering.
void NewEngineState();

// Prints the text as a verbose notice; does nothing unless in verbose mode.
void PrintVerbose(std::string_view text);
