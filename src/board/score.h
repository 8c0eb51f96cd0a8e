// Scores and the units of the search.
#pragma once

#include <cstdint>
#include <cstdlib>

// Scores are in centipawns. Capturing the enemy king at ply p (in quarter-plies) scores
// MATE_EVAL - p, so that a faster mate scores higher. Scores beyond the threshold are mate scores.
inline constexpr std::int32_t MATE_EVAL = 1'000'000;
inline constexpr std::int32_t MATE_EVAL_THRESHOLD = 997'999;
inline constexpr std::int32_t DRAW_EVAL = 0;

// No score: not in the tables, or a pruning step did not apply.
inline constexpr std::int32_t UNKNOWN_EVAL = 2'000'000;

// Returned by a stopped search. Negated, it is below every real score; callers check
// search_info.stop and discard it.
inline constexpr std::int32_t STOPPED_EVAL = UNKNOWN_EVAL;

// The score of a move that no iteration has searched; below every score.
inline constexpr std::int32_t UNSEARCHED_EVAL = -2'000'000;

// Depths and distances from the root are in quarter-plies.
inline constexpr std::int32_t QUARTER_PLIES = 4; // in one ply
constexpr std::int32_t Plies(std::int32_t plies) { return plies * QUARTER_PLIES; }

constexpr bool IsMateEval(std::int32_t score) {
    return score > MATE_EVAL_THRESHOLD || score < -MATE_EVAL_THRESHOLD;
}

// Moves until mate: positive if the side to move mates, negative if it is mated, 0 if the score is
// not a mate score.
inline std::int32_t MovesToMate(std::int32_t score) {
    if (!IsMateEval(score)) return 0;
    const std::int32_t plies = (MATE_EVAL - std::abs(score)) / QUARTER_PLIES - 1;
    return score > 0 ? (plies + 1) / 2 : -(plies / 2);
}
