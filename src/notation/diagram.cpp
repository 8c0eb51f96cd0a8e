#include "notation/diagram.h"

#include "board/position.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "notation/text.h"

namespace {

constexpr const char* SYMBOLS[COLOURS][PIECE_TYPES] = {{"", "♙", "♘", "♔", "", "♗", "♖", "♕"},
                                                       {"", "♟", "♞", "♚", "", "♝", "♜", "♛"}};

// Colours of a 256-colour terminal. The first four are backgrounds of squares.
constexpr int CHECKED = 160;
constexpr int MOVED = 100;
constexpr int DARK = 95;
constexpr int LIGHT = 137;
constexpr int PIECES[COLOURS] = {231, 16};

bool IsOfLastMove(int square) {
    const Move* last = LastMove();
    return last && (square == last->to || square == last->from);
}

bool IsCheckedKing(int square) { return square == KingSquare(board.side_to_move) && IsCheck(); }

std::string WrittenPiece(Piece piece, const DiagramStyle& style) {
    if (piece == NO_PIECE) return style.is_coloured ? " " : ".";
    // With colours, both sides use the filled symbols, which are easier to read.
    if (style.is_unicode) {
        return SYMBOLS[style.is_coloured ? BLACK : ColourOf(piece)][TypeOf(piece)];
    }
    const char letter = CharByPiece(TypeOf(piece));
    return {ColourOf(piece) == WHITE ? letter : LowerCase(letter)};
}

std::string WrittenSquare(int square, const DiagramStyle& style) {
    const std::string piece = WrittenPiece(board.position[square], style);
    const bool is_checked = IsCheckedKing(square);
    const bool is_moved = IsOfLastMove(square);
    if (!style.is_coloured) return (is_checked ? "!" : is_moved ? "*" : " ") + piece + " ";
    const bool is_dark = (FileOf(square) + RankOf(square)) % 2 == 0;
    const int ground = is_checked ? CHECKED : is_moved ? MOVED : is_dark ? DARK : LIGHT;
    const int ink = PIECES[ColourOf(board.position[square])];
    return "\033[48;5;" + std::to_string(ground) + ";38;5;" + std::to_string(ink) + "m " + piece +
           " \033[0m";
}

} // namespace

std::string WrittenDiagram(const DiagramStyle& style) {
    std::string text;
    std::string files = "  ";
    for (int row = 0; row < BOARD_SIDE; ++row) {
        const int rank = style.is_flipped ? row : RANK_8 - row;
        text += {CharByRank(rank), ' '};
        for (int column = 0; column < BOARD_SIDE; ++column) {
            const int file = style.is_flipped ? FILE_H - column : column;
            text += WrittenSquare(SquareOf(file, rank), style);
            if (row == 0) files += {' ', CharByFile(file), ' '};
        }
        text += '\n';
    }
    return text + files + '\n';
}
