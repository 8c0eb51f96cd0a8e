// Draws the board as text.
#pragma once

#include <string>

struct DiagramStyle {
    bool is_unicode; // true to draw pieces as chess symbols, false to draw letters
    // True to use 256 colours. Otherwise '*' marks the last move, and '!' marks a king in check.
    bool is_coloured;
    bool is_flipped; // true to draw the board from black's side
};

// Returns nine lines: the eight ranks, then the file letters. Each line ends with a line feed.
std::string WrittenDiagram(const DiagramStyle& style);
