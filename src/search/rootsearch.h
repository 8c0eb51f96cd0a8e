// The root of the search: iterative deepening, the clock between iterations, thinking lines and
// the choice of the move.
#pragma once

#include "board/move.h"

#include <cstdint>

// The score of a move that no iteration has searched; lower than any other.
inline constexpr std::int32_t UNSEARCHED_EVAL = -2'000'000;

// Searches the position, on the engine's clock unless it ponders or analyses, down to the depth
// limit but at least three plies. Returns the score of the chosen move in centipawns. `best_move`
// and `expected_reply` may be null; the reply is a fake move when none is expected. `last_move` is
// the move that led here, or null. Without a legal move nothing is searched or chosen, and the
// result is UNSEARCHED_EVAL.
std::int32_t FindBestMove(Move* best_move, Move* expected_reply, const Move* last_move);
