#include "app/command_line/score_options.h"

#include <charconv>
#include <system_error>

#include "settings/run_defaults.h"

namespace skyhaul {

int ReadGap(const std::string& text, OptimiseSettings& settings, std::string& message) {
  int32_t gap_m = 0;
  const char* end = text.data() + text.size();
  // "800"; from_chars() would stop at the unit of "800m", so the end counts as well.
  const auto [stop, error] = std::from_chars(text.data(), end, gap_m);
  if (error != std::errc() || stop != end || gap_m < 0 || gap_m > kMostGap_m) {
    message = "Bad gap \"" + text + "\": whole metres, 0 to 1000000";
    return -1;
  }
  settings.gap_m = gap_m;
  return 0;
}

int ReadFaiRule(const std::string& text, OptimiseSettings& settings, std::string& message) {
  if (text != "on" && text != "off") {
    message = "Bad FAI rule \"" + text + "\": on or off";
    return -1;
  }
  settings.fai_rule = text == "on";
  return 0;
}

}  // namespace skyhaul
