#include "notation/notation.h"

#include "board/move.h"
#include "board/position.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "moves/generate.h"
#include "moves/makemove.h"
#include "notation/text.h"

#include <cassert>

namespace {

constexpr int MOVE_TEXT_SIZE = 32;
constexpr int NO_HINT = -1;

// A move as read from text. Unknown squares are NO_SQUARE.
struct MoveWish {
    int from = NO_SQUARE;
    int to = NO_SQUARE;
    PieceType promotion = NO_PIECE_TYPE;
};

// Returns NO_SQUARE if the square is not on the board. Without the test, "i1" would be read as a2.
int ReadSquare(char file, char rank) {
    if (!IsOnBoard(FileByChar(file), RankByChar(rank))) return NO_SQUARE;
    return SquareOf(FileByChar(file), RankByChar(rank));
}

MoveWish ReadCoordinates(std::string_view text) {
    MoveWish wish{ReadSquare(text[0], text[1]), ReadSquare(text[2], text[3])};
    if (text.size() == 5) wish.promotion = PieceByChar(text[4]);
    return wish;
}

MoveWish ReadCastling(std::string_view text) {
    const int from = KING_HOME[board.side_to_move];
    const bool is_long = text.size() > 3 && text[3] == '-';
    return {from, SquareOf(is_long ? FILE_C : FILE_G, RankOf(from))};
}

void GenerateCandidates(bool is_capture, MoveList& list) {
    if (is_capture) {
        GenerateCaptures(list, LastMove());
    } else {
        GenerateNonCaptures(list);
    }
}

// Returns the from-square of the first legal move that matches the arguments, or NO_SQUARE. The
// hints are the file and the rank of the from-square; each is NO_HINT if unknown.
int FindMover(PieceType type, int to, bool is_capture, int file_hint, int rank_hint) {
    MoveList list;
    GenerateCandidates(is_capture, list);
    for (const Move& move : list) {
        if (TypeOf(move.piece) == type && move.to == to &&
            (file_hint == NO_HINT || FileOf(move.from) == file_hint) &&
            (rank_hint == NO_HINT || RankOf(move.from) == rank_hint) && IsLegalMove(move)) {
            return move.from;
        }
    }
    return NO_SQUARE;
}

// Reads a SAN piece move such as "Nbxd2+" from its end to its start: check mark, to-square, capture
// mark, hints (rank and file of the from-square). The piece letter is at index 0.
MoveWish ReadPieceMove(std::string_view text) {
    std::size_t i = text.size() - 1;
    while (i > 0 && !IsDigit(text[i])) {
        --i;
    }
    if (i < 2) return {};
    MoveWish wish;
    wish.to = ReadSquare(text[i - 1], text[i]);
    i -= 2;
    const bool is_capture = i > 0 && text[i] == 'x';
    if (is_capture) --i;
    const int rank_hint = i > 0 && IsDigit(text[i]) ? RankByChar(text[i--]) : NO_HINT;
    const int file_hint = i > 0 && IsLowerCase(text[i]) ? FileByChar(text[i]) : NO_HINT;
    if (file_hint != NO_HINT && rank_hint != NO_HINT) {
        if (IsOnBoard(file_hint, rank_hint)) wish.from = SquareOf(file_hint, rank_hint);
    } else {
        wish.from = FindMover(PieceByChar(text[0]), wish.to, is_capture, file_hint, rank_hint);
    }
    return wish;
}

// Returns the piece type of a promotion such as "=Q" at index `place`, or NO_PIECE_TYPE.
PieceType ReadPromotion(std::string_view text, std::size_t place) {
    if (text.size() <= place + 1 || text[place] != '=' || !IsUpperCase(text[place + 1])) {
        return NO_PIECE_TYPE;
    }
    return PieceByChar(text[place + 1]);
}

MoveWish ReadPawnMove(std::string_view text) {
    const int behind = -PAWN_STEP[board.side_to_move];
    MoveWish wish;
    if (text.size() >= 2 && IsDigit(text[1])) {
        wish.to = ReadSquare(text[0], text[1]);
        if (wish.to == NO_SQUARE || !IsSquare(wish.to + behind)) return {};
        wish.from = wish.to + behind;
        if (board.position[wish.from] == NO_PIECE) wish.from += behind;
        wish.promotion = ReadPromotion(text, 2);
    } else if (text.size() >= 4 && text[1] == 'x') {
        wish.to = ReadSquare(text[2], text[3]);
        const int file = FileByChar(text[0]);
        if (wish.to == NO_SQUARE || !IsSquare(wish.to + behind) || file >= BOARD_SIDE) return {};
        wish.from = SquareOf(file, RankOf(wish.to + behind));
        wish.promotion = ReadPromotion(text, 4);
    }
    return wish;
}

MoveWish ReadToken(std::string_view text) {
    if (IsInCan(text)) return ReadCoordinates(text);
    if (text.starts_with('O')) return ReadCastling(text);
    if (!text.empty() && IsUpperCase(text[0])) return ReadPieceMove(text);
    if (!text.empty() && IsLowerCase(text[0])) return ReadPawnMove(text);
    return {};
}

// A move text under construction.
struct MoveText {
    int length;
    char text[MOVE_TEXT_SIZE];
};

void AddChar(MoveText& text, char c) {
    assert(text.length < MOVE_TEXT_SIZE);
    text.text[text.length++] = c;
}

void AddSquare(MoveText& text, int square) {
    AddChar(text, CharByFile(FileOf(square)));
    AddChar(text, CharByRank(RankOf(square)));
}

// Appends a SAN piece move without the check mark. If other pieces of this type can move to the
// same square, adds the file of the from-square, its rank, or both.
void AddPieceMove(MoveText& text, const Move& move) {
    MoveList list;
    bool needs_file = false;
    bool needs_rank = false;
    GenerateCandidates(move.captured != NO_PIECE, list);
    for (const Move& other : list) {
        if (TypeOf(other.piece) != TypeOf(move.piece) || other.to != move.to ||
            other.from == move.from || !IsLegalMove(other)) {
            continue;
        }
        (FileOf(other.from) == FileOf(move.from) ? needs_rank : needs_file) = true;
    }
    AddChar(text, CharByPiece(TypeOf(move.piece)));
    if (needs_file) AddChar(text, CharByFile(FileOf(move.from)));
    if (needs_rank) AddChar(text, CharByRank(RankOf(move.from)));
    if (move.captured != NO_PIECE) AddChar(text, 'x');
    AddSquare(text, move.to);
}

void AddPawnMove(MoveText& text, const Move& move) {
    if (FileOf(move.from) != FileOf(move.to)) {
        AddChar(text, CharByFile(FileOf(move.from)));
        AddChar(text, 'x');
    }
    AddSquare(text, move.to);
    if (IsPromotion(move)) {
        AddChar(text, '=');
        AddChar(text, CharByPiece(TypeOf(move.promoted)));
    }
}

void AddCastling(MoveText& text, const Move& move) {
    for (const char c : std::string_view(FileOf(move.to) == FILE_C ? "O-O-O" : "O-O")) {
        AddChar(text, c);
    }
}

void AddCheckMark(MoveText& text, const Move& move) {
    MakeMove(move);
    if (IsMate(&move)) {
        AddChar(text, '#');
    } else if (IsCheck()) {
        AddChar(text, '+');
    }
    UnMakeMove(move);
}

} // namespace

bool IsInCan(std::string_view text) {
    return text.size() >= 4 && IsLowerCase(text[0]) && IsDigit(text[1]) && IsLowerCase(text[2]) &&
           IsDigit(text[3]);
}

bool ParseMove(std::string_view text, Move& move) {
    const MoveWish wish = ReadToken(text);
    if (wish.from == NO_SQUARE || wish.to == NO_SQUARE) return false;
    MoveList list;
    GenerateAllMoves(list, LastMove());
    for (const Move& listed : list) {
        if (listed.from == wish.from && listed.to == wish.to &&
            (wish.promotion == NO_PIECE_TYPE || TypeOf(listed.promoted) == wish.promotion)) {
            move = listed;
            return true;
        }
    }
    return false;
}

const char* WrittenSan(const Move& move) {
    static MoveText text;
    text.length = 0;
    if (move.castle) {
        AddCastling(text, move);
    } else if (TypeOf(move.piece) == PAWN) {
        AddPawnMove(text, move);
    } else {
        AddPieceMove(text, move);
    }
    AddCheckMark(text, move);
    AddChar(text, '\0');
    return text.text;
}

const char* WrittenCoordinates(const Move& move) {
    static MoveText text;
    text.length = 0;
    AddSquare(text, move.from);
    AddSquare(text, move.to);
    if (IsPromotion(move)) AddChar(text, LowerCase(CharByPiece(TypeOf(move.promoted))));
    AddChar(text, '\0');
    return text.text;
}

const char* WrittenMove(const Move& move) {
    return engine_state.san_notation ? WrittenSan(move) : WrittenCoordinates(move);
}
