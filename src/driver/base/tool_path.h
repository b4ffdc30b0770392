// Where the system's tools are looked for.
#pragma once

#include <string>

// A PATH with those of /usr/bin, /bin, /usr/sbin and /sbin behind it that it lacks: cron and launchd hand out
// one without the profiler's directory. None and the empty PATH give these four alone. An empty element,
// which means the working directory, stays where it is, and none is added.
std::string complete_tool_path(const char* path);
