#include "protocols/families.h"

#include <gtest/gtest.h>

#include <set>

namespace skyhaul {
namespace {

// What a job needs of the table: which conversation, over which kind of port.
TEST(Families, NamesLeadToTheirConversations) {
  const struct {
    GpsType type;
    bool usb;
    ProtocolType protocol;
  } cases[] = {
      {GpsType::kGarmin, false, kGarminSerial},   {GpsType::kGarmin, true, kGarminUsb},
      {GpsType::kMlrc, false, kMlrLogit},         {GpsType::kXctMxp, false, kAircotecSecondReader},
      {GpsType::kLeonardo, false, kNmeaLogger},   {GpsType::kFlymasterOld, false, kFlymaster},
      {GpsType::kIqBasic, false, kFlytec6015},    {GpsType::kIqCompeo, true, kFlytec},
      {GpsType::kDigiflyAir, false, kDigiflyAir},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ProtocolOf(c.type, c.usb), c.protocol) << EntryOf(c.type).name;
  }
}

TEST(Families, JobsHaveTheProceduresAndPortsOfTheirRows) {
  const JobTable table = AllJobs();
  ASSERT_EQ(table.size(), Families().size());
  std::set<uint32_t> with_flow_control;
  for (uint32_t protocol = 0; protocol < table.size(); ++protocol) {
    if (table[protocol].xon_xoff) with_flow_control.insert(protocol);
  }
  EXPECT_EQ(with_flow_control, (std::set<uint32_t>{4, 7, 10, 11}));
  EXPECT_TRUE(table[kGarminUsb].on_usb);

  std::set<uint32_t> flytec;
  for (uint32_t access = 0; access < kAccessTypes; ++access) {
    if (table[kFlytec].procedures[access] != nullptr) flytec.insert(access);
  }
  EXPECT_EQ(flytec, (std::set<uint32_t>{0, 1, 3, 7, 8, 9}));
  EXPECT_NE(table[kFlytec].procedures[kReadTrackLog],
            table[kFlytecAllTracks].procedures[kReadTrackLog]);
}

}  // namespace
}  // namespace skyhaul
