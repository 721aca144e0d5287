#include "platform/file.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/win32/handle.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

FileProblem Write(const std::string& path, IfExists if_exists) {
  return WriteWholeFile(path, "new", if_exists).problem;
}

struct Win32File : public testing::Test {
  Win32File() { WriteText(path, "old"); }

  // What is there, temporary files included, and what the file holds.
  std::string State() const { return std::to_string(folder.Names().size()) + " " + ReadText(path); }

  const ScratchFolder folder;
  const std::string path = folder.File("flight.igc");
  const std::wstring wide_path = WidePath(path);
};

TEST_F(Win32File, AReadOnlyFileIsRefused) {
  ASSERT_NE(SetFileAttributesW(wide_path.c_str(), FILE_ATTRIBUTE_READONLY), 0);
  EXPECT_EQ(Write(path, IfExists::kReplace), FileProblem::kDenied);
  EXPECT_EQ(Write(path, IfExists::kRefuse), FileProblem::kExists);
  EXPECT_EQ(State(), "1 old");
  SetFileAttributesW(wide_path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

// Only readers that allow it can have the file replaced under them.
TEST_F(Win32File, AFileThatAnotherProgramHoldsIsRefused) {
  OwnedHandle reader(CreateFileW(wide_path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                 OPEN_EXISTING, 0, nullptr));
  ASSERT_NE(reader.handle, nullptr);
  const FileResult result = WriteWholeFile(path, "new", IfExists::kReplace);
  EXPECT_EQ(result.problem, FileProblem::kDenied) << result.reason;
  EXPECT_FALSE(result.reason.empty());
  EXPECT_EQ(State(), "1 old");
  reader.Close();
  EXPECT_EQ(Write(path, IfExists::kReplace), FileProblem::kNone);
  EXPECT_EQ(State(), "1 new");
}

TEST_F(Win32File, AScannerThatLooksForAMomentIsWaitedFor) {
  OwnedHandle scanner(CreateFileW(wide_path.c_str(), GENERIC_READ,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                  nullptr));
  ASSERT_NE(scanner.handle, nullptr);
  const OwnedHandle timer(CreateThread(
      nullptr, 0,
      [](void* held) -> DWORD {
        Sleep(120);
        static_cast<OwnedHandle*>(held)->Close();
        return 0;
      },
      &scanner, 0, nullptr));
  EXPECT_EQ(Write(path, IfExists::kReplace), FileProblem::kNone);
  WaitForSingleObject(timer.handle, INFINITE);
  EXPECT_EQ(State(), "1 new");
}

TEST_F(Win32File, DevicesAreUsedInPlace) {
  EXPECT_EQ(Write("NUL", IfExists::kReplace), FileProblem::kNone);
  std::string text = "before";
  EXPECT_EQ(ReadWholeFile("NUL", text).problem, FileProblem::kNone);
  EXPECT_EQ(text, "");
}

TEST_F(Win32File, AFolderIsSaidToBeOne) {
  std::string text;
  EXPECT_EQ(ReadWholeFile(folder.path.string(), text).reason, "This is a folder");
  EXPECT_EQ(WriteWholeFile(folder.path.string(), "", IfExists::kReplace).reason,
            "This is a folder");
}

}  // namespace
}  // namespace skyhaul
