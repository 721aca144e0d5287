#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul::flytec_simulator {

inline constexpr size_t kMaxAirspaces = 500;
inline constexpr size_t kMaxElements = 100;  // of one airspace
inline constexpr size_t kAirspaceHead = 3;   // what name and remark take, counted in elements

// What the instrument says when an airspace has arrived.
inline constexpr char kAirspaceTaken = '1';
inline constexpr char kAirspaceImplausible = '2';
inline constexpr char kAirspaceNoMemory = '3';
inline constexpr char kAirspaceProtected = '4';
inline constexpr char kAirspaceSyntax = '5';

// One airspace in the instrument's memory, in the texts that go over the wire.
struct StoredAirspace {
  std::string name = {};                   // exactly 17 characters, blanks at the end
  std::string number = {};                 // four digits
  std::string remark = {};                 // as the name
  std::vector<std::string> elements = {};  // "P,4710.001,N,01104.700,E" and the like

  friend bool operator==(const StoredAirspace&, const StoredAirspace&) = default;
};

// An airspace while its lines arrive.
struct AirspaceUpload {
  int total = 0;
  int next = 0;    // the number that the next line must have
  char fault = 0;  // the first thing wrong with it, an answer above; 0: nothing so far
  StoredAirspace airspace = {};
};

enum class UploadLine { kNotOne, kMore, kLast };

// Takes the fields of one line. kNotOne says that they do not begin with a total and a number;
// kLast that the line was the last of its airspace, by its own account. Whatever is wrong is kept
// in the fault: lines out of sequence, fields that cannot be read, places that do not exist,
// circles without a radius, arcs whose three lines do not follow each other, more than
// kMaxElements.
UploadLine TakeUploadLine(AirspaceUpload& upload, std::string_view fields);

// Stores an airspace; one of the same name is overwritten. Returns false when there is no room
// among so many, or for so many elements of all airspaces together, kAirspaceHead for each
// included.
bool StoreAirspace(std::vector<StoredAirspace>& memory, const StoredAirspace& airspace, size_t room,
                   size_t element_room = SIZE_MAX);

// The body of the line that says how many airspaces there are, how many there can be, and how many
// elements are free; three digits each, so that 999 means as many or more.
std::string AirspaceRoomBody(const std::vector<StoredAirspace>& memory, size_t room,
                             size_t element_room);

// The bodies of all lines of the airspace list, the closing one included.
std::vector<std::string> AirspaceListBodies(const std::vector<StoredAirspace>& memory);

}  // namespace skyhaul::flytec_simulator
