#include "commands/sound_airspaces.h"

#include <string>

namespace skyhaul {

std::vector<CtrRecord> SoundAirspaces(const Operation& operation,
                                      const std::vector<CtrRecord>& airspaces, const char* title) {
  std::vector<CtrRecord> sound;
  sound.reserve(airspaces.size());
  for (const CtrRecord& airspace : airspaces) {
    if (airspace.damage.empty()) {
      sound.push_back(airspace);
    } else {
      const std::string name = airspace.name.empty() ? "without a name" : airspace.name;
      ShowMessage(operation, "Airspace " + name + " is damaged and left out\n" + airspace.damage,
                  title);
    }
  }
  return sound;
}

}  // namespace skyhaul
