// skyhaul-instrument: a simulated instrument behind a pseudo-terminal, for trying the program
// without an instrument at hand and for reproducing what a pilot saw with one.

#include <algorithm>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/low_memory.h"
#include "instruments/choices.h"
#include "instruments/families.h"
#include "transport/conversation_log.h"

namespace skyhaul {

namespace {

void WriteLogLine(void* context, std::string_view line) {
  auto* file = static_cast<std::FILE*>(context);
  (void)std::fwrite(line.data(), 1, line.size(), file);
  (void)std::fflush(file);
}

int RunChoices(const Choices& choices) {
  if (choices.family.empty()) return Refuse("Which family? See --help");
  const std::span<const SimulatedFamily> families = SimulatedFamilies();
  const auto family =
      std::find_if(families.begin(), families.end(),
                   [&](const SimulatedFamily& known) { return known.name == choices.family; });
  if (family == families.end()) return Refuse("Unknown family " + choices.family);
  if (choices.log_path.empty()) return family->run(choices, nullptr);
  std::FILE* file = std::fopen(choices.log_path.c_str(), "wb");
  if (file == nullptr) return Refuse("Could not write " + choices.log_path);
  ConversationLog log{.write = WriteLogLine, .context = file};
  const int status = family->run(choices, &log);
  (void)std::fclose(file);
  return status;
}

}  // namespace

}  // namespace skyhaul

int main(int argc, char** argv) {
  skyhaul::EndWhenMemoryIsShort();
  skyhaul::Choices choices;
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  if (const int status = skyhaul::ParseCommandLine(arguments, choices); status != 0) return status;
  if (choices.help) {
    (void)std::fputs(skyhaul::InstrumentUsage().c_str(), stdout);
    return 0;
  }
  return skyhaul::RunChoices(choices);
}
