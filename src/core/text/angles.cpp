#include "core/text/angles.h"

#include <algorithm>

#include "core/text/digits.h"
#include "core/text/numbers.h"

namespace skyhaul {

std::optional<DegreesMinutes> ReadDegreesMinutes(std::string_view text) {
  constexpr size_t kMinuteDigits = 2;
  constexpr int kDegreeLimit = 1000;
  const size_t point = std::min(text.find('.'), text.size());
  // "4630.5" is 46 degrees and 30.5 minutes, "30.5" no degrees, "0004630.5" 46 degrees again.
  const size_t degree_digits = std::max(point, kMinuteDigits) - kMinuteDigits;
  // Leading zeros go, because ReadWholeNumber() takes nine digits at most.
  const size_t zeros = std::min(text.find_first_not_of('0'), degree_digits);
  const std::string_view degrees_text = text.substr(zeros, degree_digits - zeros);
  const int degrees = degrees_text.empty() ? 0 : ReadWholeNumber(degrees_text);
  const std::string_view minutes_text = text.substr(degree_digits);
  // A text that is empty ends here too: its point is at 0.
  if (point == 0 || degrees < 0 || degrees >= kDegreeLimit) return std::nullopt;
  if (!IsDigit(minutes_text.front())) return std::nullopt;  // a sign
  const std::optional<double> minutes = ReadDecimal(minutes_text);
  if (!minutes) return std::nullopt;
  return DegreesMinutes{.degrees = static_cast<uint32_t>(degrees), .minutes = *minutes};
}

}  // namespace skyhaul
