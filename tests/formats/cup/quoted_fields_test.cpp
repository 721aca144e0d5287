#include "formats/cup/quoted_fields.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace skyhaul {
namespace {

TEST(TakeQuotedRecord, SplitsFields) {
  const struct {
    std::string_view text;
    std::vector<std::string> fields;
    int lines;
    std::string_view rest;
  } cases[] = {
      {"a,b\r\nc", {"a", "b"}, 1, "c"},
      {"", {""}, 1, ""},
      {",", {"", ""}, 1, ""},
      {" a b , \"c, d\" ,e", {"a b", "c, d", "e"}, 1, ""},
      {R"("say ""Ah""","""",x"y"z)", {"say \"Ah\"", "\"", "x\"y\"z"}, 1, ""},
      {R"("a"b,c)", {"ab", "c"}, 1, ""},
      {"\"two\r\nlines\",b\nc", {"two\r\nlines", "b"}, 2, "c"},
      {"\"\n\n\"", {"\n\n"}, 3, ""},
  };
  for (const auto& test : cases) {
    std::string_view rest = test.text;
    QuotedRecord record;
    EXPECT_EQ(TakeQuotedRecord(rest, record), test.lines) << test.text;
    EXPECT_TRUE(record.closed) << test.text;
    EXPECT_EQ(record.fields, test.fields) << test.text;
    EXPECT_EQ(rest, test.rest) << test.text;
  }
}

TEST(TakeQuotedRecord, GivesUpAnOpenQuoteAfterItsLine) {
  const std::string start = "a,\"open\nnext,line\n";
  for (const std::string& text :
       {start, start + std::string(kMaxRecordLines, '\n') + '"', start + ",\"another\",field\n"}) {
    std::string_view rest = text;
    QuotedRecord record;
    EXPECT_EQ(TakeQuotedRecord(rest, record), 1);
    EXPECT_FALSE(record.closed);
    EXPECT_TRUE(rest.starts_with("next,line"));
  }
}

}  // namespace
}  // namespace skyhaul
