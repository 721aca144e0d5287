#include "formats/common/messages.h"

#include "core/text/letter_case.h"
#include "core/text/printable.h"

namespace skyhaul {

std::string LineError(int line, std::string_view what) {
  return "Format error on line " + std::to_string(line) + ": " + std::string(what);
}

std::string LineNote(int line, std::string_view what) {
  return "Line " + std::to_string(line) + ": " + std::string(what);
}

std::string DatumError(int line, std::string_view datum) {
  // "WGS 84", "WGS84", "wgs-84" and "WGS 1984" are in use for the same datum. On another one every
  // place is shifted, so the file is refused rather than read with a note.
  std::string letters(datum);
  std::erase_if(letters, [](char c) { return c == ' ' || c == '\t' || c == '-' || c == '_'; });
  if (EqualIgnoringCase(letters, "WGS84") || EqualIgnoringCase(letters, "WGS1984")) return {};
  return LineError(line, "the datum is \"" + OneLine(datum) + "\", only WGS 84 can be read");
}

}  // namespace skyhaul
