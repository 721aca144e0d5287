// skyhaul-instrument: a simulated instrument behind a pseudo-terminal, for trying the program
// without an instrument at hand and for reproducing what a pilot saw with one.

#include <algorithm>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "core/low_memory.h"
#include "instruments/choices.h"
#include "instruments/conversation_commands.h"
#include "instruments/families.h"
#include "instruments/host.h"

namespace skyhaul {

namespace {

int RunChoices(const Choices& choices) {
  if (choices.family.empty()) return Refuse("Which family? See --help");
  const std::span<const SimulatedFamily> families = SimulatedFamilies();
  const auto family =
      std::find_if(families.begin(), families.end(),
                   [&](const SimulatedFamily& known) { return known.name == choices.family; });
  if (family == families.end()) return Refuse("Unknown family " + choices.family);
  return RunLogged(choices.log_path,
                   [&](ConversationLog* log) { return family->run(choices, log); });
}

}  // namespace

}  // namespace skyhaul

int main(int argc, char** argv) {
  skyhaul::EndWhenMemoryIsShort();
  skyhaul::Choices choices;
  const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
  const auto is_help = [](const std::string& word) { return word == "--help" || word == "-h"; };
  const bool help = std::any_of(arguments.begin(), arguments.end(), is_help);
  if (!help && skyhaul::IsConversationCommand(arguments)) {
    return skyhaul::RunConversationCommand(arguments);
  }
  if (const int status = skyhaul::ParseCommandLine(arguments, choices); status != 0) return status;
  if (choices.help) {
    (void)std::fputs((skyhaul::InstrumentUsage() + skyhaul::ConversationUsage()).c_str(), stdout);
    return 0;
  }
  return skyhaul::RunChoices(choices);
}
