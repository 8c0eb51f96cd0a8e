// Positions in Forsyth-Edwards Notation (FEN): set up, written, and logged.
#pragma once

#include <cstdint>
#include <string_view>

// Sets up the position that the text describes and makes it the start of the game's history. A
// text that is no playable position is refused: 0, and nothing is changed.
std::uint8_t SetBoardFen(std::string_view text);

// The position as FEN, in a static buffer.
const char* GetBoardFen();

// Appends the position to the log of final positions.
void WriteFenBoard();
