#include "notation/typed.h"

#include "game/enginestate.h"
#include "game/gamestate.h"
#include "moves/makemove.h"
#include "moves/predicates.h"
#include "notation/characters.h"
#include "notation/notation.h"

#include <algorithm>
#include <string>

namespace {

std::string WithoutMarks(std::string_view text) {
    std::string plain;
    for (const char c : text) {
        const bool is_mark = std::string_view("+#!?=x:-()").find(c) != std::string_view::npos;
        if (!is_mark) plain += c == '0' || c == 'o' ? 'O' : c;
    }
    return plain;
}

std::string Name(std::int32_t square) {
    return {CharByFile(FileOf(square)), CharByRank(RankOf(square))};
}

// Every way to write the move but its SAN, which is given without marks.
std::vector<std::string> OtherSpellings(const Move& move, const std::string& san) {
    const std::string from = Name(move.from), to = Name(move.to);
    const bool has_letter = TypeOf(move.piece) != PAWN && !move.castle;
    const std::string piece = has_letter ? san.substr(0, 1) : "";
    std::vector<std::string> promotions{""};
    if (IsPromotion(move)) {
        const char letter = san.back();
        promotions = {{letter}, {LowerCase(letter)}};
        if (TypeOf(move.promoted) == QUEEN) promotions.push_back("");
    }
    std::vector<std::string> spellings;
    for (const std::string& promotion : promotions) {
        spellings.push_back(from + to + promotion);
        spellings.push_back(piece + from + to + promotion);
        spellings.push_back(piece + from[0] + to + promotion);
        spellings.push_back(piece + from[1] + to + promotion);
        if (!move.castle) spellings.push_back(piece + to + promotion);
    }
    return spellings;
}

} // namespace

std::vector<Move> FindTypedMoves(std::string_view word) {
    const std::string typed = WithoutMarks(word);
    const std::uint8_t notation = engine_state.san_notation;
    engine_state.san_notation = 1;
    MoveList list;
    GenerateAllLegalMoves(list, LastMove());
    std::vector<Move> meant;
    for (const Move& move : list) {
        const std::string san = WithoutMarks(WrittenMove(move));
        if (typed == san) {
            meant.assign(1, move);
            break;
        }
        if (std::ranges::count(OtherSpellings(move, san), typed) > 0) meant.push_back(move);
    }
    engine_state.san_notation = notation;
    return meant;
}
