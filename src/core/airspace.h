#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace skyhaul {

// What an altitude limit is measured from, and in.
enum class LimitReference {
  kNotGiven,
  kGround,       // above ground level
  kSea,          // above mean sea level
  kFlightLevel,  // hundreds of feet in the standard atmosphere
  kSurface,      // the ground itself
  kUnlimited,
};
enum class LimitUnit { kFeet, kMetres };

// The floor or ceiling of an airspace.
struct AirspaceLimit {
  LimitReference reference = LimitReference::kNotGiven;
  LimitUnit unit = LimitUnit::kFeet;  // of kGround and kSea
  double value = 0;                   // in the unit, or a flight level's number
  std::string text;                   // as the file wrote it; empty when it came from no file

  friend bool operator==(const AirspaceLimit&, const AirspaceLimit&) = default;
};

// The kinds of segments, in the numbers that instruments and traces know.
enum class SegmentType : uint32_t {
  kPoint = 0,
  kArcByPoints = 1,
  kArcByBearings = 2,
  kCircle = 3,
};

inline constexpr char kClockwise = '+';
inline constexpr char kCounterClockwise = '-';

struct AirspacePosition {
  int32_t lat = 0;  // semicircles, north positive; see core/units.h
  int32_t lon = 0;  // semicircles, east positive

  friend bool operator==(const AirspacePosition&, const AirspacePosition&) = default;
};

// One piece of an outline. Which fields count depends on the type.
struct AirspaceSegment {
  SegmentType type = SegmentType::kPoint;
  AirspacePosition point;        // kPoint: itself; all others: the centre
  AirspacePosition start;        // kArcByPoints
  AirspacePosition end;          // kArcByPoints
  double radius_m = 0;           // kArcByBearings, kCircle
  double start_bearing_deg = 0;  // kArcByBearings, from true north
  double end_bearing_deg = 0;    // kArcByBearings
  char direction = kClockwise;   // both kinds of arc

  friend bool operator==(const AirspaceSegment&, const AirspaceSegment&) = default;
};

// An airspace, which instruments call a CTR.
struct CtrRecord {
  std::string name;    // up to 50 characters go to an instrument's record, 17 over the wire
  std::string remark;  // likewise
  // How far before it an instrument warns, 0..9999; empty: not given, so its default holds.
  std::optional<uint32_t> warning_m;
  std::string airspace_class;  // as the file writes it: "A", "R", "CTR", ...
  AirspaceLimit floor;
  AirspaceLimit ceiling;
  bool selected = true;  // for upload
  // Why the outline is not what the file meant, as "Line 12: position not understood: DP 47:99 N".
  // Empty: it is sound. A damaged airspace is shown, but neither sent nor written.
  std::string damage;
  // What newer files say beside, as they write it, a line each where they repeat a record.
  std::string type;         // AY: "TMA", "R", "RMZ", ...; then the class is A to G or UNC
  std::string frequency;    // AF, in MHz
  std::string station;      // AG: the station's call name
  std::string id;           // AI
  std::string transponder;  // AX
  std::string activation;   // AA: intervals in UTC, or NONE
  std::vector<AirspaceSegment> segments;
};

}  // namespace skyhaul
