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

// A variable of the environment that the program was started in, in UTF-8; empty when there is
// none.
std::string EnvironmentVariable(const char* name);

}  // namespace skyhaul
