#include "formats/openair/lines.h"

#include <algorithm>

#include "core/text/digits.h"
#include "core/text/letter_case.h"
#include "core/text/scan.h"
#include "formats/openair/fields.h"

namespace skyhaul::openair {

namespace {

constexpr std::string_view kCodes[] = {"AC", "AN", "AH", "AL", "V",  "DP",
                                       "DA", "DB", "DC", "DY", "TO", "TC"};

// A word that only begins like a code is no code, but a number may follow at once, and a variable.
bool EndsCode(std::string_view code, std::string_view rest) {
  if (rest.empty() || rest.front() == ' ' || rest.front() == '\t') return true;
  // "VX=47:30:00 N ...", without the blank.
  if (code == "V") return rest.find('=') == 1;
  // "DP47:30:00 N ..." and "DC5". The codes that begin with A are followed by words, which need the
  // blank.
  return code.front() == 'D' && IsDigit(rest.front());
}

std::string_view CodeOf(std::string_view content) {
  const std::string_view word = content.substr(0, content.find_first_of(" \t"));
  for (const std::string_view code : kCodes) {
    const bool same = EqualIgnoringCase(content.substr(0, code.size()), code);
    if (same && EndsCode(code, content.substr(code.size()))) return code;
  }
  for (const DetailCode& detail : kDetailCodes) {
    if (EqualIgnoringCase(word, detail.code)) return detail.code;
  }
  // An unknown code, such as "SP" or "AT": the caller says that it is not understood.
  return word;
}

}  // namespace

bool TakeLine(std::string_view& rest, Line& line) {
  if (rest.empty()) return false;
  const std::string_view whole = skyhaul::TakeLine(rest);
  // "DP 47:30:00 N 008:15:30 E * the church": comments also stand behind something else.
  const size_t star = std::min(whole.find('*'), whole.size());
  line.content = TrimBlanks(whole.substr(0, star));
  line.code = CodeOf(line.content);
  line.argument = TrimBlanks(line.content.substr(line.code.size()));
  // "DP 47:30:00 N 008:15:30 E * cornerDP 47:20:00 N 008:15:30 E" has lost a line end. A position
  // alone may be the same one in another form.
  line.swallowed = !line.content.empty() && HasRecord(whole.substr(star));
  return true;
}

bool IsOutlineCode(std::string_view code) {
  return code == "V" || code == "DP" || code == "DA" || code == "DB" || code == "DC" ||
         code == "DY";
}

bool MayBeOutline(const Line& line) {
  if (EqualIgnoringCase(line.code, "AT")) {
    // "AT 47:30:00 N 008:15:00 E", and nothing that belongs to another line.
    std::string_view rest = line.argument;
    AirspacePosition label;
    return TakePosition(rest, label) && HasOutline(rest);
  }
  // "; DP 47:30:00 N 008:15:00 E" was taken out by somebody who took ';' for the sign of comments.
  if (IsMarked(line.content)) return false;
  // "DO 5" for "DC 5"; and "EP 47:30:00 N 008:15:00 E", whatever was bent.
  const bool like_segment = line.code.size() == 2 && UpperLetter(line.code.front()) == 'D';
  return like_segment || HasOutline(line.content);
}

}  // namespace skyhaul::openair
