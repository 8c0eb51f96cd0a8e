// Draws the board as text.
#pragma once

#include <string>

struct DiagramStyle {
    bool is_unicode;  // draw pieces as chess symbols; otherwise as letters
    bool is_coloured; // use 256 colours; otherwise '*' marks the last move and '!' a king in check
    bool is_flipped;  // draw the board from black's side
};

// Returns nine lines: the eight ranks, then the file letters. Each line ends with a line feed.
std::string WrittenDiagram(const DiagramStyle& style);
