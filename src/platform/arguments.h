#pragma once

#include <string>
#include <vector>

namespace skyhaul {

// What the program was started with, behind its own name, in UTF-8.
struct ProgramArguments {
  std::vector<std::string> words;  // split, quotes taken away
  std::string text;                // as it was typed, where the system keeps that; else empty
};

// argc and argv are those of main().
ProgramArguments ReadProgramArguments(int argc, char** argv);

}  // namespace skyhaul
