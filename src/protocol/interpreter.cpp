#include "protocol/interpreter.h"

#include "book/book.h"
#include "game/enginestate.h"
#include "game/gamestate.h"
#include "game/history.h"
#include "moves/predicates.h"
#include "notation/blog.h"
#include "notation/pgninfo.h"
#include "notation/portable.h"
#include "notation/setboard.h"
#include "notation/text.h"
#include "platform/channel.h"
#include "protocol/features.h"
#include "protocol/newgame.h"
#include "protocol/turns.h"
#include "search/records.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

constexpr std::int32_t MAX_INCREMENT = 10'000'000; // seconds

// The engine accepts a draw when its last score is worse.
constexpr std::int32_t DRAW_ACCEPT_EVAL = -101;

constexpr std::size_t RESULT_SIZE = 64;

// The words behind the command's name.
std::string_view ArgumentsOf(std::string_view line, std::string_view name) {
    return line.substr(std::min(name.size(), line.size()));
}

// All that stands behind the command's name and one blank.
std::string_view TextAfter(std::string_view line, std::string_view name) {
    return line.substr(std::min(name.size() + 1, line.size()));
}

// Reads the first argument as a number; the value stays when there is none.
bool ReadArgument(std::string_view line, std::string_view name, std::int32_t& value) {
    std::string_view arguments = ArgumentsOf(line, name);
    return ReadNumber(NextWord(arguments), value);
}

void SetTag(std::string_view name, std::string_view value) {
    SetPgnTagValueByName(pgn_game_info, name, value);
}

void AnalyzeInMode() {
    if (engine_state.analyze_mode) AnalyzePosition();
}

void Ignore(std::string_view) {}

void CarryOutProtover(std::string_view) { SendFeatures(); }

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

// Moves a control and base time do not matter: the clocks are told before every move.
void CarryOutLevel(std::string_view line) {
    CopyText(pgn_game_info.level, line);
    std::string_view arguments = ArgumentsOf(line, "level");
    std::int32_t moves = 0;
    std::int32_t increment = 0;
    if (!ReadNumber(NextWord(arguments), moves) || NextWord(arguments).empty() ||
        !ReadNumber(NextWord(arguments), increment)) {
        return;
    }
    increment = std::clamp(increment, 0, MAX_INCREMENT);
    game_state.time_increment = static_cast<std::uint64_t>(increment) * 100;
}

void CarryOutSd(std::string_view line) {
    std::int32_t plies = 0;
    if (!ReadArgument(line, "sd", plies)) return;
    engine_state.depth_limit = std::clamp(plies, 0, MAX_DEPTH_PLIES) * QUARTER_PLIES;
}

// A clock comes as a signed number and is widened with its sign.
void ReadClock(std::string_view line, std::string_view name, std::uint64_t& clock) {
    std::int32_t centiseconds = 0;
    if (ReadArgument(line, name, centiseconds)) clock = static_cast<std::uint64_t>(centiseconds);
}

void CarryOutTime(std::string_view line) { ReadClock(line, "time", game_state.engine_time); }

void CarryOutOtim(std::string_view line) { ReadClock(line, "otim", game_state.opponent_time); }

void CarryOutUserMove(std::string_view line) {
    if (!MakeUserMove(line) || game_state.game_over) return;
    if (engine_state.analyze_mode) {
        AnalyzePosition();
    } else if (!engine_state.force_mode) {
        MakeEngineMove();
    }
}

void CarryOutPing(std::string_view line) {
    std::int32_t number = 0;
    SendCommand(ReadArgument(line, "ping", number) ? "pong " + std::to_string(number) : "pong");
}

void CarryOutDraw(std::string_view) {
    if (game_state.last_eval < DRAW_ACCEPT_EVAL) SendCommand("offer draw");
}

void LogGame() {
    CorrectPgnTagValues(pgn_game_info);
    WriteFenBoard();
    const std::size_t count = static_cast<std::size_t>(state_history.count);
    WritePgnGame(pgn_game_info, {state_history.moves + 1, count});
    BlogGame(pgn_game_info);
    CorrectPgnTagValues(pgn_game_info); // and back again, as a game in play has them
    // The board shows the start of the game now; the rest of the game's records follow it.
    if (!pgn_game_info.set_up) NewBookState();
    RestartGame();
}

// "result RESULT {COMMENT}"
void CarryOutResult(std::string_view line) {
    std::string_view arguments = ArgumentsOf(line, "result");
    const std::string_view result = NextWord(arguments).substr(0, RESULT_SIZE - 1);
    if (result.empty() || result == "*") return;
    std::string_view comment = arguments;
    comment.remove_prefix(std::min(comment.find('{'), comment.size()));
    if (!comment.empty()) comment.remove_prefix(1);
    SetTag("Result", result);
    CopyText(pgn_game_info.result_comment, comment.substr(0, comment.find('}')));
    if (!engine_state.force_mode && !engine_state.analyze_mode) LogGame();
}

void CarryOutSetBoard(std::string_view line) {
    if (!SetBoardFen(TextAfter(line, "setboard"))) {
        SendCommand("tellusererror Illegal position");
        return;
    }
    RestartGame();
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

// Until the game is logged, the opponent's data stand in the Black tags.
void CarryOutName(std::string_view line) { SetTag("Black", TextAfter(line, "name")); }

void CarryOutRating(std::string_view line) {
    std::string_view arguments = ArgumentsOf(line, "rating");
    for (const std::string_view tag : {"WhiteElo", "BlackElo"}) {
        const std::string_view rating = NextWord(arguments);
        if (!rating.empty()) SetTag(tag, rating == "0" ? "-" : rating);
    }
}

void CarryOutIcs(std::string_view line) {
    const std::string_view site = TextAfter(line, "ics");
    SetTag("Site", site == "-" ? "?" : site);
}

void CarryOutComputer(std::string_view) { SetTag("BlackType", "program"); }

enum class Match { EXACT, PREFIX };

struct Command {
    std::string_view name;
    Match match;
    void (*carry_out)(std::string_view line);
};

// The first that matches is carried out.
constexpr Command COMMANDS[] = {
    {"xboard", Match::EXACT, Ignore},
    {"protover 2", Match::EXACT, CarryOutProtover},
    {"accepted", Match::PREFIX, ReceiveFeature},
    {"rejected", Match::PREFIX, ReceiveFeature},
    {"new", Match::EXACT, CarryOutNew},
    {"random", Match::EXACT, Ignore},
    {"force", Match::EXACT, CarryOutForce},
    {"go", Match::EXACT, CarryOutGo},
    {"playother", Match::EXACT, CarryOutPlayOther},
    {"level", Match::PREFIX, CarryOutLevel},
    {"sd", Match::PREFIX, CarryOutSd},
    {"time", Match::PREFIX, CarryOutTime},
    {"otim", Match::PREFIX, CarryOutOtim},
    {"usermove", Match::PREFIX, CarryOutUserMove},
    {"?", Match::EXACT, Ignore},
    {"ping", Match::PREFIX, CarryOutPing},
    {"draw", Match::EXACT, CarryOutDraw},
    {"result", Match::PREFIX, CarryOutResult},
    {"setboard", Match::PREFIX, CarryOutSetBoard},
    {"hint", Match::EXACT, CarryOutHint},
    {"bk", Match::EXACT, CarryOutBk},
    {"undo", Match::EXACT, CarryOutUndo},
    {"remove", Match::EXACT, CarryOutRemove},
    {"hard", Match::EXACT, CarryOutHard},
    {"easy", Match::EXACT, CarryOutEasy},
    {"post", Match::EXACT, CarryOutPost},
    {"nopost", Match::EXACT, CarryOutNoPost},
    {"analyze", Match::EXACT, CarryOutAnalyze},
    {".", Match::EXACT, Ignore},
    {"exit", Match::EXACT, CarryOutExit},
    {"name", Match::PREFIX, CarryOutName},
    {"rating", Match::PREFIX, CarryOutRating},
    {"ics", Match::PREFIX, CarryOutIcs},
    {"computer", Match::EXACT, CarryOutComputer},
    {"pause", Match::EXACT, Ignore},
    {"resume", Match::EXACT, Ignore},
};

void AnswerUnknown(std::string_view line) {
    const std::string message = "Error (unknown command): " + std::string(line);
    BlogError(message);
    SendCommand(message);
}

} // namespace

void ParseCommand(const char* text) {
    const std::string_view line = text;
    for (const Command& command : COMMANDS) {
        if (command.match == Match::EXACT ? line == command.name : line.starts_with(command.name)) {
            command.carry_out(line);
            return;
        }
    }
    AnswerUnknown(line);
}
