#include "notation/blog.h"

#include "board/types.h"
#include "game/enginestate.h"
#include "platform/system.h"

#include <cstdio>

namespace {

constexpr const char* GAME_LOG = "GameLog";
constexpr const char* ERROR_LOG = "ErrorLog";

const char* OutcomeOf(std::string_view result, bool is_white) {
    if (result == "1/2-1/2") return "draw";
    return (result == "1-0") == is_white ? "win" : "loss";
}

} // namespace

void BlogGame(const PgnGameInfo& info) {
    std::FILE* file = OpenFile(GAME_LOG, FileUse::LOG);
    if (!file) return;
    const bool is_white = info.engine_color == WHITE;
    const auto put = [file](const char* field) { std::fprintf(file, "%s_", field); };
    put(PROGRAM_VERSION.data());
    put(PgnDate());
    put(PgnTime());
    put(GetPgnTagValueByName(info, "Site"));
    put(info.level);
    put(is_white ? "white" : "black");
    put(GetPgnTagValueByName(info, is_white ? "Black" : "White"));
    put(GetPgnTagValueByName(info, is_white ? "BlackType" : "WhiteType"));
    put(GetPgnTagValueByName(info, is_white ? "WhiteElo" : "BlackElo"));
    put(GetPgnTagValueByName(info, is_white ? "BlackElo" : "WhiteElo"));
    put(OutcomeOf(GetPgnTagValueByName(info, "Result"), is_white));
    std::fprintf(file, "%s\n", info.result_comment);
    std::fclose(file);
}

void BlogError(std::string_view message) {
    std::FILE* file = OpenFile(ERROR_LOG, FileUse::LOG);
    if (!file) return;
    std::fprintf(file, "%s\t%s\t%s\t\"%.*s\"\n", PROGRAM_VERSION.data(), PgnDate(), PgnTime(),
                 static_cast<int>(message.size()), message.data());
    std::fclose(file);
}
