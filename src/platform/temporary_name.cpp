#include "platform/temporary_name.h"

#include <optional>

#include "core/text/numbers.h"

namespace skyhaul {

namespace {

constexpr std::string_view kEnding = ".skyhaul-tmp";

// Takes ".123" off the end of a text. Empty when it does not end like that.
std::optional<uint32_t> CutNumber(std::string_view& text) {
  const size_t dot = text.rfind('.');
  if (dot == std::string_view::npos) return std::nullopt;
  const std::string_view digits = text.substr(dot + 1);
  const auto number = ReadInteger<uint32_t>(digits);
  // "007" is a number, but none that we write.
  if (!number.has_value() || std::to_string(*number) != digits) return std::nullopt;
  text = text.substr(0, dot);
  return number;
}

}  // namespace

std::string TemporarySuffix(uint32_t process, unsigned number) {
  return "." + std::to_string(process) + "." + std::to_string(number).append(kEnding);
}

uint32_t MakerOfTemporary(std::string_view name) {
  // ".flight.igc.4711.0.skyhaul-tmp" is cut from its end; something must be left of it.
  if (!name.starts_with('.') || !name.ends_with(kEnding)) return 0;
  name.remove_suffix(kEnding.size());
  if (!CutNumber(name).has_value()) return 0;
  const uint32_t process = CutNumber(name).value_or(0);
  return name.size() > 1 ? process : 0;
}

}  // namespace skyhaul
