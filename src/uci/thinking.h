// "go": the search of a UCI front end, what it hears meanwhile, and what it tells.
#pragma once

#include "search/records.h"

#include <string_view>

// The search's way to the front end.
extern const SearchHost UCI_HOST;

// Carries out "go" with its limits. It ends with one line "bestmove", after a search without an end
// of its own, or one on the opponent's time, only when the front end has said so.
void Go(std::string_view arguments);

// Lets UCI_HOST.must_stop hear the front end while something is measured. Only "stop" ends that;
// what else would end a search, the end of the input too, waits until it is done.
void ListenWhileMeasuring();

// What the front end may say to the search that runs; each returns true when the search must end.
bool StopSearch();
bool HitPonderMove();
bool MakeWay(); // for a command that waits
