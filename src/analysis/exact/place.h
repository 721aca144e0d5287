#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace skyhaul {

// A position in metres from the centre of the earth (WGS-84, height 0), or a difference of two.
struct Place {
  double x_m = 0;
  double y_m = 0;
  double z_m = 0;
};

inline double Dot(const Place& a, const Place& b) {
  return a.x_m * b.x_m + a.y_m * b.y_m + a.z_m * b.z_m;
}

inline Place Cross(const Place& a, const Place& b) {
  return {a.y_m * b.z_m - a.z_m * b.y_m, a.z_m * b.x_m - a.x_m * b.z_m,
          a.x_m * b.y_m - a.y_m * b.x_m};
}

// a + factor * b
inline Place Sum(const Place& a, double factor, const Place& b) {
  return {a.x_m + factor * b.x_m, a.y_m + factor * b.y_m, a.z_m + factor * b.z_m};
}

inline Place Difference(const Place& a, const Place& b) {
  return Sum(a, -1, b);
}

// Of length 1; a must not be zero.
inline Place Unit(const Place& a) {
  return Sum({}, 1 / std::sqrt(Dot(a, a)), a);
}

inline double Chord_m(const Place& a, const Place& b) {
  const Place difference = Difference(a, b);
  return std::sqrt(Dot(difference, difference));
}

// The least and the greatest of some values.
struct Extent {
  double least = std::numeric_limits<double>::max();
  double most = std::numeric_limits<double>::lowest();
};

inline void Include(Extent& extent, double value) {
  extent.least = std::min(extent.least, value);
  extent.most = std::max(extent.most, value);
}

inline double Middle(const Extent& extent) {
  return (extent.least + extent.most) / 2;
}

inline double Half(const Extent& extent) {
  return (extent.most - extent.least) / 2;
}

}  // namespace skyhaul
