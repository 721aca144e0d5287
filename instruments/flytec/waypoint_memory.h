#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul::flytec_simulator {

inline constexpr size_t kMaxWaypoints = 200;

// One waypoint in the instrument's memory, in the texts that go over the wire.
struct StoredWaypoint {
  std::string position = {};    // "4743.564,N,01121.571,E"
  std::string short_name = {};  // 6 characters, of the instrument's own making
  std::string long_name = {};   // exactly 17 characters, blanks at the end
  int altitude_m = 0;
  uint8_t type = 0;

  friend bool operator==(const StoredWaypoint&, const StoredWaypoint&) = default;
};

// Reads the fields of an upload. Returns false when they are not a waypoint: a position that
// exists, an empty short name, a long name of 17 characters and an altitude of at most 5. The short
// name becomes three characters of the long one and the altitude in tens of metres. Or a position
// and a short name alone, "URT062"; the long name is then empty.
bool ReadUploadedWaypoint(std::string_view fields, StoredWaypoint& waypoint);

// Likewise with a type of three digits, 000 to 255, behind the altitude.
bool ReadExtendedWaypoint(std::string_view fields, StoredWaypoint& waypoint);

// Stores a waypoint; one of the same long name is overwritten. One without a long name moves the
// one of the same short name, or is stored under its short name with the altitude that this says.
// Returns false when there is no room among so many.
bool StoreWaypoint(std::vector<StoredWaypoint>& memory, const StoredWaypoint& waypoint,
                   size_t room);

// The body of a waypoint's line in the waypoint list.
std::string WaypointListBody(const StoredWaypoint& waypoint);

// The same in the extended list, which has the type too.
std::string ExtendedWaypointListBody(const StoredWaypoint& waypoint);

// The n-th of a row of made-up waypoints with different names, all in the Alps.
StoredWaypoint GenerateWaypoint(uint32_t n);

}  // namespace skyhaul::flytec_simulator
