#include <stdlib.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/settings_text.h"
#include "tests/platform/posix/child.h"
#include "tests/platform/registry_key.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

struct SettingsFileTest : testing::Test {
  void SetUp() override {
    setenv("HOME", folder.path.c_str(), 1);
    setenv("XDG_CONFIG_HOME", folder.File("config").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", (folder.File("none:") + folder.File("system")).c_str(), 1);
  }

  std::string Path() const { return folder.File("config/skyhaul/settings"); }

  void Write(const std::string& text) const {
    fs::create_directories(fs::path(Path()).parent_path());
    WriteText(Path(), text);
  }

  mode_t Permissions() const { return static_cast<mode_t>(fs::status(Path()).permissions()); }

  // Changes one value as a program of its own would.
  static void SetOne(const std::string& name, const std::string& value) {
    const TestKey key;
    key.Set(name, ValueKind::kText, value);
    EXPECT_EQ(key.Flush(), "");
  }

  ScratchFolder folder;
};

TEST_F(SettingsFileTest, AFirstWriteMakesAPrivateFile) {
  // Nothing is in the file yet, so a program beside it or after a failed write is the first as
  // well.
  for (const bool made : {false, true}) {
    EXPECT_TRUE(TestKey(RegistryKey::kUserReadOnly).opening.missing);
    EXPECT_EQ(fs::exists(Path()), made);
    EXPECT_TRUE(TestKey().opening.created);
    EXPECT_EQ(Permissions(), 0600U);
  }
  SetOne("IgcSite", " Fiesch\t");
  EXPECT_TRUE(ReadText(Path()).starts_with("# Settings of Skyhaul"));
  EXPECT_TRUE(ReadText(Path()).ends_with("\nIgcSite=\" Fiesch\\t\"\n")) << ReadText(Path());
  EXPECT_EQ(Permissions(), 0600U);
  EXPECT_FALSE(TestKey().opening.created);
}

TEST_F(SettingsFileTest, WhatAPersonWroteIsKept) {
  Write(
      "# mine\r\n\n  IgcSite =  Fiesch \nno sense\nOther=\"x\\q\"\nUnknown=1\nPort=abc # four\n"
      "IgcSite=Annecy");
  fs::permissions(Path(), fs::perms{0644});
  const TestKey key;
  EXPECT_EQ(key.Query("Port", ValueKind::kNumber), "(unfit)");
  EXPECT_EQ(key.Query("IGCSite", ValueKind::kText), "Annecy");
  EXPECT_EQ(
      Registry().take_notes(nullptr, key.handle),
      (Texts{Path() + ": Line 4: it is neither Name=value nor a comment",
             Path() + ": Line 5: a backslash in quotes is followed by none of \\ \" n r t xHH",
             Path() + ": Line 7: Port must be a whole number of 32 bits; it is not used",
             Path() + ": Line 6: there is no setting Unknown"}));
  key.Set("Port", ValueKind::kText, "1");
  key.Set("IgcSite", ValueKind::kText, "Bassano");
  key.Set("Unknown", ValueKind::kText, "2", IfSet::kKeep);
  key.Set("IgcClass", ValueKind::kText, "Open", IfSet::kKeep);
  EXPECT_EQ(key.Flush(), "");
  EXPECT_EQ(ReadText(Path()),
            "# mine\n\n  IgcSite =  Fiesch \nno sense\nOther=\"x\\q\"\nUnknown=1\n"
            "# Port=abc # four\nPort=1\nIgcSite=Bassano\nIgcClass=Open\n");
  EXPECT_EQ(Permissions(), 0600U);
}

TEST_F(SettingsFileTest, ProgramsDoNotUndoEachOthersChanges) {
  Write("IgcSite=Fiesch\n");
  const TestKey slow;
  SetOne("IgcSite", "Annecy");
  SetOne("IgcClass", "Open");
  slow.Set("IgcGliderId", ValueKind::kText, "7");
  slow.Set("IgcClass", ValueKind::kText, "Sports", IfSet::kKeep);
  EXPECT_EQ(slow.Flush(), "");
  EXPECT_EQ(ReadText(Path()), "IgcSite=Annecy\nIgcClass=Open\nIgcGliderId=7\n");

  constexpr int kWriters = 4;
  constexpr int kRounds = 10;
  std::vector<std::thread> writers;
  for (int writer = 0; writer < kWriters; ++writer) {
    writers.emplace_back([writer] {
      for (int i = 0; i < kRounds; ++i) {
        SetOne("V" + std::to_string(writer * kRounds + i), std::to_string(i));
      }
    });
  }
  for (std::thread& thread : writers) thread.join();
  EXPECT_EQ(ParseSettingsText(ReadText(Path())).lines.size(), 3U + kWriters * kRounds);
}

TEST_F(SettingsFileTest, AFailedWriteLosesNothing) {
  Write("IgcSite=Fiesch\n");
  const int result = InChild([] {
    LimitFileSize(5000);
    const TestKey key;
    key.Set("IgcClass", ValueKind::kText, std::string(20000, 'n'));
    return key.Flush().empty() ? 1 : 0;
  });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(ReadText(Path()), "IgcSite=Fiesch\n");
}

TEST_F(SettingsFileTest, WhatCannotBeOpenedIsTold) {
  fs::create_directories(Path());
  for (const RegistryKey which : {RegistryKey::kUser, RegistryKey::kUserReadOnly}) {
    const TestKey key(which);
    EXPECT_EQ(key.handle, kNoRegistryHandle);
    EXPECT_FALSE(key.opening.missing);
    EXPECT_EQ(key.opening.reason, Path() + ": Is a directory");
  }
}

TEST_F(SettingsFileTest, TheTemplateIsTheSystems) {
  EXPECT_TRUE(TestKey(RegistryKey::kTemplate).opening.missing);
  fs::create_directories(folder.File("system/skyhaul"));
  WriteText(folder.File("system/skyhaul/settings"), "Port=-7\n");
  const TestKey key(RegistryKey::kTemplate);
  ASSERT_NE(key.handle, kNoRegistryHandle);
  EXPECT_EQ(ValueFromBytes(key.Query("Port", ValueKind::kNumber), ValueKind::kNumber), "-7");
}

TEST_F(SettingsFileTest, DocumentsAreWhereTheDesktopHasThem) {
  const auto documents = [] { return Registry().documents_folder(nullptr); };
  EXPECT_EQ(documents(), folder.path);
  fs::create_directories(folder.File("config"));
  const std::string user_dirs = folder.File("config/user-dirs.dirs");
  WriteText(user_dirs, "#\nXDG_DOCUMENTS_DIR=\"$HOME/My \\\"Papers\\\"\"\n");
  EXPECT_EQ(documents(), folder.path) << "a folder that is not there";
  fs::create_directory(folder.File("My \"Papers\""));
  EXPECT_EQ(documents(), folder.File("My \"Papers\""));
}

TEST(SettingsText, ValuesComeBackAsTheyWere) {
  const std::string texts[] = {"",   "c:\\My Documents", "\"quoted\"", " a",
                               "b ", "a\r\n\x01\x7f",    "#no=comment"};
  for (const std::string& text : texts) {
    SettingsText settings;
    PutSetting(settings, "Name", text, false);
    settings = ParseSettingsText(FormatSettingsText(settings));
    ASSERT_EQ(FindSetting(settings, "Name"), 0) << text;
    EXPECT_EQ(settings.lines[0].value, text);
  }
}

TEST(SettingsText, ValuesAreCheckedByKind) {
  const std::tuple<ValueKind, Texts, Texts> cases[] = {
      {ValueKind::kNumber, {"2147483647", "-2147483648"}, {"2147483648", "0x10"}},
      {ValueKind::kText, {"abcd"}, {"abcde"}},
      {ValueKind::kBinary, {"", "00fF7f80"}, {"0", "0g", "0011223344"}},
  };
  std::string bytes;
  for (const auto& [kind, fitting, unfit] : cases) {
    for (const auto& text : fitting) EXPECT_TRUE(BytesFromValue(text, kind, 4, bytes)) << text;
    for (const auto& text : unfit) EXPECT_FALSE(BytesFromValue(text, kind, 4, bytes)) << text;
  }
}

}  // namespace
}  // namespace skyhaul
