#include "book/book.h"

#include "board/move.h"
#include "board/utility.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "notation/portable.h"
#include "notation/text.h"
#include "platform/enforce.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string_view>

MoveTrieNode book;

namespace {

constexpr std::size_t HELP_TEXT_SIZE = 2048;
constexpr std::size_t HELP_LINE_SIZE = 64;

// Sets `move` to the legal move with the same squares and promotion as `wanted`. Returns false if
// there is none.
bool FindLegalMove(const Move& wanted, const Move* last_move, Move& move) {
    MoveList list;
    GenerateAllLegalMoves(list, last_move);
    const auto found =
        std::ranges::find_if(list, [&](const Move& legal) { return IsSameMove(legal, wanted); });
    if (found == end(list)) return false;
    move = *found;
    return true;
}

// Removes `*link` from the children of `parent`. Frees the removed child and its subtree.
void DropChild(MoveTrieNode& parent, MoveTrieNode** link) {
    MoveTrieNode* child = *link;
    *link = child->next;
    --parent.child_count;
    FreeMoveTrie(*child);
    delete child;
}

// Checks the moves of the subtree. Replaces each move by the generated move with the same squares
// and promotion, because the other fields of the file's move may be wrong. Returns false if a move
// is illegal, except after a promotion: illegal moves after a promotion are dropped. They can occur
// in a correct book, because promotions to different pieces share a node, so a reply to one
// promotion may be illegal after another.
bool MakePlayable(MoveTrieNode& node, const Move* last_move, bool is_behind_promotion) {
    for (MoveTrieNode** link = &node.children; *link;) {
        MoveTrieNode& child = **link;
        if (!FindLegalMove(child.move, last_move, child.move)) {
            if (!is_behind_promotion) return false;
            DropChild(node, link);
            continue;
        }
        MakeMove(child.move);
        const bool is_playable =
            MakePlayable(child, &child.move, is_behind_promotion || IsPromotion(child.move));
        UnMakeMove(child.move);
        if (!is_playable) return false;
        link = &child.next;
    }
    return true;
}

// Appends a line to the text. Returns false and changes nothing if the line does not fit.
bool AppendLine(char (&text)[HELP_TEXT_SIZE], std::size_t& length, const char* line) {
    const std::size_t added = std::strlen(line);
    if (length + added >= HELP_TEXT_SIZE) return false;
    std::memcpy(text + length, line, added + 1);
    length += added;
    return true;
}

void WriteHelpMoves(char (&text)[HELP_TEXT_SIZE]) {
    std::size_t length = 0;
    const char* number = WrittenMoveNumber(game_state.ply_count + 1);
    for (const MoveTrieNode* child = book_state.node->children; child; child = child->next) {
        Move move;
        if (!FindLegalMove(child->move, LastMove(), move)) continue;
        char line[HELP_LINE_SIZE];
        std::snprintf(line, sizeof line, " %s %s\n", number, WrittenMove(move));
        if (!AppendLine(text, length, line)) return;
    }
}

// Accepts only regular files, because reading a named pipe may block forever.
const char* ReadPlainBook(MoveTrieNode& root, const char* file_name) {
    return IsPlainFile(file_name) ? ReadBook(root, file_name) : "it is no plain file";
}

// Picks a book move at random and returns its node. Returns null if the book has no move, or if the
// picked move is illegal. A book move can be illegal after a promotion, because promotions to
// different pieces share a node.
const MoveTrieNode* PickChild(Move& move) {
    if (!IsFollowingBook()) return nullptr;
    const std::uint32_t r1 = RandomU15();
    const std::uint32_t r2 = RandomU15();
    const std::uint32_t r3 = RandomU15();
    SeedRandom(static_cast<std::uint32_t>(std::time(nullptr)) + r1 + r2 * r3);
    const auto children = static_cast<std::uint32_t>(book_state.node->child_count);
    const MoveTrieNode* child = book_state.node->children;
    for (std::uint32_t skipped = RandomU15() % children; skipped > 0; --skipped) {
        child = child->next;
    }
    return FindLegalMove(child->move, LastMove(), move) ? child : nullptr;
}

} // namespace

const char* ReadBook(MoveTrieNode& root, const char* file_name) {
    const char* error = ReadMoveTrie(root, file_name);
    SetUpInitialPosition();
    if (error || MakePlayable(root, nullptr, false)) return error;
    FreeMoveTrie(root);
    InitMoveTrie(root);
    return "a move is not legal";
}

const char* InitializeBook(const char* file_name) { return ReadPlainBook(book, file_name); }

void FinalizeBook() {
    FreeMoveTrie(book);
    InitMoveTrie(book);
}

const char* ReplaceBook(const char* file_name) {
    MoveTrieNode root;
    InitMoveTrie(root);
    if (const char* error = ReadPlainBook(root, file_name)) return error;
    FinalizeBook();
    book = root;
    return nullptr;
}

void NewBookState() {
    book_state.node = &book;
    book_state.in_book = 1;
    UpdateBookHelp();
}

bool IsFollowingBook() {
    return engine_state.use_book && book_state.in_book && book_state.node->child_count > 0;
}

void LeaveBook() {
    book_state.in_book = 0;
    UpdateBookHelp();
}

bool PickBookMove(Move& move) { return PickChild(move) != nullptr; }

bool GetNextBookMove(Move& move) {
    if (!engine_state.use_book || !book_state.in_book) return false;
    const MoveTrieNode* const child = PickChild(move);
    if (child) {
        book_state.node = child;
    } else {
        book_state.in_book = 0;
    }
    return child != nullptr;
}

void SetNextBookMove(const Move& move) {
    if (!engine_state.use_book || !book_state.in_book) return;
    for (const MoveTrieNode* child = book_state.node->children; child; child = child->next) {
        if (IsEqualMove(child->move, move)) {
            book_state.node = child;
            return;
        }
    }
    book_state.in_book = 0;
}

const char* WrittenBookHelp() {
    static char text[HELP_TEXT_SIZE];
    text[0] = '\0';
    if (!engine_state.use_book) {
        CopyText(text, " Book not available!\n");
    } else if (book_state.in_book) {
        WriteHelpMoves(text);
    }
    if (text[0] == '\0') CopyText(text, " Out of book!\n");
    return text;
}

void UpdateBookHelp() {
    std::string_view help = WrittenBookHelp();
    if (help.size() >= BOOK_HELP_SIZE) {
        help = help.substr(0, help.rfind('\n', BOOK_HELP_SIZE - 2) + 1);
    }
    CopyText(book_state.help, help);
}
