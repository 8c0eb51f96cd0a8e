// How a game begins. Each function keeps the records of a game consistent: the board, the game
// record, the header, the book and the history.
#pragma once

#include <cstdint>
#include <string_view>

// Starts a new game from the initial position, with an empty header and empty tables. Keeps the
// settings of the command line and the front end.
void NewGame();

// Restarts the game from the position of the FEN text. Keeps tags, clocks and tables. Returns
// false, and changes nothing, if the text is not a playable position.
bool SetBoardFen(std::string_view text);

// Restarts the game from its starting position. Keeps tags and tables, and the clocks too if the
// game began from a set-up position. The moves that were played stay in the array of the history
// until others overwrite them.
void RestartGame();
