#include "protocols/sentence/write_sentence.h"

namespace skyhaul {

int WriteSentence(SerialLink& link, std::string_view sentence) {
  // Every sentence comes after a pause or a time-out. What still stops the output then is an XOFF
  // whose XON was lost.
  FreeOutput(link);
  return WriteText(link, sentence);
}

}  // namespace skyhaul
