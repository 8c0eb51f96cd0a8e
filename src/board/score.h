// Score constants, and the units of depth.
#pragma once

#include <cstdint>
#include <cstdlib>

// Scores are in centipawns. Capturing the enemy king scores MATE_EVAL - p, where p is the distance
// from the root in quarter-plies, so that a faster mate scores higher. A score is a mate score if
// its absolute value exceeds MATE_EVAL_THRESHOLD.
inline constexpr std::int32_t MATE_EVAL = 1'000'000;
inline constexpr std::int32_t MATE_EVAL_THRESHOLD = 997'999;
inline constexpr std::int32_t DRAW_EVAL = 0;

// Means that there is no score. Returned by a hash probe that finds no usable entry, and by a
// pruning step that does not apply.
inline constexpr std::int32_t UNKNOWN_EVAL = 2'000'000;

// Returned by a stopped search. Callers check search_info.stop and discard the value. The parent
// node negates the value, and the result is below every real score.
inline constexpr std::int32_t STOPPED_EVAL = UNKNOWN_EVAL;

// Score of a root move that has not been searched. Below every real score.
inline constexpr std::int32_t UNSEARCHED_EVAL = -2'000'000;

// Depths and distances from the root are in quarter-plies. One ply is four quarter-plies.
inline constexpr std::int32_t QUARTER_PLIES = 4;
constexpr std::int32_t Plies(std::int32_t plies) { return plies * QUARTER_PLIES; }

constexpr bool IsMateEval(std::int32_t score) {
    return score > MATE_EVAL_THRESHOLD || score < -MATE_EVAL_THRESHOLD;
}

// Returns the number of moves until mate: positive if the side to move mates, negative if the
// opponent mates, 0 if the score is not a mate score.
inline std::int32_t MovesToMate(std::int32_t score) {
    if (!IsMateEval(score)) return 0;
    const std::int32_t plies = (MATE_EVAL - std::abs(score)) / QUARTER_PLIES - 1;
    return score > 0 ? (plies + 1) / 2 : -(plies / 2);
}
