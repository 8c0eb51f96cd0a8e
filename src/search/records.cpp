#include "search/records.h"

SearchInfo search_info;
AnalyzeInfo analyze_info;
