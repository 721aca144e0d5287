#include "core/text/charset.h"
#include "formats/openair/lines.h"
#include "formats/openair/read_openair.h"

namespace skyhaul {

bool LooksLikeOpenAir(std::string_view text) {
  const std::string utf8 = ToUtf8(text);
  std::string_view rest = utf8;
  bool in_airspace = false;
  openair::Line line;
  while (openair::TakeLine(rest, line)) {
    if (line.code == "AC") in_airspace = true;
    if (in_airspace && openair::IsOutlineCode(line.code)) return true;
  }
  return false;
}

}  // namespace skyhaul
