// The start of a game. Each function sets up the board, game_state, book_state and the state
// history, and keeps pgn_game_info consistent with them.
#pragma once

#include <cstdint>
#include <string_view>

// Starts a new game from the initial position. Resets the PGN header, the clocks, the depth limit
// and the transposition tables. Keeps all other settings.
void NewGame();

// Restarts the game from a FEN position. Keeps the PGN tags, the clocks and the transposition
// tables. Returns false, and changes nothing, if the text is not a playable position.
bool SetBoardFen(std::string_view text);

// Restarts the game from its starting position. Keeps the PGN tags and the transposition tables.
// Resets the clocks unless the game began from a FEN position. The caller can still read the old
// moves in state_history.moves, until new moves overwrite them.
void RestartGame();
