#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/flytec/waypoint_memory.h"

namespace skyhaul::flytec_simulator {

inline constexpr size_t kMaxRoutes = 20;       // the competition route included
inline constexpr size_t kMaxRoutePoints = 30;  // of one route

// One route in the instrument's memory. Its waypoints are in the waypoint memory, in which they
// stay as long as a route uses them.
struct StoredRoute {
  std::string name = {};                 // exactly 17 characters, blanks at the end
  bool competition = false;              // listed as number 00; there is one at most
  std::vector<std::string> points = {};  // long names of waypoints

  friend bool operator==(const StoredRoute&, const StoredRoute&) = default;
};

// A route while its lines arrive.
struct RouteUpload {
  int total = 0;
  int next = 0;           // the number that the next line must have
  bool sound = false;     // nothing wrong so far
  bool complete = false;  // the last line has come, and the route can be kept
  StoredRoute route = {};
};

// Takes the fields of one line. Returns false when they are not those of a line. Whatever else is
// wrong (lines out of sequence, a waypoint that is not in the memory, more than kMaxRoutePoints)
// keeps the route from becoming complete; the next line with number 00 begins anew.
bool TakeRouteLine(RouteUpload& upload, std::string_view fields,
                   const std::vector<StoredWaypoint>& waypoints);

// Stores a route; one of the same name, or the competition route by another one, is overwritten.
// Returns false when there is no room.
bool StoreRoute(std::vector<StoredRoute>& memory, const StoredRoute& route);

bool IsInRoute(const std::vector<StoredRoute>& memory, std::string_view long_name);

// The bodies of all lines of the route list: the competition route as 00, the others from 01 on in
// the order in which they came.
std::vector<std::string> RouteListBodies(const std::vector<StoredRoute>& memory,
                                         const std::vector<StoredWaypoint>& waypoints);

}  // namespace skyhaul::flytec_simulator
