#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/file.h"
#include "platform/platform.h"
#include "platform/posix/settings_text.h"
#include "tests/platform/posix/scratch.h"

namespace skyhaul {
namespace {

namespace fs = std::filesystem;
using Notes = std::vector<std::string>;

const RegistryFunctions& Registry() {
  return NativePlatform().registry;
}

class SettingsFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    setenv("HOME", folder.path.c_str(), 1);
    setenv("XDG_CONFIG_HOME", (folder.path + "/config").c_str(), 1);
    setenv("XDG_CONFIG_DIRS", (folder.path + "/none:" + folder.path + "/system").c_str(), 1);
  }

  std::string Path() const { return folder.path + "/config/skyhaul/settings"; }

  void Write(const std::string& text) const {
    fs::create_directories(folder.path + "/config/skyhaul");
    WriteWholeFile(Path(), text, IfExists::kReplace);
  }

  std::string Read() const {
    std::string text;
    ReadWholeFile(Path(), text);
    return text;
  }

  mode_t Permissions() const {
    struct stat status {};
    EXPECT_EQ(stat(Path().c_str(), &status), 0);
    return status.st_mode & 07777;
  }

  static RegistryHandle Open(RegistryKey which = RegistryKey::kUser) {
    const RegistryOpening opening = Registry().open(nullptr, which);
    EXPECT_NE(opening.handle, kNoRegistryHandle) << opening.reason;
    return opening.handle;
  }

  static int Set(RegistryHandle key, const std::string& name, const std::string& value,
                 IfSet if_set = IfSet::kReplace) {
    std::string reason;
    return Registry().set(nullptr, key, name, ValueKind::kText, value, if_set, reason);
  }

  static int FlushAndClose(RegistryHandle key, std::string& reason) {
    const int result = Registry().flush(nullptr, key, reason);
    Registry().close(nullptr, key);
    return result;
  }

  // Changes one value as a program of its own would.
  static void SetOne(const std::string& name, const std::string& value) {
    const RegistryHandle key = Open();
    Set(key, name, value);
    std::string reason;
    EXPECT_EQ(FlushAndClose(key, reason), 0) << reason;
  }

  ScratchFolder folder;
};

TEST_F(SettingsFileTest, AFirstWriteMakesAPrivateFile) {
  EXPECT_TRUE(Registry().open(nullptr, RegistryKey::kUserReadOnly).missing);
  EXPECT_FALSE(fs::exists(folder.path + "/config"));
  const RegistryOpening opening = Registry().open(nullptr, RegistryKey::kUser);
  EXPECT_TRUE(opening.created);
  // Nothing is in the file yet, so a program beside it or after a failed write is the first as
  // well.
  const RegistryOpening second = Registry().open(nullptr, RegistryKey::kUser);
  EXPECT_TRUE(second.created);
  Registry().close(nullptr, second.handle);
  EXPECT_TRUE(Registry().open(nullptr, RegistryKey::kUserReadOnly).missing);
  EXPECT_EQ(Permissions(), 0600U);
  Set(opening.handle, "IgcSite", " Fiesch\t");
  std::string reason;
  EXPECT_EQ(FlushAndClose(opening.handle, reason), 0) << reason;
  EXPECT_TRUE(Read().starts_with("# Settings of Skyhaul"));
  EXPECT_TRUE(Read().ends_with("\nIgcSite=\" Fiesch\\t\"\n")) << Read();
  EXPECT_EQ(Permissions(), 0600U);
  const RegistryOpening third = Registry().open(nullptr, RegistryKey::kUser);
  EXPECT_FALSE(third.created);
  Registry().close(nullptr, third.handle);
}

TEST_F(SettingsFileTest, WhatAPersonWroteIsKept) {
  Write(
      "# mine\r\n\n  IgcSite =  Fiesch \nno sense\nOther=\"x\\q\"\nUnknown=1\nPort=abc # four\n"
      "IgcSite=Annecy");
  ASSERT_EQ(chmod(Path().c_str(), 0644), 0);
  const RegistryHandle key = Open();
  std::string bytes = "before";
  EXPECT_EQ(Registry().query(nullptr, key, "Port", ValueKind::kNumber, 4, bytes),
            QueryResult::kUnfit);
  EXPECT_EQ(bytes, "before");
  EXPECT_EQ(Registry().query(nullptr, key, "IGCSite", ValueKind::kText, 80, bytes),
            QueryResult::kFound);
  EXPECT_EQ(bytes, "Annecy");
  EXPECT_EQ(
      Registry().take_notes(nullptr, key),
      (Notes{Path() + ": Line 4: it is neither Name=value nor a comment",
             Path() + ": Line 5: a backslash in quotes is followed by none of \\ \" n r t xHH",
             Path() + ": Line 7: Port must be a whole number of 32 bits; it is not used",
             Path() + ": Line 6: there is no setting Unknown"}));
  Set(key, "Port", "1");
  Set(key, "IgcSite", "Bassano");
  Set(key, "Unknown", "2", IfSet::kKeep);
  Set(key, "IgcClass", "Open", IfSet::kKeep);
  std::string reason;
  ASSERT_EQ(FlushAndClose(key, reason), 0) << reason;
  EXPECT_EQ(Read(),
            "# mine\n\n  IgcSite =  Fiesch \nno sense\nOther=\"x\\q\"\nUnknown=1\n"
            "# Port=abc # four\nPort=1\nIgcSite=Bassano\nIgcClass=Open\n");
  EXPECT_EQ(Permissions(), 0600U);
}

TEST_F(SettingsFileTest, ProgramsDoNotUndoEachOthersChanges) {
  Write("IgcSite=Fiesch\n");
  const RegistryHandle slow = Open();
  SetOne("IgcSite", "Annecy");
  SetOne("IgcClass", "Open");
  Set(slow, "IgcGliderId", "7");
  Set(slow, "IgcClass", "Sports", IfSet::kKeep);
  std::string reason;
  EXPECT_EQ(FlushAndClose(slow, reason), 0) << reason;
  EXPECT_EQ(Read(), "IgcSite=Annecy\nIgcClass=Open\nIgcGliderId=7\n");

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
  const SettingsText text = ParseSettingsText(Read());
  EXPECT_EQ(text.lines.size(), 3U + kWriters * kRounds);
  for (int i = 0; i < kWriters * kRounds; ++i) {
    EXPECT_GE(FindSetting(text, "V" + std::to_string(i)), 0) << i;
  }
}

TEST_F(SettingsFileTest, AFailedWriteLosesNothing) {
  Write("IgcSite=Fiesch\n");
  const int result = InChild([] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {.rlim_cur = 5000, .rlim_max = 5000};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
    const RegistryHandle key = Open();
    Set(key, "IgcClass", std::string(20000, 'n'));
    std::string reason;
    return FlushAndClose(key, reason) == -1 && !reason.empty() ? 0 : 1;
  });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(Read(), "IgcSite=Fiesch\n");
}

TEST_F(SettingsFileTest, WhatCannotBeOpenedIsTold) {
  Write("");
  fs::remove(Path());
  fs::create_directory(Path());
  for (const RegistryKey which : {RegistryKey::kUser, RegistryKey::kUserReadOnly}) {
    const RegistryOpening opening = Registry().open(nullptr, which);
    EXPECT_EQ(opening.handle, kNoRegistryHandle);
    EXPECT_FALSE(opening.missing);
    EXPECT_EQ(opening.reason, Path() + ": Is a directory");
  }
}

TEST_F(SettingsFileTest, TheTemplateIsTheSystems) {
  EXPECT_TRUE(Registry().open(nullptr, RegistryKey::kTemplate).missing);
  fs::create_directories(folder.path + "/system/skyhaul");
  WriteWholeFile(folder.path + "/system/skyhaul/settings", "Port=-7\n", IfExists::kRefuse);
  const RegistryHandle key = Open(RegistryKey::kTemplate);
  std::string bytes;
  EXPECT_EQ(Registry().query(nullptr, key, "Port", ValueKind::kNumber, 4, bytes),
            QueryResult::kFound);
  EXPECT_EQ(ValueFromBytes(bytes, ValueKind::kNumber), "-7");
  Registry().close(nullptr, key);
}

TEST_F(SettingsFileTest, DocumentsAreWhereTheDesktopHasThem) {
  const auto documents = [] { return Registry().documents_folder(nullptr); };
  EXPECT_EQ(documents(), folder.path);
  fs::create_directories(folder.path + "/config");
  const std::string user_dirs = folder.path + "/config/user-dirs.dirs";
  WriteWholeFile(user_dirs, "#\nXDG_DOCUMENTS_DIR=\"$HOME/My \\\"Papers\\\"\"\n",
                 IfExists::kRefuse);
  EXPECT_EQ(documents(), folder.path) << "a folder that is not there";
  fs::create_directory(folder.path + "/My \"Papers\"");
  EXPECT_EQ(documents(), folder.path + "/My \"Papers\"");
}

TEST(SettingsText, ValuesComeBackAsTheyWere) {
  const std::string texts[] = {"",     "c:\\My Documents", "\"quoted\"",  " a",
                               "b ",   "a\r\n\x01\x7f",    "#no comment", "a=b",
                               "Jörg", "back\\slash "};
  for (const std::string& text : texts) {
    SettingsText settings;
    PutSetting(settings, "Name", text, false);
    settings = ParseSettingsText(FormatSettingsText(settings));
    ASSERT_EQ(FindSetting(settings, "Name"), 0) << text;
    EXPECT_EQ(settings.lines[0].value, text);
  }
}

TEST(SettingsText, ValuesAreCheckedByKind) {
  const struct {
    const char* value;
    ValueKind kind;
    bool fits;
  } cases[] = {
      {"2147483647", ValueKind::kNumber, true},
      {"-2147483648", ValueKind::kNumber, true},
      {"2147483648", ValueKind::kNumber, false},
      {"", ValueKind::kNumber, false},
      {"1 ", ValueKind::kNumber, false},
      {"0x10", ValueKind::kNumber, false},
      {"abcd", ValueKind::kText, true},
      {"abcde", ValueKind::kText, false},
      {"", ValueKind::kBinary, true},
      {"00fF7f80", ValueKind::kBinary, true},
      {"0", ValueKind::kBinary, false},
      {"0g", ValueKind::kBinary, false},
      {"0011223344", ValueKind::kBinary, false},
      {"-1", ValueKind::kBinary, false},
  };
  for (const auto& c : cases) {
    std::string bytes;
    EXPECT_EQ(BytesFromValue(c.value, c.kind, 4, bytes), c.fits) << c.value;
  }
}

}  // namespace
}  // namespace skyhaul
