#include "game/finish.h"

#include "board/position.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/attacks.h"
#include "moves/generate.h"
#include "moves/makemove.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::int32_t FIFTY_MOVE_PLIES = 100;
constexpr int HOPELESS_MOVES_TO_RESIGN = 5;

// True if `other` has the same pieces on the same squares as the board. Ignores the flags that mark
// moved pieces.
bool IsSameBoard(const Piece (&other)[SQUARES]) {
    return std::ranges::equal(board.position, other, [](Piece a, Piece b) {
        return ((a ^ b) & (TYPE_BITS | COLOUR_BITS)) == 0;
    });
}

bool HasOnlyBishops(Colour colour) {
    return board.pieces_all[colour].rank == (PiecesOf(colour, KING) | PiecesOf(colour, BISHOP));
}

} // namespace

bool HasLegalMove(const Move* last_move) {
    MoveList list;
    GenerateAllMoves(list, last_move);
    return std::ranges::any_of(list, IsLegalMove);
}

bool IsCheck() {
    return board.side_to_move == WHITE ? IsKingCapturableBy<BLACK>() : IsKingCapturableBy<WHITE>();
}

bool IsMate(const Move* last_move) { return IsCheck() && !HasLegalMove(last_move); }

bool IsStalemate(const Move* last_move) { return !IsCheck() && !HasLegalMove(last_move); }

bool IsNfoldRepetition(std::int32_t n) {
    std::int32_t occurrences = 1;
    for (std::int32_t i = board.zobrist_ply_number - 2; i >= 0; i -= 2) {
        if (zobrist_keys[i] == board.zobrist_key && IsSameBoard(state_history.positions[i])) {
            ++occurrences;
        }
    }
    return occurrences >= n;
}

bool IsThreefoldRepetition() { return IsNfoldRepetition(3); }

bool IsFiftyMoveRule() { return game_state.fifty_move_count >= FIFTY_MOVE_PLIES; }

bool IsInsufficientMaterial() {
    if (PiecesOf(WHITE, PAWN) | PiecesOf(BLACK, PAWN)) return false;
    const std::int32_t total = board.pieces_on_board[WHITE] + board.pieces_on_board[BLACK];
    if (total <= 2) return true;
    const Bitboard bishops = PiecesOf(WHITE, BISHOP) | PiecesOf(BLACK, BISHOP);
    if (total == 3) return (PiecesOf(WHITE, KNIGHT) | PiecesOf(BLACK, KNIGHT) | bishops) != 0;
    if (!HasOnlyBishops(WHITE) || !HasOnlyBishops(BLACK)) return false;
    return !(bishops & DARK_SQUARES) || !(bishops & ~DARK_SQUARES);
}

bool IsEndOfGame(const Move* last_move) {
    return IsMate(last_move) || IsStalemate(last_move) || IsInsufficientMaterial();
}

std::span<const Move> PlayablePart(std::span<const Move> line) {
    std::size_t played = 0;
    for (bool goes_on = true; goes_on && played < line.size() && IsLegalMove(line[played]);) {
        MakeMove(line[played]);
        goes_on = !IsEndOfGame(&line[played]);
        ++played;
    }
    for (std::size_t i = played; i > 0; --i) {
        UnMakeMove(line[i - 1]);
    }
    return line.first(played);
}

bool ShouldResign() {
    if (!engine_state.use_resign || !game_state.hopeless) return false;
    int run = 1;
    for (std::int32_t i = state_history.count - 1; i >= 0; i -= 2) {
        if (!state_history.game_states[i].hopeless) break;
        ++run;
    }
    return run >= HOPELESS_MOVES_TO_RESIGN;
}

const char* EndOfGameLine(const Move* last_move) {
    if (IsMate(last_move)) {
        return board.side_to_move == BLACK ? "1-0 {White mates}" : "0-1 {Black mates}";
    }
    if (IsStalemate(last_move)) return "1/2-1/2 {Stalemate}";
    if (IsThreefoldRepetition()) return "1/2-1/2 {Threefold repetition}";
    if (IsFiftyMoveRule()) return "1/2-1/2 {Fifty move rule}";
    if (IsInsufficientMaterial()) return "1/2-1/2 {Insufficient material}";
    return ShouldResign() ? "resign" : nullptr;
}
