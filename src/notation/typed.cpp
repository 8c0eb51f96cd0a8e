#include "notation/typed.h"

#include "board/move.h"
#include "board/position.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "moves/generate.h"
#include "moves/makemove.h"
#include "notation/fen.h"
#include "notation/text.h"

#include <algorithm>
#include <functional>

namespace {

constexpr std::string_view EN_PASSANT = "e.p.";
constexpr std::string_view SHORT_CASTLING = "OO";
constexpr std::string_view LONG_CASTLING = "OOO";

constexpr const char* PIECE_NAMES[PIECE_TYPES] = {"",     "pawn",   "knight", "king",
                                                  "none", "bishop", "rook",   "queen"};

// Returns the text without a leading move number such as "12.", "12..." or "...".
std::string_view WithoutMoveNumber(std::string_view text) {
    const std::size_t dots = text.find_first_not_of("0123456789 ");
    const bool is_numbered = dots < text.size() && text[dots] == '.';
    if (is_numbered) text.remove_prefix(std::min(text.find_first_not_of(". ", dots), text.size()));
    return text;
}

// Returns the text without the move number, "e.p." and optional characters such as 'x', '+' and
// '='. Replaces each digit 0 and each letter o by the letter O, so that "0-0" is read as castling.
std::string WithoutMarks(std::string_view text) {
    std::string plain;
    text = WithoutMoveNumber(text);
    if (text.ends_with(EN_PASSANT)) text.remove_suffix(EN_PASSANT.size());
    for (const char c : text) {
        const bool is_mark = std::string_view("+#!?=xX:-() ").find(c) != std::string_view::npos;
        if (!is_mark) plain += c == '0' || c == 'o' ? 'O' : c;
    }
    return plain;
}

std::string WrittenSquare(std::int32_t square) {
    return {CharByFile(FileOf(square)), CharByRank(RankOf(square))};
}

// Returns all accepted spellings of the move, without optional characters such as 'x' and '+'.
std::vector<std::string> Spellings(const Move& move) {
    const std::string from = WrittenSquare(move.from), to = WrittenSquare(move.to);
    if (move.castle) {
        return {from + to, std::string(FileOf(move.to) == FILE_C ? LONG_CASTLING : SHORT_CASTLING)};
    }
    std::vector<std::string> promotions{""};
    if (IsPromotion(move)) {
        const char letter = CharByPiece(TypeOf(move.promoted));
        promotions = {{letter}, {LowerCase(letter)}};
        if (TypeOf(move.promoted) == QUEEN) promotions.push_back("");
    }
    const PieceType type = TypeOf(move.piece);
    const std::string piece(type == PAWN ? 0 : 1, CharByPiece(type));
    std::vector<std::string> spellings;
    for (const std::string& promotion : promotions) {
        for (const std::string& origin : {from, from.substr(0, 1), from.substr(1), std::string()}) {
            spellings.push_back(piece + origin + to + promotion);
        }
        spellings.push_back(from + to + promotion);
    }
    return spellings;
}

// Returns the moves of the list with this spelling. Ignores case if no move matches exactly.
std::vector<Move> MovesSpelled(const MoveList& list, const std::string& typed) {
    std::vector<Move> exact, in_any_case;
    for (const Move& move : list) {
        const auto is_spelled = [&](auto change) {
            return std::ranges::count(Spellings(move), change(typed), change) > 0;
        };
        if (is_spelled(std::identity{})) exact.push_back(move);
        if (is_spelled(InLowerCase)) in_any_case.push_back(move);
    }
    return exact.empty() ? in_any_case : exact;
}

// True for castling. Also true if the text contains the name of a square (such as e4), has at most
// six characters, and contains only characters that can occur in a move.
bool LooksLikeMove(const std::string& typed) {
    if (typed == SHORT_CASTLING || typed == LONG_CASTLING) return true;
    constexpr std::size_t LONGEST = 6;
    constexpr std::string_view CHARACTERS = "abcdefgh12345678nrqkABCDEFGHNRQK";
    const auto is_square = [](char file, char rank) {
        return IsOnBoard(FileByChar(LowerCase(file)), RankByChar(rank));
    };
    return typed.size() <= LONGEST && typed.find_first_not_of(CHARACTERS) == std::string::npos &&
           std::ranges::adjacent_find(typed, is_square) != typed.end();
}

const char* ReasonAgainstCastling(bool is_long) {
    const int king = KING_HOME[board.side_to_move];
    const int rook = ROOK_HOME[board.side_to_move][is_long ? QUEEN_SIDE : KING_SIDE];
    if (IsCheck()) return "you are in check";
    if (board.position[king] != UnmovedPiece(board.side_to_move, KING) ||
        board.position[rook] != UnmovedPiece(board.side_to_move, ROOK)) {
        return "king or rook has moved";
    }
    const int step = is_long ? -1 : 1;
    for (int square = king + step; square != rook; square += step) {
        if (board.position[square] != NO_PIECE) return "there are pieces between king and rook";
    }
    return "the king would pass an attacked square";
}

// Returns the reason why a pseudo-legal move is illegal.
std::string ReasonAgainst(const Move& move) {
    if (TypeOf(move.piece) == KING) return "the king would be in check";
    if (IsCheck()) return "you are in check";
    if (move.en_passant) return "it would open a line to your king";
    return "the " + std::string(PIECE_NAMES[TypeOf(move.piece)]) + " on " +
           WrittenSquare(move.from) + " is pinned";
}

} // namespace

std::vector<Move> FindTypedMoves(std::string_view text) {
    MoveList list;
    GenerateAllLegalMoves(list, LastMove());
    return MovesSpelled(list, WithoutMarks(text));
}

std::string WrittenRefusal(std::string_view text) {
    const std::string typed = WithoutMarks(text);
    if (!LooksLikeMove(typed)) return "";
    MoveList list;
    GenerateAllMoves(list, LastMove());
    const std::vector<Move> meant = MovesSpelled(list, typed);
    std::string reason;
    if (typed == SHORT_CASTLING || typed == LONG_CASTLING) {
        reason = ReasonAgainstCastling(typed == LONG_CASTLING);
    } else if (!meant.empty()) {
        reason = ReasonAgainst(meant.front());
    } else if (IsCheck()) {
        reason = "you are in check";
    }
    const std::string refusal = "Illegal move: " + std::string(WithoutMoveNumber(text));
    return reason.empty() ? refusal : refusal + " (" + reason + ")";
}
