#include "settings/store.h"

#include <gtest/gtest.h>

#include <set>

#include "settings/password.h"
#include "settings/table.h"
#include "tests/support/fake_registry.h"
#include "tests/support/recording_shell.h"

namespace skyhaul {
namespace {

using Texts = std::vector<std::string>;

FakeValue Number(int32_t value) {
  return {.kind = ValueKind::kNumber,
          .bytes = {reinterpret_cast<const char*>(&value), sizeof value}};
}

FakeValue Text(const std::string& text) {
  return {.kind = ValueKind::kText, .bytes = text};
}

class SettingsStoreTest : public testing::Test {
 protected:
  void SetUp() override { operation.shell = &shell; }

  int Load(SettingsAccess access = SettingsAccess::kReadAndWrite) {
    fake.written.clear();
    return LoadSettings(registry, operation, access, store);
  }

  int Save() {
    fake.written.clear();
    return SaveSettings(store, reason);
  }

  // A user whose settings have all been written once.
  void MakeUser() {
    Load();
    Save();
    ASSERT_EQ(fake.user.size(), kSettingCount);
  }

  FakeRegistry fake;
  const RegistryFunctions registry = MakeRegistry(fake);
  RecordingShell recorder;
  const Shell shell = MakeShell(recorder);
  Operation operation;
  SettingsStore store;
  std::string reason;
};

TEST(SettingTable, EachSettingHasItsOwnPlace) {
  SettingValues values;
  std::set<const void*> fields;
  for (const SettingDescriptor& setting : SettingTable()) {
    if (setting.text != nullptr) fields.insert(&(values.*setting.text));
    if (setting.number != nullptr) fields.insert(&(values.*setting.number));
    if (setting.marker != nullptr) fields.insert(&(values.*setting.marker));
    EXPECT_LT(setting.default_text.size(), setting.size) << setting.name;
  }
  EXPECT_EQ(fields.size(), kSettingCount);
}

TEST(SettingTable, AFolderThatIsTooLongIsNotCut) {
  FakeRegistry fake;
  const RegistryFunctions registry = MakeRegistry(fake);
  const std::tuple<size_t, bool, bool> cases[] = {
      {259, true, true}, {260, false, true}, {268, false, true}, {269, false, false}};
  for (const auto& [length, fits_ftp, fits_others] : cases) {
    fake.documents.assign(length, 'd');
    const SettingValues defaults = DefaultSettings(registry);
    EXPECT_EQ(defaults.ftp_local_folder, fits_ftp ? fake.documents : "") << length;
    EXPECT_EQ(defaults.igc_dir, fits_others ? fake.documents : "") << length;
  }
}

TEST_F(SettingsStoreTest, AFirstRunHasTheDefaultsAndWritesThemAtItsEnd) {
  ASSERT_EQ(Load(), 0);
  EXPECT_TRUE(fake.written.empty());
  EXPECT_EQ(store.live.igc_dir, "/home/anna/Documents");
  // Another program of the same new user was faster.
  fake.user = {{"IgcSite", Text("Annecy")}, {"IgcClass", Text("Open")}};
  store.live.igc_site = "Fiesch";
  ASSERT_EQ(Save(), 0);
  EXPECT_EQ(fake.written.size(), kSettingCount - 1);
  EXPECT_EQ(fake.user["Baudrate"], Text("9600")) << "without a terminating zero";
  EXPECT_EQ(fake.user["IgcSite"], Text("Fiesch"));
  EXPECT_EQ(fake.user["IgcClass"], Text("Open"));
  EXPECT_EQ(fake.user["LoopFlightGap"], Number(800));
  EXPECT_EQ(fake.user["SkylogPassword"].bytes, std::string(40, '\0'));
}

TEST_F(SettingsStoreTest, OnlyChangesAreWritten) {
  MakeUser();
  ASSERT_EQ(Load(), 0);
  store.live.port = 7;
  store.live.igc_site = "Annecy";
  store.live.skylog_password[39] = 'x';
  EXPECT_EQ(Save(), 0);
  EXPECT_EQ(fake.written, (Texts{"Port", "IgcSite", "SkylogPassword"}));
  EXPECT_EQ(Save(), 0);
  EXPECT_EQ(fake.written, Texts{}) << "no key is open any more";
}

TEST_F(SettingsStoreTest, WhatCannotBeReadBecomesTheDefaultAtOnce) {
  MakeUser();
  fake.user.erase("Port");
  fake.user["IgcSite"] = Text(std::string(81, 's'));
  fake.user["IgcClass"] = Text(std::string(80, 'c'));
  fake.user["IgcGliderId"] = Text(std::string("77\0x", 4));
  fake.user["LoopFlightGap"] = Text("900");
  fake.user["SkylogPassword"] = {.kind = ValueKind::kBinary, .bytes = "abc"};
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(fake.written, (Texts{"Port", "LoopFlightGap", "IgcSite"}));
  EXPECT_EQ(fake.user["Port"], Number(1));
  EXPECT_EQ(store.live.igc_site, "None");
  EXPECT_EQ(store.live.igc_class, std::string(80, 'c'));
  EXPECT_EQ(store.live.igc_glider_id, "77");
  EXPECT_TRUE(PasswordIsSet(store.live.skylog_password));
  EXPECT_EQ(store.live.skylog_password[3], '\0');
  EXPECT_EQ(Save(), 0);
  EXPECT_EQ(fake.written, Texts{});
}

TEST_F(SettingsStoreTest, ANewUserGetsTheTemplate) {
  fake.has_template = true;
  fake.template_values = {{"IgcSite", Text("Bassano")}, {"Port", Text("not a number")}};
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(fake.open_keys, 1);
  EXPECT_EQ(store.live.igc_site, "Bassano");
  EXPECT_EQ(store.live.port, 1);
  ASSERT_EQ(Save(), 0);
  EXPECT_EQ(fake.user["IgcSite"], Text("Bassano"));
  fake.template_values["IgcSite"] = Text("Fiesch");
  ASSERT_EQ(Load(), 0);
  EXPECT_EQ(store.live.igc_site, "Bassano") << "the template is for new users only";
}

TEST_F(SettingsStoreTest, ReadingOnlyMakesAndWritesNothing) {
  ASSERT_EQ(Load(SettingsAccess::kReadOnly), 0);
  EXPECT_EQ(store.live.port_name, "COM1");
  EXPECT_FALSE(fake.has_user);
  fake.has_user = true;
  fake.user["IgcSite"] = Text("Fiesch");
  ASSERT_EQ(Load(SettingsAccess::kReadOnly), 0);
  EXPECT_EQ(store.live.igc_site, "Fiesch");
  store.live.port = 3;
  EXPECT_EQ(Save(), 0);
  EXPECT_EQ(fake.user.size(), 1U);
  EXPECT_EQ(fake.open_keys, 0);
}

TEST_F(SettingsStoreTest, FailuresAreTold) {
  fake.open_reason = "Access is denied";
  EXPECT_EQ(Load(), -1);
  EXPECT_EQ(recorder.messages, Texts{"Registry access error: Access is denied"});
  EXPECT_EQ(store.live.loop_flight_gap_m, 800);
  EXPECT_EQ(Save(), 0);
  EXPECT_EQ(fake.written, Texts{});

  fake.open_reason.clear();
  fake.failing_set = "Baudrate";
  fake.notes = {"Line 3: no sense"};
  EXPECT_EQ(Load(), 0);
  EXPECT_EQ(recorder.statuses, Texts{"Line 3: no sense"});
  EXPECT_EQ(Save(), -1);
  EXPECT_EQ(reason, "Disk full");
  EXPECT_EQ(fake.written.size(), kSettingCount - 1);
  EXPECT_EQ(fake.open_keys, 0);
}

TEST(Password, IsKeptUnderANewIdEachTime) {
  FakeSecrets fake;
  const SecretFunctions secrets = MakeSecrets(fake);
  std::string reason;
  const auto password_of = [&](const SecretMarker& marker) {
    std::string password;
    const SecretResult result = ReadPassword(secrets, "P", marker, password, reason);
    return result == SecretResult::kMissing ? "(missing)" : password;
  };
  SecretMarker first = {};
  EXPECT_FALSE(PasswordIsSet(first));
  ASSERT_EQ(KeepPassword(secrets, "P", "old", first, reason), SecretResult::kDone);
  SecretMarker second = first;
  ASSERT_EQ(KeepPassword(secrets, "P", "new", second, reason), SecretResult::kDone);
  EXPECT_EQ(password_of(first) + password_of(second), "oldnew");
  ForgetPassword(secrets, "P", first);
  EXPECT_EQ(password_of(first) + password_of(second), "(missing)new");
  EXPECT_EQ(std::string(second.data(), 40).find("new"), std::string::npos);

  fake.answer = SecretResult::kFailed;
  EXPECT_EQ(KeepPassword(secrets, "P", "x", second, reason), SecretResult::kFailed);
  EXPECT_EQ(password_of(second), "new");
  const SecretMarker foreign = {'a', 'b'};
  EXPECT_TRUE(PasswordIsSet(foreign));
  EXPECT_EQ(password_of(foreign), "(missing)");
}

}  // namespace
}  // namespace skyhaul
