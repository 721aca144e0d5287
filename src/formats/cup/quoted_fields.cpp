#include "formats/cup/quoted_fields.h"

#include <algorithm>

#include "core/text/printable.h"
#include "core/text/scan.h"

namespace skyhaul::cup {

namespace {

// Finds the quote that closes a field and appends what stands before it. Returns the place after
// it, or npos.
// "the ""big"" tree": a doubled quote is one quote of the text and closes nothing.
size_t CloseQuote(std::string_view text, size_t at, std::string& field) {
  while (true) {
    const size_t quote = text.find('"', at);
    if (quote == std::string_view::npos) return quote;
    field += text.substr(at, quote - at);
    if (!text.substr(quote + 1).starts_with('"')) return quote + 1;
    field += '"';
    at = quote + 2;
  }
}

// Splits the record that a text holds. Returns false when a quote is left open, or, if strict, when
// a field goes on after the quote that closes it.
bool SplitRecord(std::string_view text, bool strict, std::vector<std::string>& fields) {
  while (true) {
    // Blanks before a quote are left out first, or the quote would be one of the text.
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    std::string field;
    size_t at = 0;
    if (text.starts_with('"')) at = CloseQuote(text, 1, field);
    if (at == std::string_view::npos) return false;
    const size_t comma = text.find(',', at);
    const std::string_view tail = TrimBlanks(text.substr(at, comma - at));
    // In a record of several lines this is the mark of a stray quote: what seems to close it is the
    // quote that opens a field of the next line.
    if (strict && at > 0 && !tail.empty()) return false;
    // An unquoted field, or what a careless writer put behind a closing quote.
    field += tail;
    fields.push_back(std::move(field));
    if (comma == std::string_view::npos) return true;
    text.remove_prefix(comma + 1);
  }
}

}  // namespace

int TakeQuotedRecord(std::string_view& rest, QuotedRecord& record) {
  const std::string_view whole = rest;
  std::string_view after_first_line;
  // One line is tried first, because hardly any text has line ends in it.
  for (int lines = 1; lines <= kMaxRecordLines && (lines == 1 || !rest.empty()); ++lines) {
    const size_t start = whole.size() - rest.size();
    const size_t length = start + TakeLine(rest).size();
    if (lines == 1) after_first_line = rest;
    record = {};
    if (SplitRecord(whole.substr(0, length), lines > 1, record.fields)) return lines;
  }
  // The lines that were tried belong to other waypoints and are read again by themselves.
  rest = after_first_line;
  record = {.fields = {}, .closed = false};
  return 1;
}

std::string QuoteField(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : OneLine(text)) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

}  // namespace skyhaul::cup
