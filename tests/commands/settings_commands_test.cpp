#include "commands/settings_commands.h"

#include <gtest/gtest.h>

#include "tests/support/fake_registry.h"
#include "tests/support/recording_shell.h"

namespace skyhaul {
namespace {

class SettingsCommandsTest : public testing::Test {
 protected:
  void SetUp() override {
    platform.registry = MakeRegistry(registry);
    platform.secret = MakeSecrets(secrets);
  }

  // How many settings were changed by these texts.
  std::optional<size_t> Change(const std::vector<std::string>& texts) {
    std::vector<Assignment> assignments(texts.size());
    std::string message;
    for (size_t i = 0; i < texts.size(); ++i) {
      EXPECT_EQ(ParseAssignment(texts[i], assignments[i], message), 0) << message;
    }
    return ChangeSettings(session, assignments);
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
  const Session session = {.platform = &platform, .shell = &shell};
};

TEST_F(SettingsCommandsTest, OnlyThePasswordInUseIsKept) {
  using Passwords = std::vector<std::string>;
  EXPECT_EQ(Change({"SkylogPassword=old"}), 1U);
  EXPECT_EQ(Change({"IgcSite=Fiesch", "SkylogPassword=new"}), 2U);
  EXPECT_EQ(Kept(), Passwords{"new"});
  const FakeValue marker = registry.user["SkylogPassword"];
  EXPECT_EQ("SkylogPassword " + marker.bytes.substr(7, 32), secrets.kept.begin()->first);

  // The marker cannot be saved, so the password that it leads to stays.
  registry.failing_set = "SkylogPassword";
  EXPECT_EQ(Change({"SkylogPassword=third"}), std::nullopt);
  EXPECT_EQ(recorder.messages.back(), "Settings: The settings are not stored\nDisk full");
  EXPECT_EQ(Kept(), Passwords{"new"});
  registry.failing_set.clear();

  secrets.answer = SecretResult::kFailed;
  EXPECT_EQ(Change({"IgcSite=Annecy", "SkylogPassword=fourth"}), std::nullopt);
  EXPECT_EQ(recorder.messages.back(),
            "Settings: SkylogPassword is not stored: The service is locked");
  EXPECT_EQ(registry.user["SkylogPassword"], marker);
  EXPECT_EQ(registry.user["IgcSite"].bytes, "Fiesch");

  EXPECT_EQ(Change({"SkylogPassword="}), 1U);
  EXPECT_EQ(Kept(), Passwords{});
  EXPECT_EQ(registry.user["SkylogPassword"].bytes, std::string(40, '\0'));
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
    EXPECT_EQ(Change({"IgcSite=Fiesch", "SkylogPassword=x"}), std::nullopt);
    EXPECT_EQ(recorder.messages.back(),
              std::string("Settings: SkylogPassword is not stored: ") + c.why);
    EXPECT_TRUE(registry.written.empty()) << c.why;
    EXPECT_EQ(registry.open_keys, 0);
  }
}

TEST_F(SettingsCommandsTest, SettingsThatCannotBeOpenedAreReported) {
  registry.has_user = true;
  registry.user["IgcSite"].bytes = "Fiesch";
  EXPECT_EQ(ReadSettings(session)->values.igc_site, "Fiesch");
  registry.open_reason = "Access is denied";
  EXPECT_EQ(Change({"IgcSite=Annecy"}), std::nullopt);
  EXPECT_EQ(ReadSettings(session), std::nullopt);
  EXPECT_EQ(recorder.messages.back(), "Registry access error: Access is denied");
}

}  // namespace
}  // namespace skyhaul
