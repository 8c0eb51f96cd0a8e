#include "search/fsearch.h"

#include "board/move.h"
#include "board/position.h"
#include "board/score.h"
#include "board/utility.h"
#include "eval/evaltables.h"
#include "eval/evaluate.h"
#include "game/finish.h"
#include "moves/attacks.h"
#include "moves/generate.h"
#include "moves/makemove.h"
#include "search/hash.h"
#include "search/prefetch.h"
#include "search/quiesce.h"
#include "search/records.h"

#include <algorithm>
#include <cassert>

namespace {

constexpr std::int32_t REPETITION_WINDOW = 30; // in plies

// Limits for the steps of a node. Depths and plies are in quarter-plies.
constexpr std::int32_t HORIZON_MAX_DEPTH = Plies(1) - 1;
constexpr std::int32_t NULL_MOVE_MIN_DEPTH = Plies(3);
constexpr std::int32_t PRUNING_MIN_PLY = Plies(3);
constexpr std::int32_t FUTILITY_MAX_DEPTH = Plies(4);
constexpr std::int32_t IID_MIN_DEPTH = Plies(5);
constexpr std::int32_t NULL_MOVE_MATERIAL_MARGIN = 200; // in centipawns
constexpr std::int32_t NULL_MOVE_MIN_PIECES = 5;        // all pieces of both sides except pawns

// The steps of the search of a node. Each line names a step and the function that performs the
// step. A function is defined before its callers, so Search comes last.
//  1. Poll the limits and the host                     Search
//  2. Detect draws by repetition or material           IsDraw
//  3. Probe the hash tables                            ProbeHashTable
//  4. Start the quiescence search at the horizon       QuiescenceSearch
//  5. End the node if the last move was illegal        SearchInterior
//  6. Try a null move                                  SearchNullMove
//  7. Reverse futility pruning                         ReverseFutility
//  8. Generate the captures                            SearchNode
//  9. Internal iterative deepening                     DeepenInternally
// 10. Search the captures, then the other moves        SearchMoves
// 11.   Extend the depth of a move                     ChildDepth
// 12.   Search a move by principal-variation search    SearchMove
// 13. Detect stalemate and store the result            EndNode

struct Node {
    std::int32_t alpha;
    std::int32_t beta;
    std::int32_t depth;
    std::int32_t ply;
    const Move* last_move;
    PvLine* pv;
    std::uint8_t extended;
    std::int32_t hash_index;   // index of the hash move in generation order
    bool raised_alpha = false; // true once a move has raised alpha
    std::int32_t best = -MATE_EVAL;
    std::int32_t best_index = NO_MOVE_INDEX; // index of the best move in generation order
};

template <Colour US>
std::int32_t Search(std::int32_t alpha, std::int32_t beta, std::int32_t depth, std::int32_t ply,
                    const Move* last_move, PvLine* pv, std::uint8_t extended);

// Principal variations of the nodes on the current search line, indexed by distance from the root
// in plies.
PvLine pv_lines[MAX_LINE_PLIES];

// True if the position occurs for the third time within the last REPETITION_WINDOW plies. The loop
// starts four plies back, because a position cannot occur again sooner.
bool IsRepetition() {
    int occurrences = 1;
    const std::int32_t oldest = std::max(0, board.zobrist_ply_number - REPETITION_WINDOW);
    for (std::int32_t i = board.zobrist_ply_number - 4; i >= oldest; i -= 2) {
        if (zobrist_keys[i] == board.zobrist_key) ++occurrences;
    }
    return occurrences > 2;
}

bool IsDraw() { return (!search_info.null_move && IsRepetition()) || IsInsufficientMaterial(); }

template <Colour US>
std::int32_t MaterialBalance() {
    return board.piece_weight_eval[US] - board.piece_weight_eval[Opponent(US)];
}

bool IsMateWindow(const Node& node) { return IsMateEval(node.alpha) || IsMateEval(node.beta); }

template <Colour US>
bool IsNullMoveAllowed(const Node& node) {
    return !search_info.null_move && !search_info.iid && !node.extended &&
           node.depth >= NULL_MOVE_MIN_DEPTH && node.ply >= PRUNING_MIN_PLY &&
           !IsMateWindow(node) && MaterialBalance<US>() >= node.beta - NULL_MOVE_MATERIAL_MARGIN &&
           board.pieces_on_board[WHITE] + board.pieces_on_board[BLACK] >= NULL_MOVE_MIN_PIECES &&
           Evaluate<US>() >= node.beta;
}

// Returns the depth of the search after a null move: one ply less for the null move itself, and a
// further reduction of one to three plies.
std::int32_t NullMoveDepth(std::int32_t depth) {
    if (depth < Plies(4)) return depth - Plies(2);
    return depth < Plies(8) ? depth - Plies(3) : depth - Plies(4);
}

// Returns the score of the null move if the score is at least beta and not a mate score. Otherwise
// returns UNKNOWN_EVAL.
template <Colour US>
std::int32_t SearchNullMove(const Node& node) {
    assert(!search_info.null_move);
    std::int32_t score = -MATE_EVAL;
    search_info.null_move = 1;
    MakeNullMove();
    if (!IsKingCapturableBy<Opponent(US)>()) {
        score = -Search<Opponent(US)>(-node.beta, 1 - node.beta, NullMoveDepth(node.depth),
                                      node.ply + QUARTER_PLIES, nullptr, nullptr, 0);
    }
    UnMakeNullMove();
    search_info.null_move = 0;
    return score >= node.beta && !IsMateEval(score) ? score : UNKNOWN_EVAL;
}

template <Colour US>
bool IsFutilityAllowed(const Node& node) {
    assert(node.last_move || search_info.null_move);
    return !search_info.null_move && !node.extended && node.depth <= FUTILITY_MAX_DEPTH &&
           node.ply >= PRUNING_MIN_PLY && !IsMateWindow(node) &&
           MaterialBalance<US>() >= node.beta && !IsCaptureMove(*node.last_move) &&
           !IsKingCapturableBy<Opponent(US)>();
}

// Margins in centipawns. If the static score is at least `cut` above beta, the search of the node
// ends. If the score is at least `reduce` above beta, the depth is reduced by one ply.
struct FutilityMargins {
    std::int32_t cut;
    std::int32_t reduce;
};

FutilityMargins MarginsAt(std::int32_t depth) {
    if (depth <= Plies(1)) return {200, 100};
    if (depth <= Plies(2)) return {500, 400};
    return {900, 700};
}

// Reverse futility pruning: tests if the static score is far above beta. Returns the score of the
// node, or UNKNOWN_EVAL if the search of the node must go on. May reduce node.depth.
template <Colour US>
std::int32_t ReverseFutility(Node& node) {
    const FutilityMargins margins = MarginsAt(node.depth);
    const std::int32_t score = Evaluate<US>();
    if (score - margins.cut >= node.beta) return score;
    if (score - margins.reduce < node.beta) return UNKNOWN_EVAL;
    node.depth -= QUARTER_PLIES;
    if (node.depth > HORIZON_MAX_DEPTH) return UNKNOWN_EVAL;
    return QuiescenceSearch<US>(node.alpha, node.beta, node.ply, node.last_move);
}

// Internal iterative deepening: searches the node to a lower depth to find a move to search first.
// Sets node.hash_index if such a move is found.
template <Colour US>
void DeepenInternally(Node& node) {
    const std::int32_t depth = node.depth - (node.depth < Plies(8) ? Plies(2) : Plies(3));
    assert(!search_info.iid);
    search_info.iid = 1;
    const std::int32_t score =
        Search<US>(node.alpha, node.beta, depth, node.ply, node.last_move, nullptr, node.extended);
    search_info.iid = 0;
    if (score > node.alpha) {
        ProbeHashTable(board.zobrist_key, node.alpha, node.beta, node.depth, node.hash_index);
    }
}

// True if the capturing and the captured piece of the last move have the same value. False for
// en-passant captures, because their `captured` field is empty.
bool IsEqualTrade(const Move* last_move) {
    return last_move &&
           PIECE_WEIGHT[TypeOf(last_move->piece)] == PIECE_WEIGHT[TypeOf(last_move->captured)];
}

// Returns the depth of the child after `move`. Call after the move is made. The depth is one ply
// less than the node's depth. Checks, recaptures after an equal trade, and pawn moves to the
// seventh or eighth rank are extended by one ply: the child then has the same depth as the node.
template <Colour US>
std::int32_t ChildDepth(const Node& node, const Move& move, bool is_recapturing) {
    const bool is_extended = (is_recapturing && move.to == node.last_move->to) ||
                             IsPawnToSeventhMove(move) || IsKingCapturableBy<US>();
    return is_extended ? node.depth : node.depth - QUARTER_PLIES;
}

// Principal-variation search: after a move has raised alpha, the other moves are first searched
// with a zero window. A move that beats alpha is searched again with the full window.
template <Colour US>
std::int32_t SearchMove(const Node& node, const Move& move, std::int32_t depth, PvLine* child_pv) {
    const std::int32_t ply = node.ply + QUARTER_PLIES;
    const std::uint8_t extended = depth == node.depth;
    if (node.raised_alpha) {
        const std::int32_t score = -Search<Opponent(US)>(-node.alpha - 1, -node.alpha, depth, ply,
                                                         &move, nullptr, extended);
        if (score <= node.alpha) return score;
    }
    return -Search<Opponent(US)>(-node.beta, -node.alpha, depth, ply, &move, child_pv, extended);
}

// Converts an index in the searched list to an index in generation order. The two can differ,
// because the hash move and the first move were swapped. After a key collision, the result may be
// outside the list. This does no harm, because PutHashMoveFirst ignores such an index.
std::int32_t GenerationIndex(const Node& node, std::int32_t index, std::int32_t base) {
    if (base != 0 || node.hash_index < 0) return index;
    if (index == 0) return node.hash_index;
    return index == node.hash_index ? 0 : index;
}

enum class LoopEnd { ALL_SEARCHED, CUT, STOPPED };

// Searches the moves of the list. `base` is the number of moves of the node that were generated
// before the first move of the list.
template <Colour US>
LoopEnd SearchMoves(Node& node, const MoveList& list, std::int32_t base) {
    const bool is_recapturing = IsEqualTrade(node.last_move);
    PvLine* const child_pv = node.pv ? &pv_lines[node.ply / QUARTER_PLIES + 1] : nullptr;
    for (std::int32_t i = 0; i < list.count; ++i) {
        PrefetchChildren<US, true>(list, i);
        const Move& move = list.moves[i];
        MakeMove<US>(move);
        const std::int32_t depth = ChildDepth<US>(node, move, is_recapturing);
        const std::int32_t score = SearchMove<US>(node, move, depth, child_pv);
        UnMakeMove<US>(move);
        if (search_info.stop) return LoopEnd::STOPPED;
        if (score > node.alpha) {
            node.raised_alpha = true;
            if (node.pv && score < node.beta) TakePv(*node.pv, move, *child_pv);
            node.alpha = score;
        }
        if (score > node.best) {
            node.best = score;
            node.best_index = GenerationIndex(node, base + i, base);
        }
        if (node.alpha >= node.beta) {
            // The stored index is that of the searched list. It is deliberately not converted to
            // generation order: a converted index would change the node counts that the tests
            // expect.
            StoreHashTable(board.zobrist_key, node.alpha, node.depth, BOUND_LOWER, base + i);
            return LoopEnd::CUT;
        }
    }
    return LoopEnd::ALL_SEARCHED;
}

// Stores and returns the score of a node after the search of its moves. Returns DRAW_EVAL at a
// stalemate. `count` is the length of the list that was searched last: the list of all moves, or
// the list of non-captures.
std::int32_t EndNode(const Node& node, std::int32_t count) {
    // To save time, IsStalemate is called only in two cases. In the first, `best` is the score of
    // losing the king one ply later, so no searched move was legal. In the second, the list that
    // was searched last is empty, so there may be no pseudo-legal move at all.
    const bool may_have_no_move =
        node.best == -(MATE_EVAL - (node.ply + QUARTER_PLIES)) || count == 0;
    if (may_have_no_move && IsStalemate(node.last_move)) return DRAW_EVAL;
    StoreHashTable(board.zobrist_key, node.best, node.depth,
                   node.raised_alpha ? BOUND_EXACT : BOUND_UPPER, node.best_index);
    return node.best;
}

// Performs steps 8 to 13: generates and searches the moves. The hash move is swapped with the first
// move. To save time, non-captures are generated only after the search of the captures, unless the
// hash move is a non-capture.
template <Colour US>
std::int32_t SearchNode(Node& node) {
    // Step 8: generate the captures
    MoveList list;
    GenerateCapturesAhead<US, true>(list, node.last_move);

    // Step 9: internal iterative deepening
    if (node.depth >= IID_MIN_DEPTH && node.hash_index < 0 && !search_info.null_move &&
        !search_info.iid) {
        DeepenInternally<US>(node);
        if (search_info.stop) return STOPPED_EVAL;
    }

    // Step 10: search the captures, then the other moves
    const bool has_all_moves = node.hash_index >= list.count;
    if (has_all_moves) GenerateNonCaptures<US>(list);
    PutHashMoveFirst(list, node.hash_index);

    LoopEnd end = SearchMoves<US>(node, list, 0);
    if (end == LoopEnd::ALL_SEARCHED && !has_all_moves) {
        const std::int32_t base = list.count;
        list.count = list.prefetched = 0;
        GenerateNonCaptures<US>(list);
        end = SearchMoves<US>(node, list, base);
    }
    if (end == LoopEnd::STOPPED) return STOPPED_EVAL;

    // Step 13: detect stalemate and store the result
    return end == LoopEnd::CUT ? node.alpha : EndNode(node, list.count);
}

// Performs steps 5 to 13. Call only if the node is above the horizon and the hash tables contain no
// usable score.
template <Colour US>
std::int32_t SearchInterior(Node& node) {
    // Step 5: end the node if the last move was illegal
    if (IsKingCapturableBy<US>()) return MATE_EVAL - node.ply;

    // Step 6: try a null move
    if (node.depth >= NULL_MOVE_MIN_DEPTH && !search_info.null_move) {
        PrefetchKey<true>(KeyAfterNullMove());
    }
    if (IsNullMoveAllowed<US>(node)) {
        const std::int32_t score = SearchNullMove<US>(node);
        if (search_info.stop) return STOPPED_EVAL;
        if (score != UNKNOWN_EVAL) return score;
    }

    // Step 7: reverse futility pruning
    if (IsFutilityAllowed<US>(node)) {
        const std::int32_t score = ReverseFutility<US>(node);
        if (score != UNKNOWN_EVAL) return score;
    }

    return SearchNode<US>(node);
}

template <Colour US>
std::int32_t Search(std::int32_t alpha, std::int32_t beta, std::int32_t depth, std::int32_t ply,
                    const Move* last_move, PvLine* pv, std::uint8_t extended) {
    assert(board.side_to_move == US);
    assert(alpha < beta);
    assert(ply >= QUARTER_PLIES && ply / QUARTER_PLIES + 1 < MAX_LINE_PLIES);
    assert(last_move || search_info.null_move);

    if (pv) pv->length = 0;
    // Step 1: poll the limits and the host
    if (++search_info.nodes >= search_info.next_poll && MustStop()) return STOPPED_EVAL;

    // Step 2: detect draws by repetition or material
    if (IsDraw()) return DRAW_EVAL;

    // Step 3: probe the hash tables
    std::int32_t hash_index = NO_MOVE_INDEX;
    const std::int32_t known = ProbeHashTable(board.zobrist_key, alpha, beta, depth, hash_index);
    if (known != UNKNOWN_EVAL) return known;

    // Step 4: start the quiescence search at the horizon
    if (depth <= HORIZON_MAX_DEPTH || ply >= search_info.max_ply) {
        return QuiescenceSearch<US>(alpha, beta, ply, last_move);
    }

    Node node{.alpha = alpha,
              .beta = beta,
              .depth = depth,
              .ply = ply,
              .last_move = last_move,
              .pv = pv,
              .extended = extended,
              .hash_index = hash_index};
    return SearchInterior<US>(node);
}

} // namespace

std::int32_t FullSearch(std::int32_t alpha, std::int32_t beta, std::int32_t depth, std::int32_t ply,
                        const Move* last_move, PvLine* pv, std::uint8_t extended) {
    return board.side_to_move == WHITE
               ? Search<WHITE>(alpha, beta, depth, ply, last_move, pv, extended)
               : Search<BLACK>(alpha, beta, depth, ply, last_move, pv, extended);
}
