// Playing a game: the engine's moves, the user's moves, pondering and analysis.
#pragma once

#include "board/move.h"

#include <cstdint>
#include <string_view>

// Chooses a move from the book or by a search, plays the move and sends it to the front end. Then
// ponders if pondering is on, the game continues and the book has no reply. Does nothing if there
// is no legal move or the history is full.
void MakeEngineMove();

// Finds the legal move for a token in SAN or coordinate notation. Returns false if the token is not
// a legal move or the history is full. `move` is then undefined.
bool FindLegalMove(std::string_view token, Move& move);

// Plays a legal move: updates the board, game_state, book_state and the state history. Does not
// check for the end of the game. The history must not be full.
void PlayMove(const Move& move);

// Plays the user's move, given in SAN or coordinate notation. If the move is illegal, reports this
// to the front end and returns false.
bool MakeUserMove(std::string_view token);

// If the game has ended, sets game_state.game_over and sends the result to the front end.
// `last_move` is null if no move has been played.
void CheckEndOfGame(const Move* last_move);

// Searches during the opponent's turn until the search completes or a command ends it.
void PonderMove();

// Searches the position until the search completes or a command ends it. In analyze mode there is
// no time limit.
void AnalyzePosition();
