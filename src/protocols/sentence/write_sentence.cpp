#include "protocols/sentence/write_sentence.h"

namespace skyhaul {

namespace {

constexpr uint32_t kPatience_ms = 3000;
constexpr uint32_t kAgain_ms = 250;

}  // namespace

int WriteSentence(SerialLink& link, std::string_view sentence) {
  return WriteText(link, sentence);
}

int WriteWhenTaken(SerialLink& link, std::string_view sentence) {
  for (uint32_t waited_ms = 0; waited_ms < kPatience_ms; waited_ms += kAgain_ms) {
    if (WriteSentence(link, sentence) == 0) return 0;
    Pause(link, kAgain_ms);
    // The caller sees to the abort; it only must not wait here.
    if (link.operation->aborted) return -1;
  }
  // No instrument takes that long to store a record: the XON was lost.
  FreeOutput(link);
  return WriteSentence(link, sentence);
}

}  // namespace skyhaul
