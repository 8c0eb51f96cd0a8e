// The turns of a game: the engine's move, the user's move, pondering and analysis.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <string_view>

// Chooses the engine's move from the book or by searching, plays and announces it, then ponders if
// pondering is on. Only records the engine's colour if there is no legal move or the history is
// full.
void MakeEngineMove();

// Finds the legal move that a token of either notation names. Returns false, with `move` undefined,
// if there is none or the history is full.
bool FindLegalMove(std::string_view token, Move& move);

// Plays a legal move: updates the board, game record, book and history. Neither replies nor tests
// for the end of the game. The history must not be full.
void PlayMove(const Move& move);

// Plays the user's move, a token in either notation. If it is not legal, reports that to the front
// end and returns false.
bool MakeUserMove(std::string_view token);

// If the game has ended, announces that to the front end. `last_move` is the last move
// played or null.
void CheckEndOfGame(const Move* last_move);

// Searches on the opponent's time until a command ends the search or it completes.
void PonderMove();

// Searches the position, without a limit in analyze mode, until a command ends the search or it
// completes.
void AnalyzePosition();
