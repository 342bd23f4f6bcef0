#pragma once

#include <string>
#include <vector>

// Takes the platform log's place: each entry as "priority tag function:line text".
extern std::vector<std::string> g_logEntries;
