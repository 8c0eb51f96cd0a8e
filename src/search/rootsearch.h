// The root of the search: iterative deepening, the clock between iterations and the choice of
// the move.
#pragma once

#include "board/move.h"
#include "board/score.h"
#include "search/records.h"

#include <cstdint>

// The limits for the game in play. No clock while the engine ponders or analyses.
SearchLimits GameLimits();

// Searches the position down to the limits. Returns the score of the chosen move in centipawns.
// `best_move` and `expected_reply` may be null; the reply is a fake move when none is expected.
// `last_move` is the move that led here, or null. Without a move to search, sets fake moves and
// returns UNSEARCHED_EVAL.
std::int32_t FindBestMove(Move* best_move, Move* expected_reply, const Move* last_move,
                          const SearchLimits& limits = GameLimits());
