#include "instruments/flytec/instrument_text.h"

namespace skyhaul::flytec_simulator {

namespace {

uint8_t XorOf(std::string_view text) {
  uint8_t sum = 0;
  for (const char c : text) sum = static_cast<uint8_t>(sum ^ static_cast<uint8_t>(c));
  return sum;
}

std::string HexByte(uint8_t byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[byte >> 4], kDigits[byte & 15]};
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

PositionCheck CheckCoordinate(std::string_view digits, std::string_view hemisphere,
                              size_t degree_digits, std::string_view hemispheres) {
  const size_t point = degree_digits + 2;
  if (digits.size() != point + 4 || digits[point] != '.') return PositionCheck::kMalformed;
  const int degrees = LeadingNumber(digits, degree_digits);
  const int minutes = LeadingNumber(digits.substr(degree_digits), 2);
  const int thousandths = WholeNumber(digits.substr(point + 1), 3);
  if (degrees < 0 || minutes < 0 || thousandths < 0) return PositionCheck::kMalformed;
  if (hemisphere.size() != 1 || hemispheres.find(hemisphere[0]) == std::string_view::npos) {
    return PositionCheck::kMalformed;
  }
  // 89 degrees 60 minutes are as impossible as 91 degrees.
  const int most_degrees = degree_digits == 2 ? 90 : 180;
  const bool beyond = (degrees * 60 + minutes) * 1000 + thousandths > most_degrees * 60'000;
  return minutes > 59 || beyond ? PositionCheck::kImpossible : PositionCheck::kSound;
}

}  // namespace

std::string InstrumentSentence(const std::string& body) {
  return "$" + body + "*" + HexByte(XorOf(body)) + "\r\n";
}

std::string_view SoundBody(std::string_view sentence) {
  sentence.remove_prefix(1);
  // From the end: a name may hold an asterisk, a checksum cannot.
  const size_t star = sentence.rfind('*');
  if (star == std::string_view::npos) return sentence.ends_with(',') ? sentence : "";
  const std::string_view body = sentence.substr(0, star);
  return sentence.substr(star + 1) == HexByte(XorOf(body)) ? body : "";
}

int LeadingNumber(std::string_view text, size_t digits) {
  if (text.size() < digits) return -1;
  int number = 0;
  for (size_t i = 0; i < digits; ++i) {
    if (!IsDigit(text[i])) return -1;
    number = number * 10 + (text[i] - '0');
  }
  return number;
}

int WholeNumber(std::string_view text, size_t digits) {
  return text.size() == digits ? LeadingNumber(text, digits) : -1;
}

std::vector<std::string_view> CutFields(std::string_view text) {
  std::vector<std::string_view> fields;
  for (size_t comma = text.find(','); comma != std::string_view::npos; comma = text.find(',')) {
    fields.push_back(text.substr(0, comma));
    text.remove_prefix(comma + 1);
  }
  fields.push_back(text);
  return fields;
}

PositionCheck CheckPosition(const std::vector<std::string_view>& fields, size_t first) {
  if (fields.size() < first + 4) return PositionCheck::kMalformed;
  const PositionCheck latitude = CheckCoordinate(fields[first], fields[first + 1], 2, "NS");
  if (latitude != PositionCheck::kSound) return latitude;
  return CheckCoordinate(fields[first + 2], fields[first + 3], 3, "EW");
}

}  // namespace skyhaul::flytec_simulator
