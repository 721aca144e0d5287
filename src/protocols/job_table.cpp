#include "protocols/job_table.h"

#include "protocols/flytec/ctr_list.h"
#include "protocols/flytec/ctr_upload.h"
#include "protocols/flytec/track_list.h"
#include "protocols/flytec/track_log.h"
#include "protocols/flytec/waypoint_list.h"
#include "protocols/flytec/waypoint_upload.h"

namespace skyhaul {

namespace {

constexpr JobTable MakeTable() {
  JobTable table{};
  table[kReadWaypoints][kFlytec] = FlytecReadWaypointsJob;
  table[kReadTrackLog][kFlytec] = FlytecTrackLogJob;
  table[kReadTrackLog][kFlytecAllTracks] = FlytecAllTracksJob;
  table[kWriteWaypoints][kFlytec] = FlytecWriteWaypointsJob;
  table[kUploadCtr][kFlytec] = FlytecWriteCtrJob;
  table[kReadCtrList][kFlytec] = FlytecReadCtrJob;
  table[kReadFlightList][kFlytec] = FlytecFlightListJob;
  return table;
}

constexpr JobTable kAllJobs = MakeTable();

}  // namespace

const JobTable& AllJobs() {
  return kAllJobs;
}

}  // namespace skyhaul
