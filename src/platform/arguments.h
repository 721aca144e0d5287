#pragma once

#include <string>
#include <vector>

namespace skyhaul {

// The arguments that the program was started with, without its own name, in UTF-8.
struct ProgramArguments {
  std::vector<std::string> words;  // split, quotes removed
  std::string text;                // as it was typed, on systems that keep it; else empty
};

// argc and argv are those of main().
ProgramArguments ReadProgramArguments(int argc, char** argv);

}  // namespace skyhaul
