// korvane-play: Korvane for a person at a terminal, with a board and moves as people type them. It
// takes the engine's options; moves, rules, book, search and logs are the engine's.
#include "book/book.h"
#include "frame/startup.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/diagram.h"
#include "notation/notation.h"
#include "notation/pgninfo.h"
#include "notation/portable.h"
#include "notation/setboard.h"
#include "notation/text.h"
#include "notation/typed.h"
#include "platform/channel.h"
#include "platform/enforce.h"
#include "platform/system.h"
#include "play/newgame.h"
#include "play/record.h"
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
    "level SECONDS: time for a move  depth N|off: plies at most    strength ELO|off: 1000 to 2400\n"
    "fen: shows the position         fen FEN: sets one up          pgn FILE: appends the game\n";

DiagramStyle style = {};
bool is_analysing = false;
std::int32_t seconds = 2; // for a move
std::int32_t plies = 0;   // 0: no limit
std::int32_t elo = 0;     // 0: full strength
std::uint64_t search_end = 0;
std::string last_line;   // what the engine thought last,
std::string line_begins; // with this move
std::string result;      // of the game; empty while it goes on
CommandLine input;
bool is_input_waiting = false; // a line was read that is still to be carried out

std::string San(const Move& move) { return WrittenMove(move); }

// Board and game, as far as it goes.
void Draw() {
    std::printf("\n%s", WrittenDiagram(style).c_str());
    if (state_history.count == 0) return;
    WriteMovesSoFar(stdout);
    std::printf("\n");
}

// The search has no more time, or nobody will type any more.
bool IsStopWanted() {
    FlushOutput();
    if (is_analysing) return IsInputWaiting();
    return SystemTime() >= search_end || WaitingInput() == INPUT_UNKNOWN;
}

// The line in one row, as it would be printed by the engine.
void TakeLine(const SearchLine& line) {
    char start[32];
    std::snprintf(start, sizeof start, "%2d %+6.2f ", line.plies, line.score / 100.0);
    if (const std::int32_t mate = MovesToMate(line.score))
        std::snprintf(start, sizeof start, "%2d mate in %d ", line.plies, std::abs(mate));
    last_line = start + WrittenLine(line.moves);
    line_begins = San(line.moves.front());
    if (is_analysing) std::printf("  %s\n", last_line.c_str());
}

// Finds a move in the time there is; the expected reply may be a fake move.
void Think(std::int32_t level, Move& move, Move& reply) {
    const std::int32_t depth = plies > 0 ? plies * QUARTER_PLIES : engine_state.depth_limit;
    SearchLimits limits{.depth = depth, .clock = {}};
    search_end = SystemTime() + static_cast<std::uint64_t>(seconds) * TICKS_PER_SECOND;
    last_line.clear();
    if (level > 0) {
        FindMoveOfLevel(level, move, reply, limits);
    } else {
        FindBestMove(&move, &reply, LastMove(), limits);
    }
}

// "1-0 {White mates}", as front ends are told it, in words.
std::string InWords(const std::string& line) {
    const std::size_t brace = line.find('{');
    return line.substr(brace + 1, line.find('}') - brace - 1) + ": " + line.substr(0, brace - 1);
}

// Tells the end of the game, and logs the game, which stays on the board.
void EndGame(const char* line) {
    result = line;
    std::printf("\n%s. Type new for another game.\n", InWords(result).c_str());
    const std::vector<Move> moves = MovesSoFar();
    if (!moves.empty()) ParseCommand(("result " + result).c_str());
    PlayAgain(moves);
}

// Looks whether the position ends the game.
bool IsEnd() {
    if (const char* const line = EndOfGameLine(LastMove())) EndGame(line);
    return !result.empty();
}

// The game is over, which is told.
bool IsOver() {
    if (!result.empty()) std::printf("The game is over. %s.\n", InWords(result).c_str());
    return !result.empty();
}

void PlayEngineMove(const std::string& = "") {
    if (IsOver() || IsHistoryFull()) return;
    pgn_game_info.engine_color = side_to_move;
    Move move, reply;
    SetFakeMove(reply);
    const BookState book_place = book_state;
    const bool knows_more = elo == 0 || game_state.ply_count < BookPliesOfLevel(elo);
    const bool is_from_book = knows_more && GetNextBookMove(move);
    book_state = book_place; // PlayMove goes on in the book
    if (!is_from_book) Think(elo, move, reply);
    const std::string text = San(move);
    PlayMove(text);
    game_state.expected_move = reply;
    Draw();
    std::printf("\nKorvane plays %s%s\n", text.c_str(), is_from_book ? " (book)" : "");
    if (!is_from_book && line_begins == text) std::printf("  %s\n", last_line.c_str());
    IsEnd();
}

// Plays the move that a person typed, or says what it is missing.
void PlayTypedMove(const std::string& word) {
    if (IsOver()) return;
    const std::vector<Move> meant = FindTypedMoves(word);
    if (meant.size() == 1 && !IsHistoryFull()) {
        PlayMove(San(meant.front()));
        pgn_game_info.engine_color = side_to_move;
        if (EndOfGameLine(LastMove())) Draw();
        if (!IsEnd()) PlayEngineMove();
        return;
    }
    const char* const error = meant.size() > 1    ? "Ambiguous"
                              : meant.size() == 1 ? "The game is too long"
                              : word.find_first_of("12345678O0") < word.size()
                                  ? "Not legal here"
                                  : "Unknown (try help)";
    std::printf("%s: %s\n", error, word.c_str());
}

// What was typed to end the analysis is carried out if it is a word.
void Analyse(const std::string&) {
    if (IsOver()) return;
    is_analysing = true;
    std::printf("Enter ends the analysis.\n");
    FindBestMove(nullptr, nullptr, LastMove(), {.depth = engine_state.depth_limit, .clock = {}});
    is_analysing = false;
    ReceiveCommand(input);
    is_input_waiting = true;
}

void Hint(const std::string&) {
    if (IsOver()) return;
    Move move, reply;
    Think(0, move, reply);
    std::printf("%s\n", San(move).c_str());
}

void WriteGame(const std::string& file_name) {
    const std::string score = result.empty() ? "*" : result.substr(0, result.find(' '));
    const bool is_written = AppendGameSoFar(file_name.c_str(), score.c_str());
    std::error_code error;
    const std::string place = NameOf(std::filesystem::absolute(PathOf(file_name), error));
    std::printf("%s: %s\n", is_written ? "Written" : "Cannot write the file", place.c_str());
}

// Sets a number in its range, "off" as 0 where that can be; tells the range for any other word.
void SetNumber(std::string_view word, std::int32_t least, std::int32_t most, std::int32_t& value,
               bool can_be_off = true) {
    std::int32_t number = 0;
    if (can_be_off && word == "off") {
        value = 0;
    } else if (ReadWholeNumber(word, number) && number >= least && number <= most) {
        value = number;
    } else {
        std::printf("Not a number from %d to %d: %s\n", least, most, std::string(word).c_str());
    }
}

void SetFen(const std::string& fen) {
    if (fen.empty()) {
        std::printf("%s\n", GetBoardFen());
    } else if (SetBoardFen(fen)) {
        result.clear();
        Draw();
        IsEnd();
    } else {
        std::printf("Not a playable position: %s\n", fen.c_str());
    }
}

void ShowHelp(const std::string&) { std::fputs(HELP, stdout); }
void ShowBook(const std::string&) { std::fputs(WrittenBookHelp(), stdout); }
void SetLevel(const std::string& text) { SetNumber(text, 1, 3600, seconds, false); }
void SetDepth(const std::string& text) { SetNumber(text, 1, 99, plies); }
void SetStrength(const std::string& text) { SetNumber(text, MIN_ELO, MAX_ELO, elo); }

void StartGame(const std::string&) {
    result.clear();
    ParseCommand("new");
    Draw();
}

void Undo(const std::string&) {
    if (state_history.count == 0) std::printf("There is no move to take back.\n");
    result.clear();
    UndoMove();
    UndoMove();
    Draw();
}

void Flip(const std::string&) {
    style.is_flipped = !style.is_flipped;
    Draw();
}

void Resign(const std::string&) {
    if (IsOver()) return;
    pgn_game_info.engine_color = Opponent(side_to_move);
    EndGame(side_to_move == WHITE ? "0-1 {White resigns}" : "1-0 {Black resigns}");
}

struct Word {
    std::string_view name;
    void (*carry_out)(const std::string& text);
};
constexpr Word WORDS[] = {
    {"help", ShowHelp},   {"new", StartGame},   {"go", PlayEngineMove}, {"undo", Undo},
    {"flip", Flip},       {"hint", Hint},       {"book", ShowBook},     {"level", SetLevel},
    {"depth", SetDepth},  {"fen", SetFen},      {"pgn", WriteGame},     {"strength", SetStrength},
    {"analyse", Analyse}, {"analyze", Analyse}, {"resign", Resign},
};

void CarryOut(const std::string& word, std::string_view rest) {
    const auto found = std::ranges::find(WORDS, word, &Word::name);
    if (found == std::end(WORDS))
        PlayTypedMove(word);
    else
        found->carry_out(TakeWordsBefore(rest, ""));
}

} // namespace

int main(int argument_count, char** arguments) {
    PrepareProcess(Interrupts::END_OF_INPUT);
    const auto words = CommandLineWords(argument_count, arguments);
    Initialize(static_cast<int>(words.size()), words.data());
    style.is_coloured = IsConsoleOutput();
    style.is_unicode = IsUnicodeConsole();
    engine_state.san_notation = 1;
    engine_state.use_resign = 0;
    engine_state.use_random = 0; // the thinking line is that of the move
    search_host = {.must_stop = IsStopWanted, .tell_line = TakeLine};
    Draw();
    std::printf("\nType your move, go, or help.\n");
    for (;;) {
        std::printf(is_input_waiting ? "" : "> ");
        FlushOutput();
        if (!is_input_waiting) ReceiveCommand(input);
        is_input_waiting = false;
        std::string_view rest = input;
        const std::string word(NextWord(rest));
        if (word == QUIT_COMMAND) break;
        if (!word.empty()) CarryOut(word, rest);
    }
    std::printf("\n");
    Finalize();
    return EXIT_SUCCESS;
}
