#include "play/mopup.h"

#include "board/position.h"
#include "board/score.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "moves/attacks.h"
#include "moves/makemove.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstdlib>

namespace {

// Search depth in plies. In a position with more than MANY_MOVES legal moves, the search depth is
// DEPTH_WITH_MANY_MOVES.
constexpr std::int32_t DEPTH = 5;
constexpr std::int32_t DEPTH_WITH_MANY_MOVES = 3;
constexpr std::int32_t MANY_MOVES = 40;

// The mop-up evaluation in centipawns, from the winner's point of view, is the sum of:
//   - the winner's material
//   - FENCE_BONUS * HeldSquares()
//   - EDGE_BONUS * (distance of the bare king from the centre)
//   - CLOSENESS_BONUS * (LONGEST_WAY - distance between the kings)
// All distances are Manhattan distances.
constexpr std::int32_t FENCE_BONUS = 25;
constexpr std::int32_t EDGE_BONUS = 50;
constexpr std::int32_t CLOSENESS_BONUS = 20;
constexpr std::int32_t LONGEST_WAY = 14; // distance between opposite corners

std::int32_t Distance(int a, int b) {
    return std::abs(FileOf(a) - FileOf(b)) + std::abs(RankOf(a) - RankOf(b));
}

// Returns the Manhattan distance to the nearest of the four central squares.
std::int32_t DistanceFromCentre(int square) {
    return std::max(3 - FileOf(square), FileOf(square) - 4) +
           std::max(3 - RankOf(square), RankOf(square) - 4);
}

// Counts the squares of the 3x3 block around the bare king that are off the board or attacked by
// the winner.
template <Colour WINNER>
std::int32_t HeldSquares() {
    const int king = KingSquare(Opponent(WINNER));
    std::int32_t held = 0;
    for (int rank = RankOf(king) - 1; rank <= RankOf(king) + 1; ++rank) {
        for (int file = FileOf(king) - 1; file <= FileOf(king) + 1; ++file) {
            if (!IsOnBoard(file, rank) || IsAttackedBy<WINNER>(SquareOf(file, rank))) ++held;
        }
    }
    return held;
}

// Returns the mop-up evaluation in centipawns, from the side to move's point of view.
std::int32_t EvaluateMopUp(Colour winner) {
    const Colour loser = Opponent(winner);
    const std::int32_t score =
        board.piece_weight_eval[winner] +
        FENCE_BONUS * (winner == WHITE ? HeldSquares<WHITE>() : HeldSquares<BLACK>()) +
        EDGE_BONUS * DistanceFromCentre(KingSquare(loser)) +
        CLOSENESS_BONUS * (LONGEST_WAY - Distance(KingSquare(winner), KingSquare(loser)));
    return board.side_to_move == winner ? score : -score;
}

std::int32_t first_key = 0; // index in zobrist_keys of the oldest position that can recur

// True if the position has occurred before, in the game or in the current search line. `Search`
// scores such a position as a draw, because a repetition makes no progress.
bool IsRepeated() {
    const std::uint64_t* const first = zobrist_keys + first_key;
    const std::uint64_t* const now = zobrist_keys + board.zobrist_ply_number;
    return std::find(first, now, board.zobrist_key) != now;
}

// Returns the score that the normal search gives to a mate in this many plies. The normal search
// counts the plies until the king would be captured, one ply after the mating move.
std::int32_t MateInPlies(std::int32_t plies) { return MATE_EVAL - Plies(plies + 1); }

// Alpha-beta search over all legal moves. `depth` is in plies. A mate scores MATE_EVAL + (remaining
// depth) for the winner, so that a faster mate scores higher.
std::int32_t Search(Colour winner, std::int32_t alpha, std::int32_t beta, std::int32_t depth,
                    const Move& last_move) {
    if (IsInsufficientMaterial() || IsRepeated()) return DRAW_EVAL;
    MoveList list;
    GenerateAllLegalMoves(list, &last_move);
    if (list.count == 0) return IsCheck() ? -MATE_EVAL - depth : DRAW_EVAL;
    if (depth == 0) return EvaluateMopUp(winner);
    for (const Move& move : list) {
        MakeMove(move);
        alpha = std::max(alpha, -Search(winner, -beta, -alpha, depth - 1, move));
        UnMakeMove(move);
        if (alpha >= beta) break;
    }
    return alpha;
}

} // namespace

bool IsElementaryWin() {
    const Colour loser = Opponent(board.side_to_move);
    return board.pieces_all[loser].rank == PiecesOf(loser, KING) &&
           (PiecesOf(board.side_to_move, QUEEN) | PiecesOf(board.side_to_move, ROOK));
}

std::int32_t FindMopUpMove(Move& move) {
    assert(IsElementaryWin());
    const Colour winner = board.side_to_move;
    first_key = std::max(0, board.zobrist_ply_number - game_state.fifty_move_count);
    MoveList list;
    GenerateAllLegalMoves(list, LastMove());
    assert(list.count > 0);
    const std::int32_t depth = list.count > MANY_MOVES ? DEPTH_WITH_MANY_MOVES : DEPTH;
    std::int32_t best = -2 * MATE_EVAL;
    for (const Move& candidate : list) {
        MakeMove(candidate);
        const std::int32_t score = -Search(winner, -2 * MATE_EVAL, -best, depth - 1, candidate);
        UnMakeMove(candidate);
        if (score > best) {
            best = score;
            move = candidate;
        }
    }
    return best < MATE_EVAL ? best : MateInPlies(depth - (best - MATE_EVAL));
}
