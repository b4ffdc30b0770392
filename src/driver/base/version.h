// Two versions that have nothing to do with each other.
#pragma once

// The program's own, which rises with every release: "12.1.18". CMakeLists.txt says it, and nothing else
// does.
extern const char kVersion[];

// The version that every snapshot names. Consoles derive from it which facts a file has and how they are
// written, so it stays as long as these stay, whatever the program's version.
constexpr char kClientVersion[] = "12.01.18.0";
