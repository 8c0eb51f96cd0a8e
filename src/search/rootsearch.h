// The root of the search: iterative deepening, time control and the choice of the move.
#pragma once

#include "board/move.h"
#include "board/score.h"
#include "search/records.h"

#include <cstdint>

// Returns the search limits for the current game. There is no time limit while the engine ponders
// or analyses.
SearchLimits GameLimits();

// Searches the position within the limits. Returns the score of the chosen move in centipawns.
// `last_move` is the move that led to the position, or null. `best_move` and `expected_reply` may
// be null. `expected_reply` is set to a fake move if no reply is expected. If there is no move to
// search, the function sets `best_move` and `expected_reply` to fake moves and returns
// UNSEARCHED_EVAL.
std::int32_t FindBestMove(Move* best_move, Move* expected_reply, const Move* last_move,
                          const SearchLimits& limits = GameLimits());
