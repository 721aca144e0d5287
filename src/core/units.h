#pragma once

#include <cstdint>

namespace skyhaul {

// Coordinates are 32-bit semicircles: 2^31 semicircles are 180 degrees, so one is about 9 mm of
// latitude.
inline constexpr double kPi = 3.14159265358979323846;
inline constexpr double kDegreesPerRadian = 180 / kPi;
inline constexpr double kRadiansPerSemicircle = kPi / 2147483648;
inline constexpr double kDegreesPerSemicircle = 180.0 / 2147483648;  // exact: a power of 2 divides

inline constexpr double kMetresPerFoot = 0.3048;

// Rounds to the nearest integer, halves away from zero (-0.5 gives -1). The value must fit.
int32_t RoundHalfAwayFromZero(double value);

double SemicirclesToRadians(int32_t semicircles);

// Exactly, because 180 times any semicircles fits into a double.
double SemicirclesToDegrees(int32_t semicircles);

// Degrees to the nearest semicircle, halves away from zero. Values outside the type's range are
// clamped: 180 degrees become the largest number there is, 9 mm before it. Not for a NaN.
int32_t DegreesToSemicircles(double degrees);

// Radians within -pi..pi to the nearest semicircle. Values outside, pi itself among them, are
// clamped to the range of the type.
int32_t RadiansToSemicircles(double radians);

// Semicircles to thousandths of a minute of arc and back, halves away from zero. A thousandth of a
// minute is the resolution of an IGC position: 1.85 m of latitude, 198.84 semicircles, so a value
// that came from thousandths returns to the same thousandths.
int32_t SemicirclesToMilliminutes(int32_t semicircles);
int32_t MilliminutesToSemicircles(int32_t milliminutes);

// Tenths of a metre to metres the way all writers do it: (value + 5) / 10 in integers, so halves
// round up above zero and -14..-6 give 0: below -5 dm the result is too high by up to one metre.
int32_t DecimetresToMetres(int32_t decimetres);

}  // namespace skyhaul
