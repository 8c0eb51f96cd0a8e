#include "play/mopup.h"

#include "board/position.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "moves/makemove.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

namespace {

constexpr std::int32_t DEPTH = 5; // plies
constexpr std::int32_t DEPTH_WITH_MANY_MOVES = 3;
constexpr std::int32_t MANY_MOVES = 40;
constexpr std::int32_t MATE = 1'000'000;
constexpr std::int32_t DRAW = 0;

// In centipawns for each step of the bare king from the centre, and of the kings towards each
// other.
constexpr std::int32_t EDGE_BONUS = 50;
constexpr std::int32_t CLOSENESS_BONUS = 20;
constexpr std::int32_t LONGEST_WAY = 14;

std::int32_t Distance(int a, int b) {
    return std::abs(FileOf(a) - FileOf(b)) + std::abs(RankOf(a) - RankOf(b));
}

// From the nearest of the four squares in the middle.
std::int32_t DistanceFromCentre(int square) {
    return std::max(3 - FileOf(square), FileOf(square) - 4) +
           std::max(3 - RankOf(square), RankOf(square) - 4);
}

// The mop-up evaluation, from the side to move's point of view.
std::int32_t Judge(Colour winner) {
    const Colour loser = Opponent(winner);
    const std::int32_t score =
        piece_weight_eval[winner] + EDGE_BONUS * DistanceFromCentre(KingSquare(loser)) +
        CLOSENESS_BONUS * (LONGEST_WAY - Distance(KingSquare(winner), KingSquare(loser)));
    return side_to_move == winner ? score : -score;
}

// The game has been here before: nobody makes headway by going back.
bool IsRepeated() {
    const std::span before(zobrist_keys, static_cast<std::size_t>(zobrist_ply_number));
    return std::ranges::find(before, zobrist_key) != before.end();
}

// Alpha-beta search, over all legal moves.
std::int32_t Search(Colour winner, std::int32_t alpha, std::int32_t beta, std::int32_t depth,
                    const Move& last_move) {
    if (IsInsufficientMaterial() || IsRepeated()) return DRAW;
    MoveList list;
    GenerateAllLegalMoves(list, &last_move);
    if (list.count == 0) return IsCheck() ? -MATE - depth : DRAW;
    if (depth == 0) return Judge(winner);
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
    const Colour loser = Opponent(side_to_move);
    return pieces_all_rank[loser] == PiecesOf(loser, KING) &&
           (PiecesOf(side_to_move, QUEEN) | PiecesOf(side_to_move, ROOK));
}

void FindMopUpMove(Move& move) {
    assert(IsElementaryWin());
    const Colour winner = side_to_move;
    MoveList list;
    GenerateAllLegalMoves(list, LastMove());
    assert(list.count > 0);
    const std::int32_t depth = list.count > MANY_MOVES ? DEPTH_WITH_MANY_MOVES : DEPTH;
    std::int32_t best = -2 * MATE;
    for (const Move& candidate : list) {
        MakeMove(candidate);
        const std::int32_t score = -Search(winner, -2 * MATE, -best, depth - 1, candidate);
        UnMakeMove(candidate);
        if (score > best) {
            best = score;
            move = candidate;
        }
    }
}
