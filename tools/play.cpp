// korvane-play: a game against Korvane in a terminal. Prints the board and reads typed moves.
// Accepts the same options as korvane.
#include "board/score.h"
#include "book/book.h"
#include "frame/startup.h"
#include "game/enginestate.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/makemove.h"
#include "notation/diagram.h"
#include "notation/fen.h"
#include "notation/notation.h"
#include "notation/portable.h"
#include "notation/text.h"
#include "notation/typed.h"
#include "person.h"
#include "platform/channel.h"
#include "platform/enforce.h"
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
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr const char* HELP =
    "a move: e4, Nf3, e2e4, O-O      go: Korvane plays this side   undo: take back your last move\n"
    "new: start a new game           flip: turn the board          resign: give the game up\n"
    "hint, book: show good moves     analyse: think until Enter    settings: show the three below\n"
    "level SECONDS: time per move    depth N|off: limit in plies   strength ELO|off: 1000 to 2400\n"
    "fen [FEN]: show or set up       pgn FILE: append the game     quit\n"
    "Ctrl-C stops Korvane's thinking; it then plays the best move that it has found.\n";
constexpr const char* USAGE =
    "Usage: korvane-play [OPTIONS]\n"
    "\n"
    "Plays chess at a terminal. Type a move, such as e4 or Nf3, or help.\n"
    "\n"
    "Options:\n"
    "  --hash-size MB    use at most this much memory for the search (default: 128)\n"
    "  --no-book         play without the opening book\n"
    "  --version         print the version\n"
    "  --help            print this help\n";

DiagramStyle style = {};
bool is_turned_by_hand = false; // true after "flip"; a new game then does not turn the board
bool is_analysing = false;
std::int32_t seconds = 2; // time for each move
std::int32_t plies = 0;   // depth limit; 0 means no limit
std::int32_t elo = FULL_STRENGTH;
std::uint64_t search_end = 0;
std::string last_line;   // last line that the search reported
std::string line_begins; // first move of last_line, in SAN
std::string result;      // empty until the game ends
CommandLine input;
bool is_input_waiting = false; // true if `input` has not been carried out yet

// Prints the board and the moves of the game.
void Draw() {
    std::printf("\n%s", WrittenDiagram(style).c_str());
    if (state_history.count == 0) return;
    WriteGameSoFar(stdout);
    std::printf("\n");
}

// Any input ends an analysis. Other searches end when the time is up, at Ctrl-C, or at the end of
// the input.
bool IsStopWanted() {
    FlushOutput();
    if (is_analysing) return IsInputWaiting();
    return SystemTime() >= search_end || WaitingInput() == INPUT_UNKNOWN;
}

std::string WrittenScore(std::int32_t score) {
    char text[32];
    std::snprintf(text, sizeof text, "%+6.2f", score / 100.0);
    const std::int32_t mate = MovesToMate(score);
    if (mate != 0) {
        std::snprintf(text, sizeof text, "%s in %d", mate > 0 ? "mate" : "mated", std::abs(mate));
    }
    return text;
}

void TakeLine(const SearchLine& line) {
    char depth[16];
    std::snprintf(depth, sizeof depth, "%2d ", line.plies);
    last_line = depth + WrittenScore(line.score) + " " + WrittenLine(line.moves);
    line_begins = WrittenSan(line.moves.front());
    if (is_analysing) std::printf("  %s\n", last_line.c_str());
}

// Searches for a move for at most `seconds` seconds. If no reply is expected, sets `reply` to a
// fake move (see board/move.h).
void Think(std::int32_t level, Move& move, Move& reply) {
    std::printf("\nKorvane is thinking...\n");
    const std::int32_t depth = plies > 0 ? Plies(plies) : engine_state.depth_limit;
    search_end = SystemTime() + static_cast<std::uint64_t>(seconds) * TICKS_PER_SECOND;
    last_line.clear();
    line_begins.clear();
    FindMoveOfLevel(level, move, reply, {.depth = depth, .clock = {}});
    TakeInterrupt();
}

// Converts a result such as "1-0 {White mates}" to "White mates: 1-0".
std::string InWords(const std::string& line) {
    const std::size_t brace = line.find('{');
    return line.substr(brace + 1, line.find('}') - brace - 1) + ": " + line.substr(0, brace - 1);
}

void EndGame(const char* line) {
    result = line;
    std::printf("\n%s. Type new for another game.\n", InWords(result).c_str());
}

// Ends the game if the position is a mate or a draw. Returns true if the game is over, for example
// by resignation.
bool IsEnd() {
    if (const char* const line = EndOfGameLine(LastMove())) EndGame(line);
    return !result.empty();
}

bool IsOver() {
    if (!result.empty()) std::printf("The game is over. %s.\n", InWords(result).c_str());
    return !result.empty();
}

// Leaves the current game. Logs a finished game here, not at its end, because the user can still
// take back the last move or a resignation with "undo".
void LeaveGame() {
    if (!result.empty() && state_history.count > 0) ParseCommand(("result " + result).c_str());
    result.clear();
    style.is_flipped = is_turned_by_hand && style.is_flipped;
}

// Sets the PGN tags and turns the board at the first move, when the user's colour is known.
void BeginGame() {
    DefaultPgnTagValues(pgn_game_info);
    // During a game, the "Black" tags contain the opponent's data, even if the opponent plays
    // White.
    SetPgnTagValueByName(pgn_game_info, "Black", PersonName());
    if (!is_turned_by_hand) style.is_flipped = pgn_game_info.engine_color == WHITE;
}

void Play(const Move& move, Colour engine) {
    pgn_game_info.engine_color = engine;
    if (state_history.count == 0) BeginGame();
    PlayMove(move);
}

// `is_answer` is true after a move of the user and false after the command "go". The board after
// the user's move has not been printed yet, so prints that board before a search.
void PlayEngineMove(bool is_answer) {
    Move move, reply;
    SetFakeMove(reply);
    const bool is_from_book = PickBookMoveOfLevel(elo, move);
    if (is_answer && !is_from_book) Draw();
    if (!is_from_book) Think(elo, move, reply);
    const std::string text = WrittenSan(move);
    Play(move, board.side_to_move);
    game_state.expected_move = reply;
    Draw();
    std::printf("\nKorvane plays %s%s\n", text.c_str(), is_from_book ? " (book)" : "");
    if (!is_from_book && line_begins == text) std::printf("  %s\n", last_line.c_str());
    IsEnd();
}

bool HasRoom() {
    if (IsHistoryFull()) std::printf("The game is too long for another move.\n");
    return !IsHistoryFull();
}

void Go(const std::string&) {
    if (!IsOver() && HasRoom()) PlayEngineMove(false);
}

void PlayPersonMove(const Move& move) {
    Play(move, Opponent(board.side_to_move));
    if (EndOfGameLine(LastMove())) Draw();
    if (!IsEnd() && HasRoom()) PlayEngineMove(true);
}

void PlayTypedMove(const std::string& text) {
    const std::vector<Move> meant = FindTypedMoves(text);
    const std::string refusal = WrittenRefusal(text);
    if (meant.empty() && refusal.empty()) {
        std::printf("Unknown command: %s (type help)\n", text.c_str());
    } else if (IsOver() || !HasRoom()) {
        return;
    } else if (meant.size() == 1) {
        PlayPersonMove(meant.front());
    } else if (meant.empty()) {
        std::printf("%s\n", refusal.c_str());
    } else {
        std::printf("Ambiguous: %s can be", text.c_str());
        for (std::size_t i = 0; i < meant.size(); ++i) {
            std::printf("%s%s", i > 0 ? " or " : " ", WrittenSan(meant[i]));
        }
        std::printf("\n");
    }
}

std::string FirstWord(std::string_view line) { return InLowerCase(NextWord(line)); }

// Analyses until the user types a line. An empty line or "exit" only ends the analysis. Any other
// line ends the analysis and is carried out as a command.
void Analyse(const std::string&) {
    if (IsOver()) return;
    is_analysing = true;
    std::printf("Enter ends the analysis.\n");
    FindBestMove(nullptr, nullptr, LastMove(), {.depth = engine_state.depth_limit, .clock = {}});
    is_analysing = false;
    if (WaitingInput() == 0) std::printf("The analysis is complete. Press Enter.\n");
    FlushOutput();
    if (TakeInterrupt()) return;
    ReceiveCommand(input);
    is_input_waiting = FirstWord(input) != "exit";
}

void Hint(const std::string&) {
    if (IsOver()) return;
    Move move, reply;
    Think(FULL_STRENGTH, move, reply);
    std::printf("%s\n", WrittenSan(move));
}

void WriteGame(const std::string& file_name) {
    if (file_name.empty()) {
        std::printf("pgn needs a file name, such as pgn game.pgn\n");
        return;
    }
    const std::string place = NameOf(PersonPath(file_name));
    const std::string score = result.empty() ? "*" : result.substr(0, result.find(' '));
    const bool is_written = AppendGameSoFar(place.c_str(), score.c_str());
    std::printf("%s: %s\n", is_written ? "Written" : "Cannot write the file", place.c_str());
}

void ShowSettings(const std::string& = "") {
    const auto number_or = [](std::int32_t number, const char* off) {
        return number > 0 ? std::to_string(number) : std::string(off);
    };
    std::printf("level: %d s per move; depth: %s; strength: %s\n", seconds,
                number_or(plies, "off (no limit)").c_str(), number_or(elo, "off (full)").c_str());
}

// Sets `value` to the number in `word`, or to 0 if `word` is "off", and prints the settings. If
// `word` is empty, only prints the settings. Refuses a number below `least` or above `most`.
void SetNumber(std::string_view word, std::int32_t least, std::int32_t most, std::int32_t& value,
               bool can_be_off = true) {
    std::int32_t number = 0;
    const bool is_off = can_be_off && InLowerCase(word) == "off";
    if (word.empty()) {
        ShowSettings();
    } else if (is_off || (ReadWholeNumber(word, number) && number >= least && number <= most)) {
        value = number;
        ShowSettings();
    } else {
        std::printf("Not a number from %d to %d%s: %s\n", least, most, can_be_off ? ", or off" : "",
                    std::string(word).c_str());
    }
}

void SetFen(const std::string& fen) {
    if (fen.empty()) {
        std::printf("%s\n", GetBoardFen());
    } else if (const char* const fault = FindFenFault(fen)) {
        std::printf("Not a playable position: %s.\n", fault);
    } else {
        LeaveGame();
        SetBoardFen(fen);
        Draw();
        IsEnd();
    }
}

void ShowHelp(const std::string&) { std::fputs(HELP, stdout); }
void ShowBook(const std::string&) { std::fputs(WrittenBookHelp(), stdout); }
void SetLevel(const std::string& text) { SetNumber(text, 1, 3600, seconds, false); }
void SetDepth(const std::string& text) { SetNumber(text, 1, 99, plies); }
void SetStrength(const std::string& text) { SetNumber(text, MIN_ELO, MAX_ELO, elo); }

void StartGame(const std::string&) {
    LeaveGame();
    ParseCommand("new");
    Draw();
}

// Takes back a resignation. If nobody has resigned, takes back the user's last move and the
// engine's reply.
void Undo(const std::string&) {
    const bool has_resigned = !result.empty() && !EndOfGameLine(LastMove());
    result.clear();
    if (has_resigned) {
        std::printf("The game goes on.\n");
        return;
    }
    if (state_history.count == 0) {
        std::printf("There is no move to take back.\n");
        return;
    }
    if (board.side_to_move != pgn_game_info.engine_color) UndoMove();
    UndoMove();
    Draw();
}

void Flip(const std::string&) {
    is_turned_by_hand = true;
    style.is_flipped = !style.is_flipped;
    Draw();
}

void Resign(const std::string&) {
    if (IsOver()) return;
    pgn_game_info.engine_color = Opponent(board.side_to_move);
    EndGame(board.side_to_move == WHITE ? "0-1 {White resigns}" : "1-0 {Black resigns}");
}

struct Command {
    std::string_view name;
    void (*carry_out)(const std::string& text);
};
constexpr Command COMMANDS[] = {
    {"help", ShowHelp},
    {"?", ShowHelp},
    {"new", StartGame},
    {"go", Go},
    {"undo", Undo},
    {"flip", Flip},
    {"hint", Hint},
    {"book", ShowBook},
    {"level", SetLevel},
    {"depth", SetDepth},
    {"strength", SetStrength},
    {"settings", ShowSettings},
    {"fen", SetFen},
    {"pgn", WriteGame},
    {"resign", Resign},
    {"analyse", Analyse},
    {"analyze", Analyse},
};

void CarryOut(std::string_view line) {
    std::string_view rest = line;
    const std::string word = InLowerCase(NextWord(rest));
    const auto found = std::ranges::find(COMMANDS, word, &Command::name);
    if (found == std::end(COMMANDS)) {
        PlayTypedMove(TakeWordsBefore(line, ""));
    } else {
        found->carry_out(TakeWordsBefore(rest, ""));
    }
}

bool IsQuit(std::string_view line) {
    const std::string word = FirstWord(line);
    return word == QUIT_COMMAND || word == "exit" || word == "q";
}

// Carries out lines until the user quits. The first Ctrl-C at the prompt only prints a hint,
// because the user may have wanted to stop a search that has just ended.
void Converse() {
    for (bool has_asked = false;;) {
        std::printf(is_input_waiting ? "" : "> ");
        FlushOutput();
        if (!is_input_waiting) ReceiveCommand(input);
        is_input_waiting = false;
        if (TakeInterrupt() && !has_asked) {
            std::printf("\nType quit, or press Ctrl-C again, to leave.\n");
            has_asked = true;
            continue;
        }
        has_asked = false;
        std::string_view line = input;
        if (IsQuit(line)) return;
        if (!NextWord(line).empty()) CarryOut(input);
    }
}

} // namespace

int main(int argument_count, char** arguments) {
    PrepareProcess(Interrupts::END_OF_INPUT);
    const auto words = CommandLineWords(argument_count, arguments);
    if (std::ranges::any_of(words, IsHelpOption)) {
        std::fputs(USAGE, stdout);
        return EXIT_SUCCESS;
    }
    Initialize(static_cast<int>(words.size()), words.data());
    style.is_coloured = IsColourConsole();
    style.is_unicode = IsUnicodeConsole();
    engine_state.san_notation = 1;
    engine_state.use_resign = 0;
    engine_state.use_random = 0; // a random choice could differ from the reported move
    search_host = {.must_stop = IsStopWanted, .tell_line = TakeLine};
    Draw();
    std::printf("\nType your move, go, or help.\n");
    Converse();
    LeaveGame();
    std::printf("\n");
    Finalize();
    return EXIT_SUCCESS;
}
