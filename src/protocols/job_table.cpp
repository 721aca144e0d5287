#include "protocols/job_table.h"

#include "protocols/flytec/track_list.h"
#include "protocols/flytec/track_log.h"

namespace skyhaul {

namespace {

constexpr JobTable MakeTable() {
  JobTable table{};
  table[kReadTrackLog][kFlytec] = FlytecTrackLogJob;
  table[kReadFlightList][kFlytec] = FlytecFlightListJob;
  return table;
}

constexpr JobTable kAllJobs = MakeTable();

}  // namespace

const JobTable& AllJobs() {
  return kAllJobs;
}

}  // namespace skyhaul
