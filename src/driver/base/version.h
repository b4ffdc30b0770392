// Two unrelated versions.
#pragma once

// The program's own, which rises with every release: "12.1.18". It is stated only in CMakeLists.txt.
extern const char kVersion[];

// The version that every snapshot names. Consoles derive from it which facts a file has and how they are
// written, so it stays as long as these stay, whatever the program's version.
constexpr char kClientVersion[] = "12.01.18.0";
