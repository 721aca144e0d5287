#include "platform/append_file.h"

#include "tests/platform/file_fixture.h"

namespace skyhaul {
namespace {

using AppendFileTest = FileFixture;

// A reader sees each text at once, and the name may have any letter.
TEST_F(AppendFileTest, GrowsBehindWhatItHolds) {
  const std::string path = At("Grüße.txt");
  for (const char* text : {"one\n", "two\n"}) {
    const AppendOpening opening = OpenToAppend(path);
    ASSERT_NE(opening.handle, kNoAppendHandle) << opening.reason;
    EXPECT_EQ(Append(opening.handle, text), "");
    EXPECT_TRUE(Read(path).ends_with(text));
    SettleAppended(opening.handle);
    CloseAppended(opening.handle);
  }
  EXPECT_EQ(Read(path), "one\ntwo\n");
  EXPECT_NE(OpenToAppend(At(".")).reason, "");
}

}  // namespace
}  // namespace skyhaul
