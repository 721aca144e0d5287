#include "instruments/manner_options.h"

#include <charconv>

namespace skyhaul {

namespace {

using flytec_simulator::Manners;

constexpr uint32_t kLongest_ms = 3'600'000;
constexpr uint64_t kMillisecond_ns = 1'000'000;

template <bool Manners::*field, bool value>
bool SetSwitch(Choices& choices, const std::string&) {
  choices.manners.*field = value;
  return true;
}

template <uint64_t Manners::*field>
bool SetTime(Choices& choices, const std::string& value) {
  uint32_t time_ms = 0;
  if (!IsNumber(value, kLongest_ms, time_ms)) return false;
  choices.manners.*field = time_ms * kMillisecond_ns;
  return true;
}

// A place in an answer; a negative one counts from its end.
template <int64_t Manners::*field>
bool SetPlace(Choices& choices, const std::string& value) {
  constexpr int64_t kFarthest = 1 << 30;
  int64_t& place = choices.manners.*field;
  const char* end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, place);
  return error == std::errc() && stop == end && place >= -kFarthest && place <= kFarthest;
}

bool SetAnnounced(Choices& choices, const std::string& value) {
  uint32_t number = 0;
  if (!IsNumber(value, flytec_simulator::kMaxFlights, number)) return false;
  choices.manners.announced_flights = number;
  return true;
}

bool SetLines(Choices& choices, const std::string& value) {
  constexpr uint32_t kMost = 1'000'000;
  uint32_t number = 0;
  if (!IsNumber(value, kMost, number)) return false;
  choices.manners.lines = number;
  return true;
}

bool SetRequest(Choices& choices, const std::string& value) {
  choices.manners.request = value;
  return value.starts_with("PBR");
}

bool SetNth(Choices& choices, const std::string& value) {
  constexpr uint32_t kMost = 1'000'000;
  return IsNumber(value, kMost, choices.manners.nth) && choices.manners.nth > 0;
}

constexpr const char* kTime = "milliseconds, up to 3600000";
constexpr const char* kPlace = "a number of bytes, or a negative one to count from the end";

constexpr Option kOptions[] = {
    {"--hear-while-busy", nullptr, SetSwitch<&Manners::deaf_while_busy, false>},
    {"--keep-sending", nullptr, SetSwitch<&Manners::keep_sending, true>},
    {"--announce", "a number from 0 to 99", SetAnnounced},
    {"--only", "the beginning of a request, as PBRTL or PBRTR,01", SetRequest},
    {"--nth", "a number from 1 on", SetNth},
    {"--silent", nullptr, SetSwitch<&Manners::silent, true>},
    {"--late", kTime, SetTime<&Manners::late_ns>},
    {"--lose-xon", nullptr, SetSwitch<&Manners::lose_xon, true>},
    {"--lines", "a number", SetLines},
    {"--stall-at", kPlace, SetPlace<&Manners::stall_at>},
    {"--stall-for", kTime, SetTime<&Manners::stall_ns>},
    {"--cut-at", kPlace, SetPlace<&Manners::cut_at>},
};

constexpr std::string_view kHelp =
    "\n"
    "Manners:\n"
    "  --hear-while-busy\n"
    "                    take what is sent between XOFF and XON; without this it is dropped, as\n"
    "                    by a real instrument\n"
    "  --keep-sending    go on with an answer when the port was closed; who opens it next gets\n"
    "                    the rest\n"
    "  --announce N      say in the flight list that there are N flights\n"
    "  --silent          do not answer\n"
    "  --late MS         notice each request so much later\n"
    "  --lose-xon        send XOFF before an answer and no XON after it\n"
    "  --lines N         send only N lines of the flight list\n"
    "  --stall-at N      send N bytes of a flight, then nothing any more; a negative N counts\n"
    "                    from the flight's end\n"
    "  --stall-for MS    go on after that time\n"
    "  --cut-at N        send N bytes of a flight, then XON\n"
    "  --only REQUEST    the manners from --silent on are for answers to requests that begin so\n"
    "                    alone, as PBRSNP or PBRTR,01; lines and bytes are those of the answer\n"
    "  --nth N           ... and for the N-th of them alone\n";

}  // namespace

std::span<const Option> MannerOptions() {
  return kOptions;
}

std::string_view MannersHelp() {
  return kHelp;
}

}  // namespace skyhaul
