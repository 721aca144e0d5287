#include "protocols/families.h"

#include <gtest/gtest.h>

#include <set>

namespace skyhaul {
namespace {

// What a job needs of the table: which conversation, over which kind of port.
TEST(Families, NamesLeadToTheirConversations) {
  EXPECT_EQ(ProtocolOf(GpsType::kGarmin, false), kGarminSerial);
  EXPECT_EQ(ProtocolOf(GpsType::kGarmin, true), kGarminUsb);
  EXPECT_EQ(ProtocolOf(GpsType::kIqCompeo, true), kFlytec);
}

TEST(Families, JobsHaveTheProceduresAndPortsOfTheirRows) {
  const JobTable table = AllJobs();
  ASSERT_EQ(table.size(), Families().size());
  EXPECT_TRUE(table[kGarminUsb].on_usb && !table[kFlytec].on_usb);
  std::set<uint32_t> with_flow_control;
  for (uint32_t protocol = 0; protocol < table.size(); ++protocol) {
    if (table[protocol].xon_xoff) with_flow_control.insert(protocol);
  }
  EXPECT_EQ(with_flow_control, (std::set<uint32_t>{4, 7, 10, 11}));
  EXPECT_NE(table[kFlytec].procedures[kReadTrackLog],
            table[kFlytecAllTracks].procedures[kReadTrackLog]);
}

}  // namespace
}  // namespace skyhaul
