// Tests of the functions that dump positions, moves, bitboards and keys for debugging.
#include "support.h"

#include "board/position.h"
#include "diag/dump.h"
#include "notation/notation.h"

#include <gtest/gtest.h>

namespace {

TEST(Dump, ShowsPositionsMovesAndSets) {
    StartAt("k7/4P3/8/8/8/8/8/7K w - - 0 1");
    Move move;
    ASSERT_TRUE(ParseMove("e8=R", move));
    testing::internal::CaptureStderr();
    DumpPosition();
    DumpMoveList({&move, 1});
    DumpBitBoard(BIT_RANK[0] | BIT_RANK[63] | BIT_RANK[8]);
    DumpZobristKey(0x8000000000000005);
    const std::string row = "- - - - - - - - \n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "DumpPosition(): BEGIN\nPiece at H1 is a WHITE KING (MF=1)\n"
              "Piece at E7 is a WHITE PAWN (MF=1)\nPiece at A8 is a BLACK KING (MF=1)\n"
              "DumpPosition(): END\nDumpMoveList(): BEGIN\n1\nPiece at E7 is a WHITE PAWN (MF=1) "
              "which moves to E8 (and promotes to ROOK)\nDumpMoveList(): END\n- - - - - - - X \n" +
                  row + row + row + row + row + "X - - - - - - - \nX - - - - - - - \n\n1" +
                  std::string(60, '0') + "101\n");
}

} // namespace
