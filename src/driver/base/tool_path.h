// Where the system's tools are searched for.
#pragma once

#include <string>

// A PATH followed by those of /usr/bin, /bin, /usr/sbin and /sbin that it lacks: the one of cron and launchd
// lacks the profiler's directory. Null and the empty PATH give just these four. An empty element, which means
// the working directory, is kept, and none is added.
std::string complete_tool_path(const char* path);
