#include "uci/go.h"

#include "board/move.h"
#include "board/score.h"
#include "board/utility.h"
#include "book/book.h"
#include "game/finish.h"
#include "game/gamestate.h"
#include "notation/notation.h"
#include "notation/text.h"
#include "platform/system.h"
#include "play/strength.h"
#include "search/hash.h"
#include "search/records.h"
#include "search/rootsearch.h"
#include "uci/lines.h"
#include "uci/options.h"
#include "uci/setup.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <system_error>

namespace {

constexpr std::int64_t MILLISECONDS_PER_CENTISECOND = 10;

// For the first QUIET_TIME milliseconds of a search, the current root move is not reported.
constexpr std::int64_t QUIET_TIME = 1000;

// ClockOf reserves the move overhead of this many moves, but at most half of the clock.
constexpr std::int64_t MOVES_TO_COME = 80;

// Maximum number of lines per poll, so that many lines cannot delay the check of the clock.
constexpr int LINES_PER_POLL = 32;

// The arguments of "go". Times are in milliseconds.
struct Request {
    bool is_infinite = false;
    bool is_pondering = false;
    bool has_clock[COLOURS] = {};
    std::int64_t clock[COLOURS] = {};
    std::int64_t increment[COLOURS] = {};
    std::int64_t move_time = 0; // in milliseconds; 0 means no limit
    std::int64_t depth = 0;     // in plies; 0 means no limit
    std::int64_t nodes = 0;     // 0 means no limit
    std::int64_t mate = 0;      // search for a mate in this many moves; 0 means none
    MoveList moves;             // root moves to search; empty means all
};

// The state of the running search.
struct Thinking {
    bool is_stopped;
    bool is_infinite;
    bool is_pondering;
    bool is_measuring;
    std::int64_t start;     // start of the search, in milliseconds
    std::int64_t clock_run; // start of the move time, in milliseconds; a ponder hit resets it
    std::int64_t move_time; // time limit in milliseconds; 0 means no limit
    std::int64_t last_poll; // time of the last poll of the input, in milliseconds
    std::optional<TimeLeft> clock;
    Move last_reported_move; // first move of the last reported line
};
Thinking thinking;

struct Choice {
    Move move;
    Move expected_reply;
};

std::int64_t Milliseconds() {
    return static_cast<std::int64_t>(SystemTime() / TICKS_PER_MILLISECOND);
}

bool IsTimeUp() {
    return thinking.move_time > 0 && !thinking.is_pondering &&
           Milliseconds() - thinking.clock_run >= thinking.move_time;
}

void EndForWaiting(std::string_view line) {
    ReturnLine(line);
    thinking.is_stopped = !thinking.is_measuring;
}

void OnPonderHit() {
    if (!thinking.is_pondering) return;
    thinking.is_pondering = false;
    thinking.clock_run = Milliseconds();
    if (thinking.clock) StartClock(*thinking.clock);
}

void HearLine(std::string_view line) {
    switch (hear_line(line)) {
    case LineEffect::ANSWER: return;
    case LineEffect::STOP: thinking.is_stopped = true; return;
    case LineEffect::PONDER_HIT: OnPonderHit(); return;
    case LineEffect::WAIT: EndForWaiting(line); return;
    }
}

bool IsStopWanted() {
    thinking.last_poll = Milliseconds();
    std::string line;
    for (int i = 0; i < LINES_PER_POLL && !thinking.is_stopped; ++i) {
        if (IsLineReturned() || !TakeLine(line)) break;
        HearLine(line);
    }
    return thinking.is_stopped || IsTimeUp();
}

// Returns the score in UCI notation: "cp" and centipawns, or "mate" and the number of moves until
// mate, which is negative if the engine is mated.
std::string WrittenScore(std::int32_t score) {
    if (!IsMateEval(score)) return "cp " + std::to_string(score);
    return "mate " + std::to_string(MovesToMate(score));
}

void TellLine(const SearchLine& line) {
    const std::int64_t time = Milliseconds() - thinking.start;
    const std::uint64_t speed =
        search_info.nodes * 1000 / static_cast<std::uint64_t>(std::max<std::int64_t>(time, 1));
    const std::int32_t deepest = std::max(search_info.deepest_ply / QUARTER_PLIES, line.plies);
    std::string text = "info depth " + std::to_string(line.plies) + " seldepth " +
                       std::to_string(deepest) + " score " + WrittenScore(line.score) + " nodes " +
                       std::to_string(search_info.nodes) + " nps " + std::to_string(speed) +
                       " hashfull " + std::to_string(HashFullness()) + " time " +
                       std::to_string(time) + " pv";
    for (const Move& move : PlayablePart(line.moves)) {
        text += ' ';
        text += WrittenMove(move);
    }
    Tell(text);
    thinking.last_reported_move = line.moves.front();
}

// Called before each root move. Reports the move if the search has run longer than QUIET_TIME.
// Polls the input at most once per millisecond. Returns false if the search must stop.
bool MayGoOn(const Move& move) {
    const std::int64_t now = Milliseconds();
    if (now - thinking.start > QUIET_TIME) {
        Tell("info depth " + std::to_string(analyze_info.depth) + " currmove " + WrittenMove(move) +
             " currmovenumber " +
             std::to_string(analyze_info.moves_total - analyze_info.moves_left));
    }
    return !(now == thinking.last_poll ? IsTimeUp() : IsStopWanted());
}

// Takes a number from the text and clamps it to 64 bits. Returns false if the next word is not a
// number.
bool ReadCount(std::string_view& text, std::int64_t& count) {
    std::string_view rest = text;
    const std::string_view word = NextWord(rest);
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), count);
    if (error == std::errc::invalid_argument) return false;
    using Range = std::numeric_limits<std::int64_t>;
    if (error != std::errc{}) count = word.starts_with('-') ? Range::min() : Range::max();
    text = rest;
    return true;
}

// Reads a limit. A number below 1 becomes 1, because 0 means no limit.
void ReadLimit(std::string_view& text, std::int64_t& limit) {
    if (ReadCount(text, limit)) limit = std::max<std::int64_t>(limit, 1);
}

// Takes the moves at the start of the text. Stores the legal moves and reports the illegal moves.
void ReadMoves(std::string_view& text, MoveList& moves) {
    for (std::string_view rest = text, word; IsInCan(word = NextWord(rest)); text = rest) {
        Move move;
        if (!FindMove(word, move)) {
            TellInfo("Illegal move: " + std::string(word));
        } else if (moves.count < MAX_MOVES) {
            moves.moves[moves.count++] = move;
        }
    }
}

void ReadRequest(std::string_view text, Request& request) {
    for (std::string_view word; !(word = NextWord(text)).empty();) {
        if (word == "infinite") request.is_infinite = true;
        if (word == "ponder") request.is_pondering = true;
        if (word == "movetime") ReadLimit(text, request.move_time);
        if (word == "depth") ReadLimit(text, request.depth);
        if (word == "nodes") ReadLimit(text, request.nodes);
        if (word == "mate") ReadLimit(text, request.mate);
        if (word == "winc") ReadCount(text, request.increment[WHITE]);
        if (word == "binc") ReadCount(text, request.increment[BLACK]);
        if (word == "searchmoves") ReadMoves(text, request.moves);
        if (word == "wtime" || word == "btime") {
            const Colour colour = word == "wtime" ? WHITE : BLACK;
            if (ReadCount(text, request.clock[colour])) request.has_clock[colour] = true;
        }
    }
}

std::uint64_t ToCentiseconds(std::int64_t milliseconds) {
    return static_cast<std::uint64_t>(std::max<std::int64_t>(milliseconds, 0) /
                                      MILLISECONDS_PER_CENTISECOND);
}

// Returns the remaining time and the increment of the side to move. Subtracts a reserve for the
// move overhead from the remaining time. Returns nothing if "go" gave no clock for this side.
std::optional<TimeLeft> ClockOf(const Request& request) {
    if (!request.has_clock[board.side_to_move]) return {};
    const std::int64_t clock = request.clock[board.side_to_move];
    const std::int64_t kept = std::min(MOVES_TO_COME * uci_options.move_overhead, clock / 2);
    return TimeLeft{ToCentiseconds(clock - kept),
                    ToCentiseconds(request.increment[board.side_to_move])};
}

// Returns the depth of the search in quarter-plies. For a mate in n moves, the depth is n + 1
// moves, because pruning may hide the mate at a depth of n moves.
std::int32_t DepthOf(const Request& request) {
    std::int64_t plies = MAX_DEPTH_PLIES;
    if (request.mate > 0)
        plies = std::min(plies, 2 * std::min<std::int64_t>(request.mate, plies) + 2);
    if (request.depth > 0) plies = std::min(plies, request.depth);
    return Plies(static_cast<std::int32_t>(plies));
}

SearchLimits LimitsOf(const Request& request) {
    SearchLimits limits{.depth = DepthOf(request), .clock = {}};
    if (!request.is_pondering) limits.clock = thinking.clock;
    if (request.nodes > 0) limits.nodes = static_cast<std::uint64_t>(request.nodes);
    limits.is_strict = true;
    limits.moves = SpanOf(request.moves.moves, request.moves.count);
    return limits;
}

void StartThinking(const Request& request) {
    thinking = {};
    thinking.is_infinite = request.is_infinite;
    thinking.is_pondering = request.is_pondering;
    thinking.start = thinking.clock_run = thinking.last_poll = Milliseconds();
    if (request.move_time > 0) {
        thinking.move_time =
            std::max<std::int64_t>(request.move_time - uci_options.move_overhead, 1);
    }
    if (!request.is_infinite) thinking.clock = ClockOf(request);
    SetFakeMove(thinking.last_reported_move);
}

// True if the front end requests a move in a game. False for an analysis.
bool IsPlaying(const Request& request) {
    return !uci_options.analyse_mode && !request.is_infinite && request.moves.count == 0 &&
           request.mate == 0;
}

// True if "go" may answer with a book move. The front end must request a move in a game, without
// pondering, and must give a clock, a move time or a node limit. Otherwise the engine searches.
bool IsBookWanted(const Request& request) {
    return uci_options.own_book && IsPlaying(request) && !request.is_pondering &&
           (request.has_clock[board.side_to_move] || request.move_time > 0 || request.nodes > 0);
}

std::int32_t LevelOf(const Request& request) {
    return uci_options.limit_strength && IsPlaying(request) ? uci_options.elo : FULL_STRENGTH;
}

// Searches for a move. At full strength, the chosen move can differ from the first move of the last
// reported line, for example if the search stops within an iteration. In this case, reports the
// chosen move as one more line, unless the score is a mate score: the distance to the mate is then
// unknown. At a lower strength, reports every chosen move that has a score.
void ChooseBySearch(const Request& request, Choice& choice) {
    const std::int32_t level = LevelOf(request);
    const std::int32_t score =
        FindMoveOfLevel(level, choice.move, choice.expected_reply, LimitsOf(request));
    const bool is_new =
        level == FULL_STRENGTH
            ? !IsMateEval(score) && !IsSameMove(choice.move, thinking.last_reported_move)
            : score != UNSEARCHED_EVAL;
    if (is_new) TellLine({analyze_info.depth, score, {&choice.move, 1}});
}

void TellBestMove(const Choice& choice) {
    std::string text = "bestmove " + std::string(WrittenMove(choice.move));
    // PlayablePart removes an illegal reply. The search detects an illegal reply one ply later,
    // when the king can be captured. If the reply leads to a draw, the search stops before that
    // ply.
    const Move moves[] = {choice.move, choice.expected_reply};
    if (!IsFakeMove(choice.expected_reply) && PlayablePart(moves).size() == std::size(moves)) {
        text += " ponder ";
        text += WrittenMove(choice.expected_reply);
    }
    Tell(text);
}

} // namespace

LineEffect (*hear_line)(std::string_view line) = nullptr;

const SearchHost UCI_HOST = {.must_stop = IsStopWanted,
                             .may_go_on = MayGoOn,
                             .tell_line = TellLine,
                             .tell_iteration = TellLine};

void Go(std::string_view arguments) {
    Request request;
    ReadRequest(arguments, request);
    StartThinking(request);
    Choice choice;
    SetFakeMove(choice.expected_reply);
    const bool has_move = HasLegalMove(LastMove());
    if (!has_move) {
        Tell(std::string("info depth 0 score ") + (IsCheck() ? "mate 0" : "cp 0"));
    } else if (!IsBookWanted(request) || !PickBookMoveOfLevel(LevelOf(request), choice.move)) {
        ChooseBySearch(request, choice);
    }
    while ((thinking.is_infinite || thinking.is_pondering) && !thinking.is_stopped) {
        std::string line;
        WaitForLine(line);
        HearLine(line);
    }
    if (has_move) {
        TellBestMove(choice);
    } else {
        Tell("bestmove (none)");
    }
}

void ListenWhileMeasuring() {
    StartThinking({});
    thinking.is_measuring = true;
}
