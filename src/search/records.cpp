#include "search/records.h"

#include "board/utility.h"

SearchInfo search_info;
AnalyzeInfo analyze_info;
SearchHost search_host;

void ResetSearchInfo(const SearchLimits& limits) {
    search_info = {};
    search_info.poll_slack = limits.is_strict ? NODE_CHECK_INTERVAL : NO_POLL;
    search_info.node_limit = limits.nodes;
    search_info.start_time = CurrentTimeU64();
    search_info.time_limit = NO_TIME_LIMIT;
    if (limits.clock) StartClock(*limits.clock);
}

void StartClock(const TimeLeft& left) {
    search_info.clock = left;
    search_info.start_time = CurrentTimeU64();
    search_info.time_limit = TimeLimit(left.clock);
}

bool MustStop() {
    SchedulePoll();
    search_info.stop = IsNodeLimitReached() ||
                       CurrentTimeU64() - search_info.start_time > search_info.time_limit ||
                       (search_host.must_stop && search_host.must_stop());
    search_info.stop_quiescence = search_info.stop && search_info.poll_slack != NO_POLL;
    return search_info.stop;
}
