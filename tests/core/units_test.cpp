#include "core/units.h"

#include <gtest/gtest.h>

#include <cmath>

namespace skyhaul {
namespace {

TEST(Units, RoundsHalfAwayFromZero) {
  const std::pair<double, int32_t> cases[] = {{0, 0},     {0.49, 0}, {0.5, 1},  {-0.49, 0},
                                              {-0.5, -1}, {2.5, 3},  {-2.5, -3}};
  for (const auto& [value, rounded] : cases)
    EXPECT_EQ(RoundHalfAwayFromZero(value), rounded) << value;
}

TEST(Units, DecimetresToMetresRoundsLikeEveryWriter) {
  const std::pair<int32_t, int32_t> cases[] = {{0, 0},    {4, 0},    {5, 1},       {14, 1},
                                               {15, 2},   {-5, 0},   {-6, 0},      {-14, 0},
                                               {-15, -1}, {-25, -2}, {12345, 1235}};
  for (const auto& [dm, m] : cases) EXPECT_EQ(DecimetresToMetres(dm), m) << dm;
}

TEST(Units, EveryThousandthOfAMinuteComesBack) {
  for (int32_t milliminutes = -10'800'000; milliminutes <= 10'800'000; milliminutes += 7) {
    const int32_t semicircles = MilliminutesToSemicircles(milliminutes);
    ASSERT_EQ(SemicirclesToMilliminutes(semicircles), milliminutes);
    ASSERT_NEAR(semicircles, milliminutes * (2147483648.0 / 10'800'000), 0.51);
  }
}

TEST(Units, RadiansComeBackAndAreClamped) {
  for (const int32_t semicircles : {0, 1, -1, 1073741824, -1073741824, 2147483647, -2147483647}) {
    EXPECT_EQ(RadiansToSemicircles(SemicirclesToRadians(semicircles)), semicircles);
  }
  EXPECT_EQ(RadiansToSemicircles(kPi), 2147483647);
  EXPECT_EQ(RadiansToSemicircles(-4), INT32_MIN);
  EXPECT_NEAR(SemicirclesToDegrees(1073741824), 90, 1e-9);
}

}  // namespace
}  // namespace skyhaul
