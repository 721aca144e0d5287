#include "platform/arguments.h"

#include <cstdlib>

namespace skyhaul {

ProgramArguments ReadProgramArguments(int argc, char** argv) {
  ProgramArguments arguments;
  for (int i = 1; i < argc; ++i) arguments.words.emplace_back(argv[i]);
  return arguments;
}

std::string EnvironmentVariable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace skyhaul
