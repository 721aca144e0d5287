#include "analysis/airspace_outline.h"
#include "core/geodesy/geodesic.h"
#include "core/units.h"
#include "instruments/flytec/flytec_simulator.h"
#include "protocols/flytec/ctr_list.h"
#include "protocols/flytec/ctr_upload.h"
#include "tests/protocols/flytec/flytec_bench.h"
#include "tests/support/airspace_place.h"

namespace skyhaul::flytec {
namespace {

double Distance_m(const AirspacePosition& from, const AirspacePosition& to) {
  return GeodesicDistance_m(SemicirclesToRadians(from.lat), SemicirclesToRadians(from.lon),
                            SemicirclesToRadians(to.lat), SemicirclesToRadians(to.lon));
}

// Positions of whole thousandths of a minute, so that the wire's resolution moves nothing but the
// ends of the arc by bearings.
const std::vector<CtrRecord> kAirspaces = {
    {.name = "Outline",
     .segments = {{.point = At(47 + 10.0 / 60, 11)},
                  {.type = SegmentType::kArcByPoints,
                   .point = At(47 + 20.0 / 60, 11),
                   .start = At(47 + 25.0 / 60, 11),
                   .end = At(47 + 20.0 / 60, 11 + 7.376 / 60)},
                  {.point = At(47 + 10.0 / 60, 11 + 10.0 / 60)}}},
    {.name = "Circle",
     .segments = {{.type = SegmentType::kCircle, .point = At(-60, -30), .radius_m = 46300}}},
    {.name = "Bearings",
     .segments = {{.type = SegmentType::kArcByBearings,
                   .point = At(60, 30),
                   .radius_m = 50004,
                   .start_bearing_deg = 330,
                   .end_bearing_deg = 45,
                   .direction = kCounterClockwise},
                  {.point = At(60, 30)}}},
};

TEST(CtrRoundTrip, TheOutlineStaysWhereItIs) {
  flytec_simulator::Simulator simulator;
  JobBench up;
  up.Connect(flytec_simulator::MakeInstrument(simulator, 0));
  up.job.data.airspaces = kAirspaces;
  ASSERT_EQ(WriteCtrJob(up.job), 3);
  JobBench down;
  down.Connect(flytec_simulator::MakeInstrument(simulator, 0));
  ASSERT_EQ(ReadCtrJob(down.job), 3);

  const double tolerances_m[] = {1, 1, 1.2};  // half a thousandth of a minute both ways
  for (size_t i = 0; i < kAirspaces.size(); ++i) {
    const CtrRecord& back = down.job.data.airspaces[i];
    EXPECT_EQ(back.name, kAirspaces[i].name);
    const std::vector<AirspacePosition> wanted = OutlinePoints(kAirspaces[i], 5);
    const std::vector<AirspacePosition> found = OutlinePoints(back, 5);
    ASSERT_EQ(found.size(), wanted.size()) << back.name;
    for (size_t n = 0; n < wanted.size(); ++n) {
      EXPECT_LE(Distance_m(wanted[n], found[n]), tolerances_m[i]) << back.name << " " << n;
    }
  }
}

}  // namespace
}  // namespace skyhaul::flytec
