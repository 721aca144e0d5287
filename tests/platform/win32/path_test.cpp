#include "platform/path.h"

#include <gtest/gtest.h>

#include "platform/win32/wide_text.h"

namespace skyhaul {
namespace {

TEST(Win32Path, BothSlashesAndADriveEndAFolder) {
  const struct {
    const char* path;
    const char* folder;
    const char* name;
    const char* as_folder;
  } cases[] = {
      {"", ".", "", ""},
      {"C:/flights\\2026/", "C:/flights\\2026/", "", "C:/flights\\2026/"},
      {"C:", "C:", "", "C:"},
      {"C:x.igc", "C:", "x.igc", "C:x.igc\\"},
      {"\\\\club\\logs\\x.igc", "\\\\club\\logs\\", "x.igc", "\\\\club\\logs\\x.igc\\"},
      {"file.igc:notes", ".", "file.igc:notes", "file.igc:notes\\"},
  };
  for (const auto& c : cases) {
    const std::string path = c.path;
    EXPECT_EQ(FolderOf(path), c.folder) << path;
    EXPECT_EQ(path.substr(NameStart(path)), c.name) << path;
    EXPECT_EQ(AsFolder(path), c.as_folder) << path;
  }
}

TEST(Win32Path, LongPathsGetTheFormWithoutALimit) {
  const std::string name(300, 'n');
  EXPECT_EQ(WidePath("C:\\short"), L"C:\\short");
  EXPECT_EQ(WidePath("C:/a/../" + name), L"\\\\?\\C:\\" + std::wstring(300, L'n'));
  EXPECT_EQ(WidePath("\\\\club\\logs\\" + name),
            L"\\\\?\\UNC\\club\\logs\\" + std::wstring(300, L'n'));
  EXPECT_EQ(WidePath("\\\\?\\C:\\" + name), L"\\\\?\\C:\\" + std::wstring(300, L'n'));
  EXPECT_EQ(WidePath("C:\\\xFF"), L"") << "not UTF-8";
}

TEST(WideText, IsTheSameTextBothWays) {
  const std::string text = "\xC3\x9C \xE2\x82\xAC \xF0\x9F\xAA\x82";
  EXPECT_EQ(WideText(text), L"\u00DC \u20AC \U0001FA82");
  EXPECT_EQ(Utf8Text(WideText(text)), text);
  EXPECT_EQ(Utf8Text(L"a\xD83Ez"), "a\xEF\xBF\xBDz") << "half a character";
}

}  // namespace
}  // namespace skyhaul
