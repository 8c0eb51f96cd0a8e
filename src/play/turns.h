// The turns of a game: the engine's move, the user's move, pondering and analysis.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <string_view>

// Chooses the engine's move, from the book or by searching, plays and announces it, and ponders
// afterwards if that is wanted. Without a legal move, or in a history that is full, it only notes
// that the engine has this colour.
void MakeEngineMove();

// Plays a move without an answer, and without a test for the end of the game: for programs that
// replay games. False, and nothing changed, when the token names no legal move or the history is
// full.
bool PlayMove(std::string_view token);

// Plays the user's move, a token in either notation. False, after a complaint to the front end,
// when it is not legal.
bool MakeUserMove(std::string_view token);

// Announces the end of the game to the front end if it has come. `last_move` is the last move
// played or null.
void CheckEndOfGame(const Move* last_move);

// Thinks on the opponent's time until a command comes or the search ends by itself.
void PonderMove();

// Thinks about the position, in analyze mode without a limit, until a command comes or the search
// ends by itself.
void AnalyzePosition();
