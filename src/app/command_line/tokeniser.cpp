#include "app/command_line/tokeniser.h"

#include "app/command_line/characters.h"
#include "core/text/letter_case.h"

namespace skyhaul {

namespace {

constexpr char kEnd = '\0';

bool EndsItem(char byte) {
  return byte == ' ' || byte == kEnd;
}

int CompleteItem(Tokeniser& tokeniser) {
  tokeniser.state = TokeniserState::kBetweenItems;
  return 0;
}

void AppendToValue(Tokeniser& tokeniser, char byte) {
  std::string& value = tokeniser.item.value;
  const size_t before = value.size();
  AppendWithin(byte, kMaxValue, tokeniser.value_seen, value);
  if (value.size() == before) tokeniser.value_cut = true;
}

// /GPS=IQCOMPEO /COM=3 "/PILOT=First Last"
// ^             ^       ^ an error: between two items only a blank and a slash can stand
int FeedBetweenItems(Tokeniser& tokeniser, char byte) {
  if (EndsItem(byte)) return 1;
  if (byte != '/') return -1;
  tokeniser = {};
  tokeniser.state = TokeniserState::kKeyword;
  return 1;
}

int FeedKeyword(Tokeniser& tokeniser, char byte) {
  if (EndsItem(byte)) return CompleteItem(tokeniser);
  if (byte == '=') {
    // Only the first equals sign ends the keyword; in a value it is a character like any other.
    tokeniser.state = TokeniserState::kValue;
  } else {
    // Case does not matter in keywords, so they are compared in upper case.
    AppendWithin(UpperLetter(byte), kMaxKeyword, tokeniser.keyword_seen, tokeniser.item.keyword);
  }
  return 1;
}

// A quote inside a value is a part of it: /PILOT=Ann"X. Only at its beginning does it hold blanks
// together.
int FeedValue(Tokeniser& tokeniser, char byte) {
  if (EndsItem(byte)) return CompleteItem(tokeniser);
  if (byte == '"' && tokeniser.item.value.empty()) {
    tokeniser.state = TokeniserState::kQuotedValue;
  } else {
    AppendToValue(tokeniser, byte);
  }
  return 1;
}

// /PILOT="First Last"/EXIT: the closing quote ends the item, no blank has to follow. The end of the
// text closes a quote that was left open.
int FeedQuotedValue(Tokeniser& tokeniser, char byte) {
  if (byte == '"' || byte == kEnd) return CompleteItem(tokeniser);
  AppendToValue(tokeniser, byte);
  return 1;
}

using TakeTokeniserFunction = std::function<int(const Tokeniser& tokeniser)>;

// Tokenise(), but every item is taken with what else the tokeniser knows of it.
int Walk(std::string_view text, const TakeTokeniserFunction& take, std::string& message) {
  // A zero ends the text here, so that it cannot end an item in the middle.
  text = text.substr(0, text.find(kEnd));
  Tokeniser tokeniser;
  size_t position = 0;
  // One step beyond the last byte: the zero that ends the text completes the last item.
  for (size_t i = 0; i <= text.size(); ++i) {
    const char byte = i < text.size() ? text[i] : kEnd;
    // The message names a character, so the bytes that continue one do not count.
    if (StartsCharacter(byte)) ++position;
    const int fed = FeedCharacter(tokeniser, byte);
    if (fed < 0) {
      message = "Error at position " + std::to_string(position);
      return -1;
    }
    const int taken = fed == 0 ? take(tokeniser) : 0;
    if (taken < 0) return taken;
  }
  return 0;
}

}  // namespace

int FeedCharacter(Tokeniser& tokeniser, char byte) {
  switch (tokeniser.state) {
    case TokeniserState::kBetweenItems:
      return FeedBetweenItems(tokeniser, byte);
    case TokeniserState::kKeyword:
      return FeedKeyword(tokeniser, byte);
    case TokeniserState::kValue:
      return FeedValue(tokeniser, byte);
    case TokeniserState::kQuotedValue:
      return FeedQuotedValue(tokeniser, byte);
  }
  return -1;
}

int Tokenise(std::string_view text, const TakeItemFunction& take, std::string& message) {
  return Walk(
      text, [&](const Tokeniser& tokeniser) { return take(tokeniser.item); }, message);
}

int CheckValueLengths(std::string_view text, std::string& message) {
  std::string too_long;
  const auto check = [&](const Tokeniser& tokeniser) {
    if (!tokeniser.value_cut) return 0;
    too_long = "The value of " + tokeniser.item.keyword + " is longer than " +
               std::to_string(kMaxValue) + " characters";
    return -1;
  };
  // A byte that cannot stand there is for Tokenise() to report.
  std::string ignored;
  (void)Walk(text, check, ignored);
  if (too_long.empty()) return 0;
  message = too_long;
  return -1;
}

}  // namespace skyhaul
