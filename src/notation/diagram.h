// The board as a picture of text, for a person.
#pragma once

#include <string>

struct DiagramStyle {
    bool is_unicode;  // pieces as chess symbols instead of letters
    bool is_coloured; // in a terminal's 256 colours; else '*' marks the last move, '!' a check
    bool is_flipped;  // black below
};

// Nine lines, each with its line feed: the ranks, and the files' letters.
std::string WrittenDiagram(const DiagramStyle& style);
