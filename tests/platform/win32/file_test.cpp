#include "platform/file.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "platform/path.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"
#include "tests/platform/file_fixture.h"

namespace skyhaul {
namespace {

struct Win32File : FileFixture {
  Win32File() { Write(path, "old", IfExists::kRefuse); }

  static FileProblem Replace(const std::string& path) {
    return FileFixture::Write(path, "new", IfExists::kReplace);
  }

  // Opens the file as another program would.
  HANDLE OpenForReading(DWORD share) const {
    return CreateFileW(wide_path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
  }

  // What is there, temporary files included, and what the file holds.
  std::string State() const { return std::to_string(CountFiles()) + " " + Read(path); }

  const std::string path = At("flight.igc");
  const std::wstring wide_path = WidePath(path);
};

TEST_F(Win32File, AReadOnlyFileIsRefused) {
  ASSERT_NE(SetFileAttributesW(wide_path.c_str(), FILE_ATTRIBUTE_READONLY), 0);
  EXPECT_EQ(Replace(path), FileProblem::kDenied);
  EXPECT_EQ(Write(path, "new", IfExists::kRefuse), FileProblem::kExists);
  EXPECT_EQ(State(), "1 old");
  SetFileAttributesW(wide_path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

// Only readers that allow it can have the file replaced under them.
TEST_F(Win32File, AFileThatAnotherProgramHoldsIsRefused) {
  OwnedHandle reader(OpenForReading(FILE_SHARE_READ));
  EXPECT_EQ(Replace(path), FileProblem::kDenied);
  EXPECT_EQ(State(), "1 old");
  reader.Close();
  EXPECT_EQ(Replace(path), FileProblem::kNone);
  EXPECT_EQ(State(), "1 new");
}

TEST_F(Win32File, AScannerThatLooksForAMomentIsWaitedFor) {
  OwnedHandle scanner(OpenForReading(FILE_SHARE_READ | FILE_SHARE_WRITE));
  ASSERT_NE(scanner.handle, nullptr);
  std::thread timer([&] {
    Sleep(120);
    scanner.Close();
  });
  EXPECT_EQ(Replace(path), FileProblem::kNone);
  timer.join();
  EXPECT_EQ(State(), "1 new");
}

TEST_F(Win32File, DevicesAreUsedInPlace) {
  EXPECT_EQ(Replace("NUL"), FileProblem::kNone);
  EXPECT_EQ(Read("NUL"), "");
}

TEST(Win32Path, BothSlashesAndADriveEndAFolder) {
  const std::tuple<std::string, const char*, const char*, const char*> cases[] = {
      {"C:/flights\\2026/", "C:/flights\\2026/", "", "C:/flights\\2026/"},
      {"C:", "C:", "", "C:"},
      {"C:x.igc", "C:", "x.igc", "C:x.igc\\"},
      {"\\\\club\\logs\\x.igc", "\\\\club\\logs\\", "x.igc", "\\\\club\\logs\\x.igc\\"},
      {"file.igc:notes", ".", "file.igc:notes", "file.igc:notes\\"},
  };
  for (const auto& [path, folder, name, as_folder] : cases) {
    EXPECT_EQ(FolderOf(path), folder) << path;
    EXPECT_EQ(path.substr(NameStart(path)), name) << path;
    EXPECT_EQ(AsFolder(path), as_folder) << path;
  }
}

TEST(Win32Path, LongPathsGetTheFormWithoutALimit) {
  const std::string name(300, 'n');
  EXPECT_EQ(WidePath("C:\\short"), L"C:\\short");
  const std::wstring wide_name(300, L'n');
  EXPECT_EQ(WidePath("C:/a/../" + name), LR"(\\?\C:\)" + wide_name);
  EXPECT_EQ(WidePath(R"(\\club\logs\)" + name), LR"(\\?\UNC\club\logs\)" + wide_name);
  EXPECT_EQ(WidePath(R"(\\?\C:\)" + name), LR"(\\?\C:\)" + wide_name);
  EXPECT_EQ(WidePath("C:\\\xFF"), L"") << "not UTF-8";
}

TEST(WideText, HalfACharacterIsReplaced) {
  EXPECT_EQ(Utf8Text(L"a\xD83Ez"), "a\xEF\xBF\xBDz");
}

}  // namespace
}  // namespace skyhaul
