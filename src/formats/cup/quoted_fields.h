#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace skyhaul::cup {

// Takes the next record off the front of a text of comma-separated fields: a line, or several where
// a quoted field has line ends in it. Inside quotes a doubled quote is one quote; a quote inside an
// unquoted field is itself. Blanks around fields go. Returns how many lines were taken. A quote
// that is not closed within kMaxRecordLines lines or by the end of the text is a fault of its line
// alone: one line is taken, closed is false, and there are no fields.
inline constexpr int kMaxRecordLines = 50;

struct QuotedRecord {
  std::vector<std::string> fields;
  bool closed = true;
};

int TakeQuotedRecord(std::string_view& rest, QuotedRecord& record);

// A text as one quoted field, quotes doubled, on one line.
std::string QuoteField(std::string_view text);

}  // namespace skyhaul::cup
