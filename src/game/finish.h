// The end of the game: mate, stalemate, the draw rules and resignation.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <span>

// True if the side to move has a legal move. In this header, the parameter `last_move` is the last
// move played, or null. It determines whether an en passant capture is possible.
bool HasLegalMove(const Move* last_move);

bool IsCheck();

bool IsMate(const Move* last_move);
bool IsStalemate(const Move* last_move);

// True if the current position has occurred at least n times in the game, counting the current
// occurrence. Must not be called during a search, because the search does not update the state
// history.
bool IsNfoldRepetition(std::int32_t n);
bool IsThreefoldRepetition();

bool IsFiftyMoveRule();

// True if neither side has enough material to checkmate.
bool IsInsufficientMaterial();

// True on mate, stalemate or insufficient material. Ignores repetition and the fifty-move rule.
bool IsEndOfGame(const Move* last_move);

// Returns the part of the line that can be played from the current position. This part ends before
// the first illegal move, or after the first move that ends the game.
std::span<const Move> PlayablePart(std::span<const Move> line);

// True if resignation is enabled and the engine was clearly lost after each of its last five moves.
// Call after the engine's move and before that move is saved in the history.
bool ShouldResign();

// Returns the output line for the end of the game, such as "1/2-1/2 {Stalemate}" or "resign".
// Returns null if the game continues.
const char* EndOfGameLine(const Move* last_move);
