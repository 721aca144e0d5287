#include "platform/arguments.h"

namespace skyhaul {

ProgramArguments ReadProgramArguments(int argc, char** argv) {
  ProgramArguments arguments;
  for (int i = 1; i < argc; ++i) arguments.words.emplace_back(argv[i]);
  return arguments;
}

}  // namespace skyhaul
