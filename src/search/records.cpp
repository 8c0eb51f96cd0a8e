#include "search/records.h"

#include "search/request.h"

SearchInfo search_info;
AnalyzeInfo analyze_info;
SearchHost search_host;
