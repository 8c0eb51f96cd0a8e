#include "mutate.h"

#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "harness.h"
#include "moves/makemove.h"
#include "notation/notation.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <random>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t max_size);

namespace {

std::minstd_rand dice;

constexpr const char* POSITIONS[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 98 70",
    "1n2k1n1/P1P3P1/8/2pPp3/5Pp1/Q6Q/p1p2p1p/Q3K2R b K f3 0 1",
    "7k/8/8/8/8/8/8/KQ6 b - - 99 80", // a bare king
    "7k/6Q1/6K1/8/8/8/8/8 b - - 0 1", // mate
    "k7/2Q5/1K6/8/8/8/8/8 b - - 0 1", // stalemate
    "QQQQQQQQ/QQQQQQQQ/8/7k/8/8/8/K7 w - - 0 1",
};
constexpr const char* RANKS[] = {"8",        "pppppppp", "PPPPPPPP", "r3k2r", "R3K2R",
                                 "rnbqkbnr", "7K",       "k7",       "P6p",   "1p1p1p1p",
                                 "QQQQQQQQ", "2p3",      "9",        "44",    "rnbqkbnrr"};
constexpr const char* CASTLINGS[] = {"-", "KQkq", "K", "Q", "k", "q", "Kq", "KQ", "kq", "HAha"};
constexpr const char* EN_PASSANT_SQUARES[] = {"-", "e3", "d6", "a3", "h6", "c6", "e4", "i9"};
constexpr const char* NUMBERS[] = {"0",   "1",    "2",    "3",     "10",         "40",
                                   "99",  "100",  "150",  "1000",  "-1",         "0:01",
                                   "5:0", "4095", "4096", "99999", "2147483648", "0.1"};
constexpr std::string_view PIECES = "pnbrqkPNBRQK12345678";

std::string ChangedPlacement(std::string_view placement) {
    Parts ranks = SplitText(placement, '/');
    std::string& rank = ranks[Roll(ranks.size())];
    switch (Roll(3)) {
    case 0: rank = Pick(RANKS); break;
    case 1: std::swap(rank, ranks[Roll(ranks.size())]); break;
    default:
        if (!rank.empty()) rank[Roll(rank.size())] = Pick(PIECES);
    }
    return JoinedText(ranks, '/');
}

} // namespace

std::size_t Roll(std::size_t bound) {
    assert(bound > 0);
    return dice() % bound;
}

Parts SplitText(std::string_view text, char separator) {
    Parts parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.emplace_back(text.substr(0, end));
        if (end == text.npos) return parts;
        text.remove_prefix(end + 1);
    }
}

std::string JoinedText(std::span<const std::string> parts, char separator) {
    std::string text;
    for (const std::string& part : parts) {
        if (&part != parts.data()) text += separator;
        text += part;
    }
    return text;
}

void ChangeParts(Parts& parts,
                 const std::function<std::string(std::span<const std::string>)>& make) {
    assert(!parts.empty());
    const bool is_insertion = Roll(2) == 0; // behind the last one, too
    const std::size_t index = Roll(parts.size() + is_insertion);
    const auto place = parts.begin() + static_cast<std::ptrdiff_t>(index);
    if (is_insertion) {
        parts.insert(place, make(std::span(parts).first(index)));
        return;
    }
    switch (Roll(4)) {
    case 0:
        if (parts.size() > 1) parts.erase(place);
        break;
    case 1: parts.insert(place, std::string(*place)); break;
    case 2: std::swap(*place, parts[Roll(parts.size())]); break;
    default: *place = make(std::span(parts).first(index));
    }
}

std::string SomeMove() {
    MoveList list;
    GenerateAllLegalMoves(list, LastMove());
    if (list.count == 0) return "e2e4";
    engine_state.san_notation = Roll(2) == 0;
    return WrittenMove(list.moves[Roll(static_cast<std::size_t>(list.count))]);
}

std::string SomeFen() {
    const char* const fen = Pick(POSITIONS);
    return Roll(2) == 0 ? fen : ChangedFen(fen);
}

std::string ChangedFen(std::string_view fen) {
    Parts fields = SplitText(fen, ' ');
    const std::size_t index = Roll(fields.size());
    std::string& field = fields[index];
    switch (index) {
    case 0: field = ChangedPlacement(field); break;
    case 1: field = field == "w" ? "b" : "w"; break;
    case 2: field = Pick(CASTLINGS); break;
    case 3: field = Pick(EN_PASSANT_SQUARES); break;
    default: field = Pick(NUMBERS);
    }
    return JoinedText(fields, ' ');
}

std::string FilledText(std::string_view text) {
    std::string filled;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%' || i + 1 == text.size()) {
            filled += text[i];
            continue;
        }
        const char kind = text[++i];
        filled += kind == 'm' ? SomeMove() : kind == 'f' ? SomeFen() : Pick(NUMBERS);
    }
    return filled;
}

void PlaySomeMoves(std::size_t count) {
    ResetEngine(false);
    for (std::size_t i = 0; i < count; ++i) {
        MoveList list;
        GenerateAllLegalMoves(list, LastMove());
        if (list.count == 0) return;
        const Move& move = list.moves[Roll(static_cast<std::size_t>(list.count))];
        MakeForceMove(move);
        SaveIntoStateHistory(move);
    }
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t max_size, unsigned seed) {
    dice.seed(seed);
    if (Roll(2) == 0) return LLVMFuzzerMutate(data, size, max_size);
    // Mutators play moves. What fails in them is no input that the fuzzer could leave as a finding.
    constexpr const char* MUTATED = "mutated";
    const std::string_view before(reinterpret_cast<const char*>(data), size);
    WriteText(MUTATED, before);
    const std::string text = MutateInput(before);
    std::remove(MUTATED);
    return text.copy(reinterpret_cast<char*>(data), max_size);
}
