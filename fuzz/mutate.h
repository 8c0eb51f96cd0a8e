// Mutations that know what an input is made of, so that most inputs get past the first check. Half
// of all are the harness's own, the others the fuzzer's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Each harness's own.
std::string MutateInput(std::string_view text);

// A number below the bound.
std::size_t Roll(std::size_t bound);

template <typename List>
decltype(auto) Pick(const List& list) {
    return list[Roll(std::size(list))];
}

using Parts = std::vector<std::string>;

Parts SplitText(std::string_view text, char separator);
std::string JoinedText(std::span<const std::string> parts, char separator);

// One of the parts goes, comes twice, moves, or a new one is put before it or in its place. The new
// one is made for what stands before it.
void ChangeParts(Parts& parts,
                 const std::function<std::string(std::span<const std::string>)>& make);

// A legal move on the board, in either notation.
std::string SomeMove();

// A position, often with a field that is changed.
std::string SomeFen();
std::string ChangedFen(std::string_view fen);

// The text with what it leaves open: %m a legal move, %f a position, %n a number.
std::string FilledText(std::string_view text);

// Legal moves from the initial position, which are played.
void PlaySomeMoves(std::size_t count);
