#include "analysis/airspace_outline.h"

#include <gtest/gtest.h>

#include "core/units.h"
#include "tests/core/geodesy/exact_geodesic.h"
#include "tests/support/airspace_place.h"

namespace skyhaul {
namespace {

AirspacePosition Exact(AirspacePosition centre, double bearing_deg, double distance_m) {
  const auto [lat, lon] = ExactDirect(SemicirclesToDegrees(centre.lat),
                                      SemicirclesToDegrees(centre.lon), bearing_deg, distance_m);
  return At(lat, lon);
}

void ExpectSamePlaces(const std::vector<AirspacePosition>& left,
                      const std::vector<AirspacePosition>& right, double tolerance_m) {
  ASSERT_EQ(left.size(), right.size());
  for (size_t i = 0; i < left.size(); ++i) {
    EXPECT_LT(ExactApart_m(left[i], right[i]), tolerance_m) << "point " << i;
  }
}

// Half a semicircle in each direction.
constexpr double kRounding_m = 0.02;

TEST(AirspaceOutline, ArcsTurnInTheirDirection) {
  const AirspacePosition centre = At(60, 10);
  const struct {
    double start_deg, end_deg;
    char direction;
    double step_deg;
    std::vector<double> bearings_deg;
  } cases[] = {
      {350, 20, kClockwise, 20, {350, 365, 380}},
      {100, 10, kCounterClockwise, 30, {100, 70, 40, 10}},
      {0, 90.1, kClockwise, 30, {0, 90.1 / 3, 180.2 / 3, 90.1}},  // more than three steps by little
      {90, 90, kCounterClockwise, 30, {90, 60, 30, 0, 330, 300, 270, 240, 210, 180, 150, 120, 90}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.start_deg << c.direction << c.end_deg);
    std::vector<AirspacePosition> expected;
    for (const double bearing_deg : c.bearings_deg) {
      expected.push_back(Exact(centre, bearing_deg, 50000));
    }
    const AirspaceSegment arc = {.type = SegmentType::kArcByBearings,
                                 .point = centre,
                                 .radius_m = 50000,
                                 .start_bearing_deg = c.start_deg,
                                 .end_bearing_deg = c.end_deg,
                                 .direction = c.direction};
    ExpectSamePlaces(OutlinePoints({.segments = {arc}}, c.step_deg), expected, kRounding_m);
    const AirspaceSegment by_points = {.type = SegmentType::kArcByPoints,
                                       .point = centre,
                                       .start = expected.front(),
                                       .end = expected.back(),
                                       .direction = c.direction};
    ExpectSamePlaces(OutlinePoints({.segments = {by_points}}, c.step_deg), expected,
                     kRounding_m * 2);
  }
}

TEST(AirspaceOutline, RadiusOfAnArcByPointsChangesEvenly) {
  const AirspacePosition centre = At(60, 10);
  const AirspaceSegment arc = {.type = SegmentType::kArcByPoints,
                               .point = centre,
                               .start = Exact(centre, 0, 10000),
                               .end = Exact(centre, 90, 13000)};
  ExpectSamePlaces(OutlinePoints({.segments = {arc}}, 30),
                   {arc.start, Exact(centre, 30, 11000), Exact(centre, 60, 12000), arc.end},
                   kRounding_m * 2);
}

TEST(AirspaceOutline, PointsAndCirclesInTheirOrder) {
  const AirspacePosition centre = At(-33.5, 179.99);
  const AirspaceSegment circle = {.type = SegmentType::kCircle, .point = centre, .radius_m = 5000};
  const CtrRecord airspace = {.segments = {{.point = At(1, 2)}, circle, {.point = At(3, 4)}}};
  ExpectSamePlaces(OutlinePoints(airspace, 90),
                   {At(1, 2), Exact(centre, 0, 5000), Exact(centre, 90, 5000),
                    Exact(centre, 180, 5000), Exact(centre, 270, 5000), At(3, 4)},
                   kRounding_m);
}

TEST(AirspaceOutline, StepsAndCentresOutOfReason) {
  const CtrRecord circle = {
      .segments = {{.type = SegmentType::kCircle, .point = At(0, 0), .radius_m = 1}}};
  EXPECT_EQ(OutlinePoints(circle, 1000).size(), 4U);
  EXPECT_EQ(OutlinePoints(circle, 0).size(), 36000U);
  const CtrRecord antipode = {.segments = {{.type = SegmentType::kArcByPoints,
                                            .point = At(0, 0),
                                            .start = At(0, 179.9),
                                            .end = At(1, 1)}}};
  const std::vector<AirspacePosition> ends = {At(0, 179.9), At(1, 1)};
  EXPECT_EQ(OutlinePoints(antipode, 1), ends);
}

}  // namespace
}  // namespace skyhaul
