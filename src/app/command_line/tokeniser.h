#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace skyhaul {

inline constexpr size_t kMaxKeyword = 16;  // characters
inline constexpr size_t kMaxValue = 260;   // characters

// One switch: a slash, the keyword and, after an equals sign, the value.
struct Item {
  std::string keyword;  // upper case
  std::string value;    // without the quotes around it

  friend bool operator==(const Item&, const Item&) = default;
};

enum class TokeniserState { kBetweenItems, kKeyword, kValue, kQuotedValue };

// What the tokeniser knows between two characters. The item is complete when FeedCharacter says so,
// and is valid until the next character.
struct Tokeniser {
  TokeniserState state = TokeniserState::kBetweenItems;
  Item item;
  size_t keyword_seen = 0;  // characters of the keyword, the dropped ones too
  size_t value_seen = 0;    // the same for the value
  bool value_cut = false;
};

// Feeds one byte; the zero that ends the text is fed as well. Keywords and values are cut to their
// limits without a message.
// Returns 1 (more needed), 0 (one item complete), or -1 when the byte cannot stand there.
int FeedCharacter(Tokeniser& tokeniser, char byte);

// Takes one completed item; a negative result stops the tokenising.
using TakeItemFunction = std::function<int(const Item& item)>;

// Delivers the items of a text, which ends at its first zero or at its end. Returns 0; a negative
// result of take; or -1 with "Error at position n", n being the 1-based place of the character that
// cannot stand there.
int Tokenise(std::string_view text, const TakeItemFunction& take, std::string& message);

// Whether Tokenise() would deliver every value whole. Returns 0, or -1 with a message that names
// the first keyword whose value is too long, and the limit. 0 also for a text that cannot be
// tokenised.
int CheckValueLengths(std::string_view text, std::string& message);

}  // namespace skyhaul
