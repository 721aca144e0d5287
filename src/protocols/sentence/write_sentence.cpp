#include "protocols/sentence/write_sentence.h"

namespace skyhaul {

int WriteSentence(SerialLink& link, std::string_view sentence) {
  return WriteText(link, sentence);
}

}  // namespace skyhaul
