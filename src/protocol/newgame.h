// The new-game sequence.
#pragma once

// Starts a game from the initial position. The settings that the command line and the front end
// chose survive it.
void NewGame();

// Makes the position, which has just been set up, the start of a game: no move has been played, and
// none can be taken back. Clocks and tables stay.
void RestartGame();
