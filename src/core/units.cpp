#include "core/units.h"

#include <algorithm>
#include <limits>

namespace skyhaul {

namespace {

constexpr double kMilliminutesPerSemicircle = 0.005029141902924;  // 10,800,000 / 2^31
constexpr double kSemicirclesPerMilliminute = 198.8410785185;

// 180 degrees east is one more than the type holds.
int32_t ClampToSemicircles(double value) {
  constexpr double kMin = std::numeric_limits<int32_t>::min();
  constexpr double kMax = std::numeric_limits<int32_t>::max();
  return RoundHalfAwayFromZero(std::clamp(value, kMin, kMax));
}

}  // namespace

int32_t RoundHalfAwayFromZero(double value) {
  // The cast cuts towards zero, so half of one away from zero makes it round.
  return static_cast<int32_t>(value < 0 ? value - 0.5 : value + 0.5);
}

double SemicirclesToRadians(int32_t semicircles) {
  return semicircles * kRadiansPerSemicircle;
}

double SemicirclesToDegrees(int32_t semicircles) {
  return semicircles * kDegreesPerSemicircle;
}

int32_t DegreesToSemicircles(double degrees) {
  return ClampToSemicircles(degrees / kDegreesPerSemicircle);
}

int32_t RadiansToSemicircles(double radians) {
  return ClampToSemicircles(radians / kRadiansPerSemicircle);
}

// 10,800,000 thousandths of a minute are 180 degrees.
int32_t SemicirclesToMilliminutes(int32_t semicircles) {
  return RoundHalfAwayFromZero(semicircles * kMilliminutesPerSemicircle);
}

int32_t MilliminutesToSemicircles(int32_t milliminutes) {
  return ClampToSemicircles(milliminutes * kSemicirclesPerMilliminute);
}

int32_t DecimetresToMetres(int32_t decimetres) {
  // Integer division cuts towards zero: halves go up above zero, and files of all formats agree.
  return (decimetres + 5) / 10;
}

}  // namespace skyhaul
