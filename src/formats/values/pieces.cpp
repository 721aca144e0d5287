#include "formats/values/pieces.h"

#include <algorithm>

#include "formats/text/scan.h"

namespace skyhaul {

std::string_view TakeField(std::string_view& rest, char separator) {
  const size_t end = std::min(rest.find(separator), rest.size());
  const std::string_view field = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return field;
}

bool IsWgs84(std::string_view datum) {
  std::string letters(datum);
  std::erase_if(letters, [](char c) { return c == ' ' || c == '-' || c == '_'; });
  return EqualIgnoringCase(letters, "WGS84") || EqualIgnoringCase(letters, "WGS1984");
}

std::string LineError(int line, std::string_view what) {
  return "Format error on line " + std::to_string(line) + ": " + std::string(what);
}

std::string LineNote(int line, std::string_view what) {
  return "Line " + std::to_string(line) + ": " + std::string(what);
}

}  // namespace skyhaul
