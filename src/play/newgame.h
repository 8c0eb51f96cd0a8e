// How a game begins. Every way leaves all records of a game in step: the board, the game record,
// the header, the book and the history.
#pragma once

#include <cstdint>
#include <string_view>

// Starts a new game from the initial position, with an empty header and empty tables. The settings
// that the command line and the front end chose survive it.
void NewGame();

// Starts the game anew from the position that the FEN text describes. Tags, clocks and tables
// stay. False, and nothing changed, when the text is not a playable position.
bool SetBoardFen(std::string_view text);

// Starts the game anew from where it began. Tags and tables stay, and the clocks too if it began
// from a set-up position. The moves that were played stay in the history's array until others
// overwrite them.
void RestartGame();
