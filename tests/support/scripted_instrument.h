#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/instrument.h"

namespace skyhaul {

// An instrument that answers what a test has written down: for each request (from '$' to before
// '*') its answers in turn, the last one again and again. What it is not told to answer it ignores.
struct ScriptedInstrument {
  std::map<std::string, std::vector<std::string>> answers;
  std::vector<std::string> requests;  // all that arrived, with checksum and without CR LF
  std::map<std::string, size_t> asked;
  std::string line;
};

inline void ReceiveScripted(void* state, Wire& wire, uint8_t byte, uint64_t now_ns) {
  auto& script = *static_cast<ScriptedInstrument*>(state);
  if (byte == '$') script.line.clear();
  if (byte != '\n') {
    script.line += static_cast<char>(byte);
    return;
  }
  const std::string sentence = script.line.substr(0, script.line.find('\r'));
  script.requests.push_back(sentence);
  const std::string key = sentence.substr(0, sentence.find('*'));
  const auto found = script.answers.find(key);
  if (found == script.answers.end()) return;
  const size_t turn = std::min(script.asked[key]++, found->second.size() - 1);
  Send(wire, found->second[turn], now_ns);
}

inline SimulatedInstrument MakeScripted(ScriptedInstrument& script) {
  SimulatedInstrument instrument;
  instrument.state = &script;
  instrument.receive = ReceiveScripted;
  return instrument;
}

}  // namespace skyhaul
