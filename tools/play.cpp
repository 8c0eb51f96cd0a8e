// korvane-play: Korvane for a person at a terminal, with a board and moves as people type them. It
// takes the engine's options; moves, rules, book, search and logs are the engine's.
#include "book/book.h"
#include "frame/startup.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/characters.h"
#include "notation/diagram.h"
#include "notation/notation.h"
#include "notation/pgninfo.h"
#include "notation/portable.h"
#include "notation/setboard.h"
#include "notation/text.h"
#include "platform/channel.h"
#include "platform/system.h"
#include "play/newgame.h"
#include "play/strength.h"
#include "play/turns.h"
#include "protocol/interpreter.h"
#include "search/records.h"
#include "search/rootsearch.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::uint64_t TICKS_PER_SECOND = 10'000'000;
constexpr const char* HELP =
    "a move: e4, Nf3, e2e4, O-O      go: Korvane plays this side   undo: takes back\n"
    "new: a new game                 flip: turns the board         quit: ends\n"
    "hint, book: what to play        analyse: until Enter          resign\n"
    "level SECONDS: time for a move  depth N: plies at most        strength ELO|off: 1000 to 2400\n"
    "fen: shows the position         fen FEN: sets one up          pgn FILE: writes the game\n";

DiagramStyle style = {};
bool is_analysing = false;
std::int32_t seconds = 2; // for a move
std::int32_t elo = 0;     // 0: full strength
std::uint64_t search_end = 0;
std::string last_line; // what the engine thought last
CommandLine input;

std::string San(const Move& move) { return WrittenMove(move); }

std::string WithoutMarks(std::string_view text) {
    std::string plain;
    for (const char c : text) {
        const bool is_mark = std::string_view("+#!?=x:-").find(c) != std::string_view::npos;
        if (!is_mark) plain += c == '0' ? 'O' : c;
    }
    return plain;
}

void DrawBoard() { std::printf("\n%s", WrittenDiagram(style).c_str()); }

bool IsStopWanted() { return is_analysing ? WaitingInput() != 0 : SystemTime() >= search_end; }

// The line in one row, as it would be printed by the engine.
void TakeLine(const SearchLine& line) {
    const GameState saved = game_state;
    const std::span<const Move> played = PlayablePart(line.moves);
    char start[32];
    std::snprintf(start, sizeof start, "%2d %+6.2f ", line.plies, line.score / 100.0);
    last_line = start;
    for (const Move& move : played) {
        last_line += " " + San(move);
        MakeForceMove(move);
    }
    for (std::size_t i = played.size(); i > 0; --i) {
        UnMakeMove(played[i - 1]);
    }
    game_state = saved;
    if (is_analysing) std::printf("  %s\n", last_line.c_str());
}

// Finds a move in the time there is; the expected reply may be a fake move.
void Think(std::int32_t level, Move& move, Move& reply) {
    SearchLimits limits{.depth = engine_state.depth_limit, .clock = {}};
    search_end = SystemTime() + static_cast<std::uint64_t>(seconds) * TICKS_PER_SECOND;
    last_line.clear();
    if (level > 0) {
        FindMoveOfLevel(level, move, reply, limits);
    } else {
        FindBestMove(&move, &reply, LastMove(), limits);
    }
}

// Tells the end of the game, logs the game and begins another; false while it goes on.
bool EndGame(const char* line) {
    if (!line) return false;
    DrawBoard();
    std::printf("\n%s. A new game begins.\n", line);
    ParseCommand((std::string("result ") + line).c_str());
    ParseCommand("new");
    return true;
}

void PlayEngineMove(const std::string& = "") {
    if (!HasLegalMove(LastMove()) || IsHistoryFull()) return;
    pgn_game_info.engine_color = side_to_move;
    Move move, reply;
    SetFakeMove(reply);
    const bool knows_more = elo == 0 || game_state.ply_count < BookPliesOfLevel(elo);
    const bool is_from_book = knows_more && GetNextBookMove(move);
    if (!is_from_book) Think(elo, move, reply);
    const std::string text = San(move);
    PlayMove(text);
    game_state.expected_move = reply;
    if (!EndGame(EndOfGameLine(LastMove()))) DrawBoard();
    std::printf("\nKorvane plays %s%s\n", text.c_str(), is_from_book ? " (book)" : "");
    if (!is_from_book && !last_line.empty()) std::printf("  %s\n", last_line.c_str());
}

// What sets a mover apart from others of its kind is left out.
std::string Short(const Move& move, const std::string& san) {
    const bool is_piece = TypeOf(move.piece) != PAWN && !move.castle;
    return is_piece ? san.substr(0, 1) + san.substr(san.size() - 2) : san;
}

// Plays the move that a person typed, or says what it is missing.
void PlayTypedMove(const std::string& word) {
    const std::string typed = WithoutMarks(word);
    MoveList list;
    GenerateAllLegalMoves(list, LastMove());
    std::vector<Move> meant;
    for (const Move& move : list) {
        const std::string san = WithoutMarks(San(move));
        if (typed == san) meant.assign(1, move);
        if (typed == san) break;
        if (typed == Short(move, san)) meant.push_back(move);
    }
    Move move;
    if (meant.empty() && IsLowerCase(typed[0]) && ParseMove(typed, move) && IsLegalMove(move))
        meant.assign(1, move);
    if (meant.size() == 1 && !IsHistoryFull()) {
        PlayMove(San(meant.front()));
        pgn_game_info.engine_color = side_to_move;
        if (!EndGame(EndOfGameLine(LastMove()))) PlayEngineMove();
        return;
    }
    const bool is_move = std::ranges::any_of(typed, IsDigit) || typed.starts_with("OO");
    const char* const error = meant.size() > 1 ? "Ambiguous"
                              : is_move        ? "Not legal here"
                                               : "Unknown (try help)";
    std::printf("%s: %s\n", error, word.c_str());
}

void Analyse(const std::string&) {
    is_analysing = true;
    std::printf("Enter ends the analysis.\n");
    FindBestMove(nullptr, nullptr, LastMove(), {.depth = engine_state.depth_limit, .clock = {}});
    is_analysing = false;
    ReceiveCommand(input);
}

void Hint(const std::string&) {
    Move move, reply;
    Think(0, move, reply);
    std::printf("%s\n", San(move).c_str());
}

// The game goes back to its start to be written, and forward again.
void WriteGame(const std::string& file_name) {
    const std::vector<Move> moves(state_history.moves + 1,
                                  state_history.moves + 1 + state_history.count);
    PgnGameInfo info = pgn_game_info;
    CorrectPgnTagValues(info);
    RestartGame();
    const bool is_written = !file_name.empty() && WritePgnGame(file_name.c_str(), info, moves);
    for (const Move& move : moves) {
        PlayMove(San(move));
    }
    if (!is_written) std::printf("Cannot write the file: %s\n", file_name.c_str());
}

// Sets a number in its range; false, and the range told, for any other word.
void SetNumber(std::string_view word, std::int32_t least, std::int32_t most, std::int32_t& value) {
    std::int32_t number = 0;
    if (ReadNumber(word, number) && number >= least && number <= most) {
        value = number;
    } else {
        std::printf("Not a number from %d to %d: %s\n", least, most, std::string(word).c_str());
    }
}

void SetFen(const std::string& fen) {
    if (fen.empty()) {
        std::printf("%s\n", GetBoardFen());
    } else if (SetBoardFen(fen)) {
        DrawBoard();
    } else {
        std::printf("Not a playable position: %s\n", fen.c_str());
    }
}

void ShowHelp(const std::string&) { std::fputs(HELP, stdout); }
void ShowBook(const std::string&) { std::fputs(WrittenBookHelp(), stdout); }
void SetLevel(const std::string& text) { SetNumber(text, 1, 3600, seconds); }
void SetDepth(const std::string& text) { ParseCommand(("sd " + text).c_str()); }

void StartGame(const std::string&) {
    ParseCommand("new");
    DrawBoard();
}

void Undo(const std::string&) {
    UndoMove();
    UndoMove();
    DrawBoard();
}

void Flip(const std::string&) {
    style.is_flipped = !style.is_flipped;
    DrawBoard();
}

void SetStrength(const std::string& text) {
    if (text == "off")
        elo = 0;
    else
        SetNumber(text, MIN_ELO, MAX_ELO, elo);
}

void Resign(const std::string&) {
    EndGame(side_to_move == WHITE ? "0-1 {White resigns}" : "1-0 {Black resigns}");
    DrawBoard();
}

struct Word {
    std::string_view name;
    void (*carry_out)(const std::string& text);
};
constexpr Word WORDS[] = {
    {"help", ShowHelp},   {"new", StartGame}, {"go", PlayEngineMove}, {"undo", Undo},
    {"flip", Flip},       {"hint", Hint},     {"book", ShowBook},     {"level", SetLevel},
    {"depth", SetDepth},  {"fen", SetFen},    {"pgn", WriteGame},     {"strength", SetStrength},
    {"analyse", Analyse}, {"resign", Resign},
};

void CarryOut(const std::string& word, std::string_view rest) {
    const auto found = std::ranges::find(WORDS, word, &Word::name);
    if (found == std::end(WORDS))
        PlayTypedMove(word);
    else
        found->carry_out(TakeWordsBefore(rest, ""));
}

bool IsUnicodeTerminal() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value && *value) return std::string_view(value).find("UTF-8") != std::string_view::npos;
    }
    return false;
}

} // namespace

int main(int argument_count, char** arguments) {
    PrepareProcess(Interrupts::FATAL);
    Initialize(argument_count, arguments);
    style.is_coloured = IsConsoleOutput();
    style.is_unicode = IsUnicodeTerminal();
    engine_state.san_notation = 1;
    engine_state.use_resign = 0;
    search_host = {.must_stop = IsStopWanted, .tell_line = TakeLine};
    DrawBoard();
    std::printf("\nType your move, go, or help.\n");
    for (;;) {
        std::printf("> ");
        std::fflush(stdout);
        ReceiveCommand(input);
        std::string_view rest = input;
        const std::string word(NextWord(rest));
        if (word == QUIT_COMMAND) break;
        if (!word.empty()) CarryOut(word, rest);
    }
    std::printf("\n");
    Finalize();
    return EXIT_SUCCESS;
}
