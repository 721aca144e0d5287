#include "protocols/families.h"

#include <gtest/gtest.h>

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
  EXPECT_TRUE(table[kFlytec].xon_xoff && !table[kGarminUsb].xon_xoff);
  EXPECT_TRUE(table[kGarminUsb].on_usb && !table[kFlytec].on_usb);
  EXPECT_NE(table[kFlytec].procedures[kReadTrackLog],
            table[kFlytecAllTracks].procedures[kReadTrackLog]);
}

}  // namespace
}  // namespace skyhaul
