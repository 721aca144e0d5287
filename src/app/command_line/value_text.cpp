#include "app/command_line/value_text.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "app/command_line/command_line_block.h"

namespace skyhaul {

namespace {

template <typename Number>
std::optional<Number> WholeNumber(std::string_view text) {
  Number number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

bool IsDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Two digits below the limit.
std::optional<uint32_t> ClockField(std::string_view text, uint32_t limit) {
  if (text.size() != 2) return std::nullopt;
  const std::optional<uint32_t> number = NumberFromText(text);
  return number && *number < limit ? number : std::nullopt;
}

// One element of a track list: "7" or "7-9". Returns 0 after adding its numbers, or -1.
int AddTracks(std::string_view element, std::set<uint32_t>& tracks) {
  // "7-" and "-9" fail, because an empty text is no number.
  const size_t dash = element.find('-');
  const auto first = NumberFromText(element.substr(0, dash));
  const auto last =
      dash == std::string_view::npos ? first : NumberFromText(element.substr(dash + 1));
  if (!first || !last || *first < 1 || *last < *first || *last > kMaxTrackNumber) return -1;
  // The greatest number has been checked above, so that "1-4000000000" does not fill the memory.
  for (uint32_t track = *first; track <= *last; ++track) tracks.insert(track);
  return 0;
}

}  // namespace

std::optional<uint32_t> NumberFromText(std::string_view text) {
  return WholeNumber<uint32_t>(text);
}

std::optional<int32_t> SignedNumberFromText(std::string_view text) {
  return WholeNumber<int32_t>(text);
}

std::optional<uint32_t> TimeoutFromText(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  if (!IsDigits(text)) return std::nullopt;
  if (negative) return 0;
  // Digits that do not fit in the number are a long time too.
  return std::min(NumberFromText(text).value_or(kMaxTimeoutSeconds), kMaxTimeoutSeconds);
}

std::optional<uint32_t> SecondOfDayFromText(std::string_view text) {
  // "09:30" or "09:30:15": the length tells them apart, and the colons stand at fixed places.
  const bool has_seconds = text.size() == 8;
  if ((text.size() != 5 && !has_seconds) || text[2] != ':') return std::nullopt;
  if (has_seconds && text[5] != ':') return std::nullopt;
  const auto hour = ClockField(text.substr(0, 2), 24);
  const auto minute = ClockField(text.substr(3, 2), 60);
  const auto second = has_seconds ? ClockField(text.substr(6, 2), 60) : 0;
  if (!hour || !minute || !second) return std::nullopt;
  return (*hour * 60 + *minute) * 60 + *second;
}

std::optional<std::vector<uint32_t>> TrackListFromText(std::string_view text) {
  // "1,3-5". A set, because ranges may overlap and only different numbers count.
  std::set<uint32_t> tracks;
  for (bool more = true; more;) {
    const size_t comma = text.find(',');
    if (AddTracks(text.substr(0, comma), tracks) != 0) return std::nullopt;
    more = comma != std::string_view::npos;
    if (more) text.remove_prefix(comma + 1);
  }
  if (tracks.size() > kMaxTracks) return std::nullopt;
  return std::vector<uint32_t>(tracks.begin(), tracks.end());
}

}  // namespace skyhaul
