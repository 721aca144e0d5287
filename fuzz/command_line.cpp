// The command line: any text parses to a block within its limits or to a message, and what a shell
// hands over as arguments means the same as text.

#include <functional>

#include "app/command_line/characters.h"
#include "app/command_line/from_arguments.h"
#include "app/command_line/keywords.h"
#include "app/command_line/parse.h"
#include "app/command_line/tokeniser.h"
#include "fuzz/frame.h"

namespace skyhaul {

namespace {

void RequireShort(const std::string& text, size_t max_characters) {
  Require(CutToCharacters(text, max_characters) == text);
  Require(text.size() <= max_characters * kMaxBytesPerCharacter);
}

void RequireLimits(const CommandLineBlock& block) {
  RequireShort(block.port_text, kMaxPortText);
  for (const Keyword& keyword : Keywords()) {
    if (keyword.text != nullptr) RequireShort(block.*keyword.text, keyword.max_characters);
  }
  Require(block.port_number <= kMaxPort && block.tracks.size() <= kMaxTracks);
  const auto& tracks = block.tracks;
  Require(std::ranges::adjacent_find(tracks, std::greater_equal()) == tracks.end());
  Require(tracks.empty() || (tracks.front() > 0 && tracks.back() <= kMaxTrackNumber));
  Require(block.timeout_s.value_or(0) <= kMaxTimeoutSeconds);
  if (block.filter_start_s && block.filter_stop_s) {
    Require(*block.filter_start_s <= *block.filter_stop_s && *block.filter_stop_s < 86400);
  }
}

void RequireParsed(const std::string& text) {
  const CommandLineHost host = {
      .is_port_name = [](const std::string& name) { return name.starts_with('/'); }};
  CommandLineBlock block;
  std::string message;
  const int result = ParseCommandLine(text, host, block, message);
  Require(message.empty() == (result == 0));
  Require(result == 0 || (result == -1 && !block.present));
  RequireLimits(block);
}

// A value that can be written at all comes back as it was, cut to its limit.
void RequireKept(const std::string& value) {
  if (value.find_first_of(std::string("\"\0", 2)) != std::string::npos) return;
  const std::string arguments[] = {"/EXIT", "/PILOT=" + value, "/USB"};
  const ArgumentText rebuilt =
      CommandTextFromArguments(arguments, {}, [](const std::string& /*path*/) { return false; });
  int items = 0;
  const auto take = [&](const Item& item) {
    if (++items == 2) Require(item.value == CutToCharacters(value, kMaxValue));
    return 0;
  };
  std::string message;
  Require(Tokenise(rebuilt.text, take, message) == 0 && items == 3);
}

}  // namespace

void Fuzz(std::string_view input) {
  const std::string text(input);
  RequireParsed(text);
  RequireKept(text);
}

}  // namespace skyhaul
