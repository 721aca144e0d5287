// The command line: any text parses to a block within its limits or to a message, and what a shell
// hands over as arguments means the same as text.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/command_line/characters.h"
#include "app/command_line/from_arguments.h"
#include "app/command_line/keywords.h"
#include "app/command_line/parse.h"
#include "app/command_line/tokeniser.h"

namespace {

using skyhaul::CommandLineBlock;
using skyhaul::CutToCharacters;

void Require(bool holds) {
  if (!holds) std::abort();
}

void CheckLimits(const CommandLineBlock& block) {
  Require(CutToCharacters(block.port_text, skyhaul::kMaxPortText) == block.port_text);
  for (const skyhaul::Keyword& keyword : skyhaul::Keywords()) {
    if (keyword.text == nullptr) continue;
    const std::string& text = block.*keyword.text;
    Require(CutToCharacters(text, keyword.max_characters) == text);
    Require(text.size() <= keyword.max_characters * skyhaul::kMaxBytesPerCharacter);
  }
  Require(block.port_number <= skyhaul::kMaxPort);
  Require(block.tracks.size() <= skyhaul::kMaxTracks);
  for (size_t i = 0; i < block.tracks.size(); ++i) {
    Require(block.tracks[i] > (i == 0 ? 0 : block.tracks[i - 1]));
    Require(block.tracks[i] <= skyhaul::kMaxTrackNumber);
  }
  Require(block.timeout_s.value_or(0) <= skyhaul::kMaxTimeoutSeconds);
  if (block.filter_start_s && block.filter_stop_s) {
    Require(*block.filter_start_s <= *block.filter_stop_s && *block.filter_stop_s < 86400);
  }
}

void CheckParsing(const std::string& text) {
  const skyhaul::CommandLineHost host = {
      .is_port_name = [](const std::string& name) { return name.starts_with('/'); }};
  CommandLineBlock block;
  std::string message;
  const int result = skyhaul::ParseCommandLine(text, host, block, message);
  Require(result == 0 || result == -1);
  Require(message.empty() == (result == 0));
  Require(result == 0 || !block.present);
  CheckLimits(block);
}

// A value that can be written at all comes back as it was, cut to its limit.
void CheckArgument(const std::string& value) {
  if (value.find_first_of(std::string("\"\0", 2)) != std::string::npos) return;
  const std::string arguments[] = {"/EXIT", "/PILOT=" + value, "/USB"};
  const skyhaul::ArgumentText rebuilt = skyhaul::CommandTextFromArguments(
      arguments, {}, [](const std::string& /*path*/) { return false; });
  int items = 0;
  const auto take = [&](const skyhaul::Item& item) {
    if (++items == 2) Require(item.value == CutToCharacters(value, skyhaul::kMaxValue));
    return 0;
  };
  std::string message;
  Require(skyhaul::Tokenise(rebuilt.text, take, message) == 0);
  Require(items == 3);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  CheckParsing(text);
  CheckArgument(text);
  return 0;
}
