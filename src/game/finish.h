// The end of the game: mate, stalemate, the draw rules and resignation.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <span>

// The side to move has a legal move. `last_move`, here and below, is the last move played or null;
// an en-passant capture depends on it.
bool HasLegalMove(const Move* last_move);

// The side to move is in check.
bool IsCheck();

// The side to move is checkmated, stalemated.
bool IsMate(const Move* last_move);
bool IsStalemate(const Move* last_move);

// The position has occurred at least n times in the game, now included. Only for the game's
// position, not for one of the search: it compares the boards of the history.
bool IsNfoldRepetition(std::int32_t n);
bool IsThreefoldRepetition();

bool IsFiftyMoveRule();

// Neither side can mate with what is left.
bool IsInsufficientMaterial();

// Mate, stalemate or insufficient material.
bool IsEndOfGame(const Move* last_move);

// What can be played of a line that starts from the position: all before a move that is not legal,
// and nothing behind one that ends the game.
std::span<const Move> PlayablePart(std::span<const Move> line);

// The engine should resign: its last five moves were all judged hopeless. Ask after the engine's
// move and before that move is saved in the history.
bool ShouldResign();

// The line that announces the end of the game, or null while it goes on.
const char* EndOfGameLine(const Move* last_move);
