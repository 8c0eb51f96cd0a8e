// The board as text, for a person.
#pragma once

#include <string>

struct DiagramStyle {
    bool is_unicode;  // pieces as chess symbols instead of letters
    bool is_coloured; // in a terminal's 256 colours; else '*' marks the last move, '!' a check
    bool is_flipped;  // black below
};

// Returns nine lines, each with its line feed: the eight ranks and the file letters.
std::string WrittenDiagram(const DiagramStyle& style);
