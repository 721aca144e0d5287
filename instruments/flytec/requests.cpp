#include "instruments/flytec/requests.h"

#include <algorithm>

#include "instruments/flytec/flytec_simulator.h"
#include "instruments/flytec/instrument_text.h"

namespace skyhaul::flytec_simulator {

namespace {

// What stands for every waypoint, route or airspace where one is to be deleted: "$PBRWPX,,".
constexpr std::string_view kAll = ",";
constexpr size_t kNameWidth = 17;

// --- The instrument itself -----------------------------------------------------------------------

bool AnswerProductData(Simulator& simulator, std::string_view, Answer& answer) {
  std::string pilot = simulator.pilot_name;
  pilot.resize(kPilotWidth, ' ');
  answer.push_back(InstrumentSentence("PBRSNP," + simulator.device_name + "," + pilot + "," +
                                      simulator.serial + "," + simulator.software));
  return true;
}

// The memory is made when it is first asked for: until then the record's fields are what counts.
Eeprom& MemoryOf(Simulator& simulator) {
  if (simulator.eeprom.empty()) {
    simulator.eeprom = MakeEeprom(simulator.pilot_name, simulator.settings);
  }
  return simulator.eeprom;
}

bool AnswerMemory(Simulator& simulator, std::string_view field, Answer& answer) {
  const std::string body = EepromBody(MemoryOf(simulator), field);
  if (!body.empty()) answer.push_back(InstrumentSentence(body));
  return !body.empty();
}

bool TakeMemory(Simulator& simulator, std::string_view fields, Answer& answer) {
  if (simulator.refusal == Refusal::kSilent) return false;
  Eeprom changed = MemoryOf(simulator);
  if (!WriteEeprom(changed, fields)) return false;
  // Whoever compares what comes back sees that nothing was written.
  if (simulator.refusal == Refusal::kNone) simulator.eeprom = changed;
  return AnswerMemory(simulator, CutFields(fields)[0], answer);
}

bool ReloadSettings(Simulator& simulator, std::string_view, Answer& answer) {
  LoadEeprom(MemoryOf(simulator), simulator.pilot_name, simulator.settings);
  return AnswerProductData(simulator, "", answer);
}

// --- Flights -------------------------------------------------------------------------------------

// Both lists of flights, and below both of waypoints, differ in their lines only.
template <std::string (*body)(size_t total, size_t index, const StoredFlight& flight)>
bool ListFlights(Simulator& simulator, std::string_view, Answer& answer) {
  const std::vector<StoredFlight>& flights = simulator.flights;
  const size_t total = simulator.manners.announced_flights.value_or(flights.size());
  for (size_t i = 0; i < flights.size(); ++i) {
    answer.push_back(InstrumentSentence(body(total, i, flights[i])));
  }
  return true;
}

bool AnswerWithFlight(Simulator& simulator, size_t index, Answer& answer) {
  if (index >= simulator.flights.size()) return false;
  answer.push_back(simulator.flights[index].igc_text);
  return true;
}

bool AnswerListedFlight(Simulator& simulator, std::string_view index, Answer& answer) {
  const int number = WholeNumber(index, 2);
  return number >= 0 && AnswerWithFlight(simulator, static_cast<size_t>(number), answer);
}

bool AnswerSelectedFlight(Simulator& simulator, std::string_view, Answer& answer) {
  return AnswerWithFlight(simulator, simulator.selected_flight, answer);
}

// --- Waypoints -----------------------------------------------------------------------------------

template <std::string (*body)(const StoredWaypoint& waypoint)>
bool ListWaypoints(Simulator& simulator, std::string_view, Answer& answer) {
  for (const StoredWaypoint& waypoint : simulator.waypoints) {
    answer.push_back(InstrumentSentence(body(waypoint)));
  }
  return true;
}

// A waypoint that is refused looks like one that was taken: the upload has no answer that could
// tell.
template <bool (*read)(std::string_view fields, StoredWaypoint& waypoint)>
bool TakeWaypoint(Simulator& simulator, std::string_view fields, Answer&) {
  StoredWaypoint waypoint;
  if (simulator.refusal == Refusal::kSilent) return false;
  if (!read(fields, waypoint)) return false;
  if (simulator.refusal != Refusal::kNone) return true;
  (void)StoreWaypoint(simulator.waypoints, waypoint, simulator.waypoint_room);
  return true;
}

bool DeleteWaypoints(Simulator& simulator, std::string_view name, Answer& answer) {
  const bool all = name == kAll;
  if (!all && name.size() != kNameWidth) return false;
  std::erase_if(simulator.waypoints, [&](const StoredWaypoint& waypoint) {
    return (all || waypoint.long_name == name) && !IsInRoute(simulator.routes, waypoint.long_name);
  });
  return !all || AnswerProductData(simulator, "", answer);
}

// --- Routes --------------------------------------------------------------------------------------

bool AnswerRouteList(Simulator& simulator, std::string_view, Answer& answer) {
  for (const std::string& body : RouteListBodies(simulator.routes, simulator.waypoints)) {
    answer.push_back(InstrumentSentence(body));
  }
  return true;
}

// As with waypoints, no answer tells whether a route was kept.
bool TakeRoute(Simulator& simulator, std::string_view fields, Answer&) {
  if (simulator.refusal == Refusal::kSilent) return false;
  RouteUpload& upload = simulator.route_upload;
  if (!TakeRouteLine(upload, fields, simulator.waypoints)) return false;
  if (!upload.complete) return true;
  if (simulator.refusal == Refusal::kNone) (void)StoreRoute(simulator.routes, upload.route);
  upload = {};
  return true;
}

bool DeleteRoutes(Simulator& simulator, std::string_view name, Answer& answer) {
  const bool all = name == kAll;
  if (!all && name.size() != kNameWidth) return false;
  std::erase_if(simulator.routes,
                [&](const StoredRoute& route) { return all || route.name == name; });
  return !all || AnswerProductData(simulator, "", answer);
}

// --- Airspaces -----------------------------------------------------------------------------------

std::string Acknowledgement(char code) {
  return InstrumentSentence(std::string("PBRANS,") + code);
}

bool AnswerAirspaceList(Simulator& simulator, std::string_view, Answer& answer) {
  for (const std::string& body : AirspaceListBodies(simulator.airspaces)) {
    answer.push_back(InstrumentSentence(body));
  }
  return true;
}

bool AnswerAirspaceRoom(Simulator& simulator, std::string_view, Answer& answer) {
  answer.push_back(InstrumentSentence(AirspaceRoomBody(simulator.airspaces, simulator.airspace_room,
                                                       simulator.airspace_element_room)));
  return true;
}

char JudgeAirspace(Simulator& simulator) {
  switch (simulator.refusal) {
    case Refusal::kPlausibility:
      return kAirspaceImplausible;
    case Refusal::kMemory:
      return kAirspaceNoMemory;
    case Refusal::kProtected:
      return kAirspaceProtected;
    case Refusal::kSyntax:
      return kAirspaceSyntax;
    case Refusal::kSilent:
    case Refusal::kNone:
      break;
  }
  const AirspaceUpload& upload = simulator.upload;
  if (upload.fault != 0) return upload.fault;
  const bool stored = StoreAirspace(simulator.airspaces, upload.airspace, simulator.airspace_room,
                                    simulator.airspace_element_room);
  return stored ? kAirspaceTaken : kAirspaceNoMemory;
}

bool TakeAirspaceLine(Simulator& simulator, std::string_view fields, Answer& answer) {
  if (simulator.refusal == Refusal::kSilent) return false;
  const UploadLine line = TakeUploadLine(simulator.upload, fields);
  if (line != UploadLine::kLast) return line == UploadLine::kMore;
  answer.push_back(Acknowledgement(JudgeAirspace(simulator)));
  simulator.upload = {};
  return true;
}

bool DeleteAirspaces(Simulator& simulator, std::string_view name, Answer& answer) {
  if (name == kAll) {
    simulator.airspaces.clear();
    return AnswerProductData(simulator, "", answer);
  }
  const size_t deleted = std::erase_if(
      simulator.airspaces, [&](const StoredAirspace& airspace) { return airspace.name == name; });
  const char missing = name.size() == kNameWidth ? kAirspaceImplausible : kAirspaceSyntax;
  answer.push_back(Acknowledgement(deleted > 0 ? kAirspaceTaken : missing));
  return true;
}

// --- All of them ---------------------------------------------------------------------------------

// What the instrument understands. An answer function gets what follows the start and returns false
// when there is nothing to answer.
struct Request {
  std::string_view start;
  bool has_field;
  bool (*answer)(Simulator& simulator, std::string_view field, Answer& answer);
};

constexpr Request kRequests[] = {
    {.start = "PBRSNP,", .has_field = false, .answer = AnswerProductData},
    {.start = "PBRMEMR,", .has_field = true, .answer = AnswerMemory},
    {.start = "PBRMEMW,", .has_field = true, .answer = TakeMemory},
    {.start = "PBRCONF,", .has_field = false, .answer = ReloadSettings},
    {.start = "PBRTL,", .has_field = false, .answer = ListFlights<FlightListBody>},
    {.start = "PBRTLE,", .has_field = false, .answer = ListFlights<ExtendedFlightListBody>},
    {.start = "PBRTR,", .has_field = true, .answer = AnswerListedFlight},
    {.start = "PBRIGC,", .has_field = false, .answer = AnswerSelectedFlight},
    {.start = "PBRWPS,", .has_field = false, .answer = ListWaypoints<WaypointListBody>},
    {.start = "PBRWPSE,", .has_field = false, .answer = ListWaypoints<ExtendedWaypointListBody>},
    {.start = "PBRWPR,", .has_field = true, .answer = TakeWaypoint<ReadUploadedWaypoint>},
    {.start = "PBRWPRE,", .has_field = true, .answer = TakeWaypoint<ReadExtendedWaypoint>},
    {.start = "PBRWPX,", .has_field = true, .answer = DeleteWaypoints},
    {.start = "PBRRTS,", .has_field = false, .answer = AnswerRouteList},
    {.start = "PBRRTR,", .has_field = true, .answer = TakeRoute},
    {.start = "PBRRTX,", .has_field = true, .answer = DeleteRoutes},
    {.start = "PBRCTR,", .has_field = false, .answer = AnswerAirspaceList},
    {.start = "PBRCTRW,", .has_field = true, .answer = TakeAirspaceLine},
    {.start = "PBRCTRD,", .has_field = true, .answer = DeleteAirspaces},
    // The only one without a comma.
    {.start = "PBRCTRI", .has_field = false, .answer = AnswerAirspaceRoom},
};

}  // namespace

bool AnswerTo(Simulator& simulator, std::string_view body, Answer& answer) {
  for (const Request& request : kRequests) {
    if (!body.starts_with(request.start)) continue;
    const std::string_view field = body.substr(request.start.size());
    return field.empty() != request.has_field && request.answer(simulator, field, answer);
  }
  return false;
}

}  // namespace skyhaul::flytec_simulator
