#include "search/records.h"

#include "board/utility.h"
#include "search/request.h"

SearchInfo search_info;
AnalyzeInfo analyze_info;
SearchHost search_host;

bool MustStop() {
    SchedulePoll();
    search_info.stop = IsNodeLimitReached() ||
                       CurrentTimeU64() - search_info.start_time > search_info.time_limit ||
                       (search_host.must_stop && search_host.must_stop());
    search_info.stop_quiescence = search_info.stop && search_info.poll_slack != NO_POLL;
    return search_info.stop;
}
