#include "core/text/charset.h"
#include "formats/openair/lines.h"
#include "formats/openair/read_openair.h"

namespace skyhaul::openair {

bool LooksLike(std::string_view text) {
  // As the reader sees it: a byte order mark before the first AC is gone then.
  const std::string utf8 = ToUtf8(text);
  std::string_view rest = utf8;
  bool in_airspace = false;
  Line line;
  while (TakeLine(rest, line)) {
    if (line.code == "AC") in_airspace = true;
    // An AC alone is not enough, as any list or letter may have a line that begins so.
    if (in_airspace && IsOutlineCode(line.code)) return true;
  }
  return false;
}

}  // namespace skyhaul::openair
