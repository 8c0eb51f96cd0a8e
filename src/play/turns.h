// The turns of a game: the engine's move, the user's move, pondering and analysis.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <string_view>

// Chooses the engine's move, from the book or by searching, plays and announces it, and ponders
// afterwards if that is wanted. Without a legal move, or in a history that is full, it only notes
// that the engine has this colour.
void MakeEngineMove();

// Finds the legal move that a token of either notation names. Returns false, with `move` undefined,
// if there is none or the history is full.
bool FindLegalMove(std::string_view token, Move& move);

// Plays a legal move without an answer and without a test for the end of the game: board, game
// record, book and history follow. The history must not be full.
void PlayMove(const Move& move);

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
