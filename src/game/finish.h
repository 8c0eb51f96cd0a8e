// The end of the game: mate, stalemate, the draw rules and resignation.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <span>

// True if the side to move has a legal move. `last_move`, here and below, is the last move played
// or null; it decides en passant.
bool HasLegalMove(const Move* last_move);

bool IsCheck();

bool IsMate(const Move* last_move);
bool IsStalemate(const Move* last_move);

// True if the position has occurred at least n times in the game, now included. Only for the game's
// position, not within a search: it compares the boards of the history.
bool IsNfoldRepetition(std::int32_t n);
bool IsThreefoldRepetition();

bool IsFiftyMoveRule();

// True if neither side has material to mate.
bool IsInsufficientMaterial();

// True on mate, stalemate or insufficient material.
bool IsEndOfGame(const Move* last_move);

// Returns the part of the line that can be played from the position: up to the first illegal move
// or the end of the game.
std::span<const Move> PlayablePart(std::span<const Move> line);

// True if the engine's last five moves were all hopeless. Call after the engine's move and before
// that move is saved in the history.
bool ShouldResign();

// The line that announces the end of the game, or null if the game continues.
const char* EndOfGameLine(const Move* last_move);
