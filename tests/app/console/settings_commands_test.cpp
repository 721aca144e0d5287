#include "app/console/settings_commands.h"

#include <gtest/gtest.h>

#include "app/console/batch.h"
#include "tests/support/fake_registry.h"
#include "tests/support/recording_shell.h"

namespace skyhaul {
namespace {

class SettingsCommandsTest : public testing::Test {
 protected:
  void SetUp() override {
    platform.registry = MakeRegistry(registry);
    platform.secret = MakeSecrets(secrets);
    operation.shell = &shell;
  }

  int Change(const std::vector<std::string>& assignments) {
    testing::internal::CaptureStdout();
    const int status = ChangeSettings(platform, operation, assignments);
    testing::internal::GetCapturedStdout();
    return status;
  }

  // The passwords that the system keeps.
  std::vector<std::string> Kept() const {
    std::vector<std::string> passwords;
    for (const auto& [name, password] : secrets.kept) passwords.push_back(password);
    return passwords;
  }

  FakeRegistry registry;
  FakeSecrets secrets;
  Platform platform;
  RecordingShell recorder;
  const Shell shell = MakeShell(recorder);
  Operation operation;
};

TEST_F(SettingsCommandsTest, OnlyThePasswordInUseIsKept) {
  using Passwords = std::vector<std::string>;
  EXPECT_EQ(Change({"SkylogPassword=old"}), kExitDone);
  EXPECT_EQ(Change({"SkylogPassword=x", "IgcSite=Fiesch", "SkylogPassword=new"}), kExitDone);
  EXPECT_EQ(Kept(), Passwords{"new"});
  const FakeValue marker = registry.user["SkylogPassword"];
  EXPECT_EQ("SkylogPassword " + marker.bytes.substr(7, 32), secrets.kept.begin()->first);

  // The marker cannot be saved, so the password that it leads to stays.
  registry.failing_set = "SkylogPassword";
  EXPECT_EQ(Change({"SkylogPassword=third"}), kExitFailed);
  EXPECT_EQ(recorder.messages.back(), "Settings: The settings are not stored\nDisk full");
  EXPECT_EQ(Kept(), Passwords{"new"});
  registry.failing_set.clear();

  secrets.answer = SecretResult::kFailed;
  EXPECT_EQ(Change({"IgcSite=Annecy", "SkylogPassword=fourth"}), kExitFailed);
  EXPECT_EQ(recorder.messages.back(),
            "Settings: SkylogPassword is not stored: The service is locked");
  EXPECT_EQ(registry.user["SkylogPassword"], marker);
  EXPECT_EQ(registry.user["IgcSite"].bytes, "Fiesch");

  EXPECT_EQ(Change({"SkylogPassword="}), kExitDone);
  EXPECT_EQ(Kept(), Passwords{});
  EXPECT_EQ(registry.user["SkylogPassword"].bytes, std::string(40, '\0'));
}

TEST_F(SettingsCommandsTest, NothingThatSteersATerminalIsShown) {
  registry.has_user = true;
  // Two controls, one of them of two bytes; bytes that are not UTF-8 and one that steers among
  // them.
  registry.user["IgcSite"].bytes = "J\xc3\xb6rg\x1b\xc2\x9b.";
  registry.user["IgcClass"].bytes = "J\xf6rg\x9b.";
  testing::internal::CaptureStdout();
  EXPECT_EQ(PrintSettings(platform, operation, false), kExitDone);
  const std::string shown = testing::internal::GetCapturedStdout();
  EXPECT_NE(shown.find("* IgcSite                  J\xc3\xb6rg??.  (default"), std::string::npos);
  EXPECT_NE(shown.find("* IgcClass                 J\xc3\xb6rg?.  (default"), std::string::npos);
}

TEST_F(SettingsCommandsTest, ANewUserWhosePasswordIsNotStoredStaysNew) {
  const struct {
    SecretResult answer;
    const char* why;
  } cases[] = {
      {SecretResult::kFailed, "The service is locked"},
      {SecretResult::kNoService, "this system has no place that keeps passwords secret"},
  };
  for (const auto& c : cases) {
    registry = {};
    secrets.answer = c.answer;
    EXPECT_EQ(Change({"IgcSite=Fiesch", "SkylogPassword=x"}), kExitFailed);
    EXPECT_EQ(recorder.messages.back(),
              std::string("Settings: SkylogPassword is not stored: ") + c.why);
    EXPECT_TRUE(registry.written.empty()) << c.why;
    EXPECT_EQ(registry.open_keys, 0);
  }
}

TEST_F(SettingsCommandsTest, WhatIsWrongChangesNothing) {
  EXPECT_EQ(Change({"IgcSite=Fiesch", "Port=x"}), kExitBadCommandLine);
  EXPECT_FALSE(registry.has_user);
  registry.open_reason = "Access is denied";
  EXPECT_EQ(Change({"IgcSite=Fiesch"}), kExitFailed);
  EXPECT_EQ(recorder.messages.back(), "Registry access error: Access is denied");
}

}  // namespace
}  // namespace skyhaul
