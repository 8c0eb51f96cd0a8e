#include "book/bookmaker.h"

#include "book/book.h"
#include "book/movetrie.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/notation.h"
#include "notation/portable.h"
#include "platform/enforce.h"
#include "platform/system.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <span>
#include <string>

namespace {

constexpr std::int32_t MAX_GAME_MOVES = 512; // in plies; the rest of a longer game is ignored
constexpr int LISTING_WIDTH = 1024;
constexpr std::int32_t PROGRESS_STEP = 500; // number of games between progress reports

// A line of moves. In MakeBook, `line` contains the moves of a game, and moves[0] is the first
// move. In ShowBook, `line` contains the path from the root to a node of the book. There, moves[0]
// is the undefined move of the root, and moves[1] is the first move.
struct Line {
    std::int32_t length;
    Move moves[MAX_GAME_MOVES + 1];
};
Line line;

bool is_progress_shown = false; // true if the last console line is a progress report

[[noreturn]] void FailBuilding(const std::string& message) {
    if (is_progress_shown) std::fputs("\n", stderr);
    FatalError(message);
}

std::span<const Move> FirstMoves(const Line& list, std::int32_t most) {
    return {list.moves, static_cast<std::size_t>(std::min(list.length, most))};
}

// The input file of MakeBook.
struct GameFile {
    const char* name;
    std::FILE* file;
    bool is_pgn;
    std::int32_t games; // number of games read, including the current one
};

// Ends the program with an error message about the illegal move `token`. If standard error is a
// console, the message also contains the number of the game and the move number.
[[noreturn]] void RefuseMove(const GameFile& input, const char* token) {
    std::string message = std::string("Error (illegal move): ") + token;
    if (IsConsoleErrors()) {
        message += "\nin game " + std::to_string(input.games) + " of " + input.name;
        const std::string white = GetPgnTagValueByName(pgn_game_info, "White");
        const std::string black = GetPgnTagValueByName(pgn_game_info, "Black");
        if (white != "?" || black != "?") message += " (" + white + " - " + black + ")";
        message += std::string(", move ") + WrittenMoveNumber(line.length);
    }
    FailBuilding(message);
}

void ReadTags(std::FILE* file) {
    PgnTag tag;
    while (ReadNextPgnTag(file, tag)) {
        SetPgnTagValueByName(pgn_game_info, tag.name, tag.value);
    }
}

// Reads the moves of a game into `line` and plays them on the board.
void ReadMoves(const GameFile& input) {
    char token[MOVE_TOKEN_SIZE];
    line.length = 0;
    while (ReadNextPgnMove(input.file, token)) {
        if (line.length == MAX_GAME_MOVES) continue;
        Move& move = line.moves[line.length++];
        if (!ParseMove(token, move) || !IsLegalMove(move)) RefuseMove(input, token);
        MakeForceMove(move);
    }
    SkipLine(input.file);
}

std::int64_t FileSize(std::FILE* file) {
    if (std::fseek(file, 0, SEEK_END) != 0) return 0;
    const std::int64_t size = std::ftell(file);
    std::rewind(file);
    return size;
}

void ShowProgress(const GameFile& input, std::int64_t size) {
    const std::int64_t share = size > 0 ? 100 * std::int64_t{std::ftell(input.file)} / size : 0;
    std::fprintf(stderr, "\r%d games read, %d%% of the file", input.games, static_cast<int>(share));
    is_progress_shown = true;
}

// Adds the first `max_plies` plies of every game to the trie.
void ReadGames(GameFile& input, std::int32_t max_plies, MoveTrieNode& root) {
    const bool is_shown = IsConsoleErrors();
    const std::int64_t size = is_shown ? FileSize(input.file) : 0;
    while (SkipToNextGame(input.file)) {
        ++input.games;
        SetUpInitialPosition();
        std::memset(&pgn_game_info, 0, sizeof pgn_game_info);
        if (input.is_pgn) ReadTags(input.file);
        ReadMoves(input);
        InsertIntoMoveTrie(root, FirstMoves(line, max_plies), input.is_pgn);
        if (input.games % PROGRESS_STEP == 0 && is_shown) ShowProgress(input, size);
    }
}

// Writes one line of text for each leaf of the subtree: the moves from the root to the leaf. The
// variable `line` must contain the moves from the root to the parent of `node`.
void WriteLines(std::FILE* text, const MoveTrieNode& node) {
    line.moves[line.length++] = node.move;
    if (node.child_count <= 0) {
        const std::span<const Move> moves = FirstMoves(line, line.length).subspan(1);
        WritePgnMoveList(text, moves, {1, LISTING_WIDTH, "*", WrittenSan});
        std::fputs("\n", text);
    }
    for (const MoveTrieNode* child = node.children; child; child = child->next) {
        WriteLines(text, *child);
    }
    --line.length;
}

} // namespace

void MakeBook(const char* book_name, const char* input_name, bool is_pgn, std::int32_t max_plies,
              std::int32_t minimum_count) {
    RequireFile(input_name);
    GameFile input{input_name, OpenFile(input_name, FileUse::READ), is_pgn, 0};
    if (!input.file) FatalError(std::string("Error (cannot read file): ") + input_name);
    MoveTrieNode root{};
    InitMoveTrie(root);
    ReadGames(input, max_plies, root);
    if (std::ferror(input.file)) {
        FailBuilding(std::string("Error (cannot read file): ") + input_name);
    }
    std::fclose(input.file);
    const std::int32_t nodes = WriteMoveTrie(root, book_name, minimum_count);
    if (nodes == 0) FailBuilding(std::string("Error (cannot write book file): ") + book_name);
    FreeMoveTrie(root);
    if (IsConsoleErrors()) {
        std::fprintf(stderr, "\r%d games read, %d positions kept, %s written\n", input.games, nodes,
                     book_name);
    }
}

void ShowBook(const char* book_name, const char* text_name) {
    static_assert(MAX_TRIE_PLIES <= MAX_GAME_MOVES);
    MoveTrieNode root{};
    if (const char* error = ReadBook(root, book_name)) {
        const char* what = error == NO_MEMORY_FOR_BOOK ? "no memory for" : "damaged";
        FatalError(std::string("Error (") + what + " book file): " + book_name);
    }
    line.length = 0;
    std::FILE* text = OpenFile(text_name, FileUse::WRITE);
    if (!text) FatalError(std::string("Error (cannot write file): ") + text_name);
    WriteLines(text, root);
    const bool is_broken = std::ferror(text) != 0;
    if (std::fclose(text) != 0 || is_broken) {
        FatalError(std::string("Error (cannot write file): ") + text_name);
    }
    FreeMoveTrie(root);
}
