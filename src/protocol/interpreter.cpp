#include "protocol/interpreter.h"

#include "board/move.h"
#include "board/score.h"
#include "board/utility.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "notation/blog.h"
#include "notation/fen.h"
#include "notation/portable.h"
#include "notation/text.h"
#include "platform/channel.h"
#include "play/newgame.h"
#include "play/turns.h"
#include "search/records.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>

namespace {

constexpr std::uint64_t CENTISECONDS_PER_SECOND = 100;

// The engine accepts a draw offer if the score of its last move is below this value, in centipawns
// from the engine's point of view.
constexpr std::int32_t DRAW_ACCEPT_EVAL = -101;

constexpr std::size_t RESULT_SIZE = 64;
constexpr std::size_t STATUS_SIZE = 160;

// Returns the arguments without the blank after the command's name.
std::string_view TextOf(std::string_view arguments) {
    return arguments.substr(std::min<std::size_t>(1, arguments.size()));
}

// Skips white space and takes a number from the arguments. Returns false, and leaves `value`
// unchanged, if there is no number. Characters directly after the number belong to the next
// argument.
bool TakeArgument(std::string_view& arguments, std::int32_t& value) {
    SkipWhiteSpace(arguments);
    return TakeNumber(arguments, value);
}

void SetTag(std::string_view name, std::string_view value) {
    SetPgnTagValueByName(pgn_game_info, name, value);
}

void AnalyzeInMode() {
    if (engine_state.analyze_mode) AnalyzePosition();
}

void Ignore(std::string_view) {}

struct Feature {
    char name[32];
    char value[32];
};

constexpr Feature FEATURES[] = {
    {"ping", "1"},     {"setboard", "1"}, {"playother", "1"}, {"san", "1"},
    {"usermove", "1"}, {"time", "1"},     {"draw", "1"},      {"sigint", "0"},
    {"sigterm", "0"},  {"reuse", "1"},    {"analyze", "1"},   {"variants", "\"normal\""},
    {"colors", "0"},   {"ics", "1"},      {"pause", "1"},     {"name", "1"},
};

void CarryOutProtover(std::string_view) {
    SendCommand("feature done=0");
    SendCommand("feature myname=\"" + std::string(PROGRAM_NAME) + " " +
                std::string(PROGRAM_VERSION) + "\"");
    for (const Feature& feature : FEATURES) {
        SendCommand(std::string("feature ") + feature.name + "=" + feature.value);
    }
    SendCommand("feature done=1");
}

// Carries out "accepted FEATURE". Only "san" has an effect: moves are then written in SAN.
void ReceiveFeature(std::string_view arguments) {
    arguments.remove_prefix(std::min<std::size_t>(1, arguments.size()));
    const std::string_view name = NextWord(arguments);
    const auto feature = std::ranges::find(FEATURES, name, &Feature::name);
    if (feature == std::end(FEATURES)) return;
    if (name == "san" && std::string_view(feature->value) == "1") engine_state.san_notation = 1;
}

void CarryOutNew(std::string_view) {
    engine_state.force_mode = 0;
    NewGame();
    AnalyzeInMode();
}

void CarryOutForce(std::string_view) { engine_state.force_mode = 1; }

void CarryOutGo(std::string_view) {
    engine_state.force_mode = 0;
    MakeEngineMove();
}

void CarryOutPlayOther(std::string_view) {
    engine_state.force_mode = 0;
    if (engine_state.ponder) PonderMove();
}

// Carries out "level MOVES BASE INCREMENT". Ignores MOVES and BASE, because the front end sends the
// clocks before every move. INCREMENT is in seconds. A negative increment wraps to a huge number,
// because time_increment is unsigned.
void CarryOutLevel(std::string_view arguments) {
    CopyText(pgn_game_info.level, std::string("level").append(arguments));
    std::int32_t moves = 0;
    std::int32_t increment = 0;
    if (!TakeArgument(arguments, moves) || NextWord(arguments).empty() ||
        !TakeArgument(arguments, increment)) {
        return;
    }
    game_state.time_increment = static_cast<std::uint64_t>(increment) * CENTISECONDS_PER_SECOND;
}

// Limits the depth to MAX_DEPTH_PLIES, because a PvLine cannot hold deeper search lines.
void CarryOutSd(std::string_view arguments) {
    std::int32_t plies = 0;
    if (!TakeArgument(arguments, plies)) return;
    engine_state.depth_limit = Plies(std::clamp(plies, 0, MAX_DEPTH_PLIES));
}

// Reads a clock in centiseconds. A negative clock wraps to a huge number, so that the engine
// searches without a time limit.
void ReadClock(std::string_view arguments, std::uint64_t& clock) {
    std::int32_t centiseconds = 0;
    if (TakeArgument(arguments, centiseconds)) clock = static_cast<std::uint64_t>(centiseconds);
}

void CarryOutTime(std::string_view arguments) { ReadClock(arguments, game_state.engine_time); }

void CarryOutOtim(std::string_view arguments) { ReadClock(arguments, game_state.opponent_time); }

void CarryOutUserMove(std::string_view arguments) {
    if (!MakeUserMove(NextWord(arguments)) || game_state.game_over) return;
    if (engine_state.analyze_mode) {
        AnalyzePosition();
    } else if (!engine_state.force_mode) {
        MakeEngineMove();
    }
}

void CarryOutPing(std::string_view arguments) {
    std::int32_t number = 0;
    SendCommand(TakeArgument(arguments, number) ? "pong " + std::to_string(number) : "pong");
}

void CarryOutDraw(std::string_view) {
    if (game_state.last_eval < DRAW_ACCEPT_EVAL) SendCommand("offer draw");
}

// Logs the game. CorrectPgnTagValues makes the tags match the colours that the players had.
// WritePgnGame requires the board at the start of the game, so LogGame restarts the game first.
// After the restart, no move can be taken back.
void LogGame() {
    PgnGameInfo logged = pgn_game_info;
    CorrectPgnTagValues(logged);
    const std::span moves = SpanOf(state_history.moves + 1, state_history.count);
    WriteFenBoard();
    RestartGame();
    WritePgnGame(PGN_LOG, logged, moves);
    BlogGame(logged);
}

// Carries out "result RESULT {COMMENT}". Does not log the game in force mode or in analyze mode.
void CarryOutResult(std::string_view arguments) {
    const std::string_view result = NextWord(arguments).substr(0, RESULT_SIZE - 1);
    if (result.empty() || result == "*") return;
    std::string_view comment = arguments;
    comment.remove_prefix(std::min(comment.find('{'), comment.size()));
    if (!comment.empty()) comment.remove_prefix(1);
    SetTag("Result", result);
    CopyText(pgn_game_info.result_comment, comment.substr(0, comment.find('}')));
    if (!engine_state.force_mode && !engine_state.analyze_mode) LogGame();
}

// Carries out "setboard FEN". Ignores an empty board, which some front ends send to pause an
// analysis: the arrival of the command has already ended the search.
void CarryOutSetBoard(std::string_view arguments) {
    const std::string_view fen = TextOf(arguments);
    if (IsEmptyBoard(fen)) return;
    if (!SetBoardFen(fen)) {
        SendCommand("tellusererror Illegal position");
        return;
    }
    AnalyzeInMode();
}

void CarryOutHint(std::string_view) {
    if (IsFakeMove(game_state.expected_move)) return;
    SendCommand(std::string("Hint: ") + game_state.expected_move_text);
}

void CarryOutBk(std::string_view) { SendCommand(book_state.help); }

void CarryOutUndo(std::string_view) {
    UndoMove();
    AnalyzeInMode();
}

void CarryOutRemove(std::string_view) {
    UndoMove();
    UndoMove();
}

void CarryOutHard(std::string_view) { engine_state.ponder = 1; }
void CarryOutEasy(std::string_view) { engine_state.ponder = 0; }
void CarryOutPost(std::string_view) { engine_state.post_thinking = 1; }
void CarryOutNoPost(std::string_view) { engine_state.post_thinking = 0; }

void CarryOutAnalyze(std::string_view) {
    engine_state.analyze_mode = 1;
    if (!game_state.game_over) AnalyzePosition();
}

void CarryOutExit(std::string_view) { engine_state.analyze_mode = 0; }

// During a game, the "Black" tags contain the opponent's data, even if the opponent plays White.
void CarryOutName(std::string_view arguments) { SetTag("Black", TextOf(arguments)); }

void CarryOutRating(std::string_view arguments) {
    for (const std::string_view tag : {"WhiteElo", "BlackElo"}) {
        const std::string_view rating = NextWord(arguments);
        if (!rating.empty()) SetTag(tag, rating == "0" ? "-" : rating);
    }
}

void CarryOutIcs(std::string_view arguments) {
    const std::string_view site = TextOf(arguments);
    SetTag("Site", site == "-" ? "?" : site);
}

void CarryOutComputer(std::string_view) { SetTag("BlackType", "program"); }

// Sends the status of the running search. The time is in centiseconds.
void SendStatus(std::string_view) {
    analyze_info.elapsed = CurrentTimeU64() - search_info.start_time;
    analyze_info.nodes = search_info.nodes;
    char line[STATUS_SIZE];
    std::snprintf(line, sizeof line, "stat01:%8" PRIu64 "%11" PRIu64 "%3d%4d%4d%8s",
                  analyze_info.elapsed, analyze_info.nodes, analyze_info.depth,
                  analyze_info.moves_left, analyze_info.moves_total, analyze_info.move_text);
    SendCommand(line);
}

// Carries out "pause" during a search: waits for the next line and discards it, whatever it
// contains.
void WaitForNextLine(std::string_view) {
    CommandLine next;
    ReceiveCommand(next);
}

// The treatment of commands during a search. The columns are the fields of DuringSearch: the
// matching rule, then the treatment during a search for the engine's move, during pondering and
// during analysis.
using enum Match;
using enum Hearing;
constexpr DuringSearch MOVE_NOW{PREFIX, ANSWER_AND_STOP, DROP, ANSWER_AND_STOP};
constexpr DuringSearch STATUS{PREFIX, ANSWER, ANSWER, ANSWER};
constexpr DuringSearch PING{PREFIX, WAIT, ANSWER, WAIT};
constexpr DuringSearch DRAW{EXACT, WAIT, ANSWER, WAIT};
constexpr DuringSearch EASY{EXACT, ANSWER, ANSWER_AND_STOP, ANSWER};
constexpr DuringSearch BOOK{EXACT, DROP, ANSWER, ANSWER};
constexpr DuringSearch HINT{EXACT, DROP, ANSWER, DROP};

// ParseCommand uses the first row that matches the line.
constexpr Command COMMANDS[] = {
    {"xboard", EXACT, Ignore},
    {"protover 2", EXACT, CarryOutProtover},
    {"accepted", PREFIX, ReceiveFeature},
    {"rejected", PREFIX, Ignore}, // a rejection has no effect
    {"new", EXACT, CarryOutNew, TO_STOP},
    {"random", EXACT, Ignore},
    {"force", EXACT, CarryOutForce, TO_STOP},
    {"go", EXACT, CarryOutGo},
    {"playother", EXACT, CarryOutPlayOther},
    {"level", PREFIX, CarryOutLevel},
    {"sd", PREFIX, CarryOutSd},
    {"time", PREFIX, CarryOutTime, TO_STOP},
    {"otim", PREFIX, CarryOutOtim, TO_STOP},
    {"usermove", PREFIX, CarryOutUserMove, TO_STOP},
    {"?", EXACT, Ignore, MOVE_NOW},
    {"ping", PREFIX, CarryOutPing, PING},
    {"draw", EXACT, CarryOutDraw, DRAW},
    {"result", PREFIX, CarryOutResult, TO_STOP},
    {"setboard", PREFIX, CarryOutSetBoard, TO_STOP},
    {"hint", EXACT, CarryOutHint, HINT},
    {"bk", EXACT, CarryOutBk, BOOK},
    {"undo", EXACT, CarryOutUndo, TO_STOP},
    {"remove", EXACT, CarryOutRemove, TO_STOP},
    {"hard", EXACT, CarryOutHard, TO_REPLY},
    {"easy", EXACT, CarryOutEasy, EASY},
    {"post", EXACT, CarryOutPost, TO_REPLY},
    {"nopost", EXACT, CarryOutNoPost, TO_REPLY},
    {"analyze", EXACT, CarryOutAnalyze, TO_STOP},
    {".", EXACT, Ignore, STATUS, SendStatus},
    {"exit", EXACT, CarryOutExit, TO_STOP},
    {"name", PREFIX, CarryOutName},
    {"rating", PREFIX, CarryOutRating},
    {"ics", PREFIX, CarryOutIcs},
    {"computer", EXACT, CarryOutComputer},
    {"pause", EXACT, Ignore, TO_REPLY, WaitForNextLine},
    {"resume", EXACT, Ignore},
    {QUIT_COMMAND, EXACT, Ignore, TO_STOP}, // the main loop ends and never calls Ignore
};

void AnswerUnknown(std::string_view line) {
    const std::string message = "Error (unknown command): " + std::string(line);
    BlogError(message);
    SendCommand(message);
}

} // namespace

std::span<const Command> CommandTable() { return COMMANDS; }

void ParseCommand(const char* text) {
    const std::string_view line = text;
    for (const Command& command : COMMANDS) {
        if (!IsMatch(line, command.name, command.match)) continue;
        command.carry_out(line.substr(command.name.size()));
        return;
    }
    AnswerUnknown(line);
}
