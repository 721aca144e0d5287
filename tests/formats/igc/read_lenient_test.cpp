#include "formats/igc/read_lenient.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>

#include "core/time_scale.h"
#include "formats/igc/flyable.h"
#include "formats/igc/write_igc.h"
#include "instruments/flight_generator.h"
#include "tests/support/real_flights.h"

namespace skyhaul::igc {
namespace {

using Points = std::vector<TrackPoint>;

// Generated flights, one of them over midnight, and the real ones.
std::vector<std::string> Flights() {
  std::vector<std::string> texts(2);
  for (int hour : {9, 22}) {
    const uint32_t start = TimeFromCalendar({.year = 2026, .month = 5, .day = 14, .hour = hour});
    Write(GenerateFlight({.start_time = start, .interval_s = 4}).points, {}, {.serial = "001"},
          texts[hour == 9 ? 0 : 1]);
  }
  for (const auto& path : RealFlights()) {
    std::ifstream file(path, std::ios::binary);
    texts.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return texts;
}

// The fixes of the first flight, read leniently whatever the strict reader thinks; none if refused.
Points Lenient(const std::string& text) {
  LenientFile file;
  return ReadLenient(text, file).empty() ? file.flights.front().points : Points();
}

std::string Repaired(const std::string& text) {
  LenientFile file;
  std::string told = ReadLenient(text, file);
  for (const Repair& repair : file.repairs) {
    told += std::string(RepairKey(repair.kind)) + ' ' + std::to_string(repair.count) + '@' +
            std::to_string(repair.first_line) + ' ';
  }
  for (const MendedFlight& flight : file.flights) {
    told += std::to_string(flight.points.size()) + "! ";
  }
  for (const std::string& refused : file.refused) told += refused;
  return told;
}

// Fixes of `points` that are not in `original`; both are in order of time.
Points Strange(const Points& points, const Points& original) {
  Points strange;
  for (const TrackPoint& point : points) {
    const auto same = std::ranges::lower_bound(original, point.time, {}, &TrackPoint::time);
    const bool known = same != original.end() && same->time == point.time &&
                       same->lat == point.lat && same->lon == point.lon &&
                       same->pressure_alt == point.pressure_alt &&
                       same->gps_alt_dm == point.gps_alt_dm;
    if (!known) strange.push_back(point);
  }
  return strange;
}

struct Place {
  size_t line;    // where a fix's line begins
  size_t length;  // up to its line end
};

Place SomeFix(const std::string& text, std::mt19937& random) {
  const size_t first = text.find("\nB") + 1;
  const size_t line = text.find("\nB", first + random() % (text.rfind("\nB") - first)) + 1;
  return {line, text.find_first_of("\r\n", line) - line};
}

std::string FlipBit(const std::string& original, std::mt19937& random) {
  std::string text = original;
  const Place fix = SomeFix(text, random);
  char& byte = text[fix.line + random() % fix.length];
  byte = static_cast<char>(byte ^ (1 << random() % 8));
  return text;
}

std::string LoseByte(const std::string& original, std::mt19937& random) {
  std::string text = original;
  const Place fix = SomeFix(text, random);
  return text.erase(fix.line + random() % fix.length, 1);
}

std::string CutOff(const std::string& text, std::mt19937& random) {
  return text.substr(0, text.size() / 2 + random() % (text.size() / 2));
}

std::string AddMark(const std::string& text, std::mt19937& /*random*/) {
  return "\xEF\xBB\xBF" + text;
}

std::string UseCr(const std::string& original, std::mt19937& /*random*/) {
  std::string text = original;
  std::erase(text, '\r');
  std::ranges::replace(text, '\n', '\r');
  return text;
}

TEST(IgcReadLenient, DamageCostsTheDamagedLineOnly) {
  std::mt19937 random(1);
  const std::vector<std::string> flights = Flights();
  int turns = 20;
  for (const std::string& text : flights) {
    const Points original = Lenient("\n" + text);
    // One real flight jumps over half the earth and is refused.
    if (original.empty()) continue;
    for (const auto damage : {FlipBit, LoseByte, CutOff, AddMark, UseCr}) {
      for (int turn = 0; turn < turns; ++turn) {
        // The blank line keeps the strict reader, which takes some damage for good, out of it.
        const std::string bent = damage("\n" + text, random);
        const Points points = Lenient(bent);
        const Points strange = Strange(points, original);
        if (damage == CutOff) {
          EXPECT_LE(points.size(), original.size());
          EXPECT_LE(original.size() / 4, points.size());
          EXPECT_TRUE(strange.empty());
          continue;
        }
        // One fix is lost, or two when a bent second has taken the next one's place; what came out
        // of bent digits can be flown to and from, so that it lies where the flight was.
        EXPECT_LE(Strange(original, points).size(), 2U) << text.substr(0, 20);
        EXPECT_LE(strange.size(), damage == AddMark || damage == UseCr ? 0U : 1U);
        for (const TrackPoint& point : strange) {
          const auto at = std::ranges::lower_bound(original, point.time, {}, &TrackPoint::time);
          const TrackPoint& near = at == original.end() ? original.back() : *at;
          EXPECT_TRUE(CanBeFlown(near, point, 120));
        }
      }
    }
    // The real flights are long, and there are many of them.
    if (&text - flights.data() == 1) turns = 1;
  }
}

const std::string kHead = "AXSH000\nHFDTE140526\n";

// Twenty fixes of one minute each, from hh:mm on.
std::string Fixes(const std::string& hour, int minute = 10, int count = 20) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    text.append("B").append(hour).append(std::to_string(minute + i));
    text += "004707500N01130001EA0012300456\n";
  }
  return text;
}

TEST(IgcReadLenient, TellsWhatItDoes) {
  const std::string fixes = Fixes("12");
  const std::string other = "AFLY001\nHFDTE150526\n" + Fixes("10");
  const std::pair<std::string, std::string> cases[] = {
      {"\xEF\xBB\xBF\n\n" + kHead + fixes, "byte_order_mark 1@1 before_start 2@1 20! "},
      {"From: me\nDear all\n" + kHead + fixes, "before_start 2@1 20! "},
      {"HFDTE140526\n" + fixes, "no_a_record 1@1 20! "},
      {"HFDTE140526\nAXSH000\n" + fixes, "20! "},
      {"AX-H000\nHFDTE140526\n" + fixes, "no_a_record 1@1 bad_a_record 1@1 20! "},
      {kHead + "HFDTEDATE:140526,01\n" + fixes, "date_again 1@3 20! "},
      {"AXSH000\nHFDTE 140526\nHFDTEx\n" + fixes, "bad_date 1@3 date_form 1@2 20! "},
      {kHead + "I013637TD\nI013637FXA\nI013637FXA\n" + fixes,
       "bad_i_record 1@3 i_record_again 1@5 20! "},
      {kHead + "I" + std::string(90, '0') + "\n" + fixes, "20! "},
      {kHead + fixes + "B1230004707", "cut_line 1@23 20! "},
      {kHead + fixes + "B123000470750xN01130001EA0012300456\n", "bad_fix 1@23 20! "},
      {kHead + fixes + "B1230004707500N01130001EA001230045678\n", "odd_length 1@23 20! "},
      {kHead + fixes + "\xC2" + "1230\n", "not_a_record 1@23 20! "},
      {"AXSH000\n" + Fixes("12", 10, 1) + "HFDTE140526\n" + fixes, "fix_before_date 1@2 20! "},
      // An hour that is bent at the beginning, in the middle, at the end.
      {kHead + Fixes("02", 9 + 1, 1) + Fixes("12", 11), "time_order 1@3 20! "},
      {kHead + fixes + Fixes("10", 30, 1) + Fixes("12", 31), "time_order 1@23 40! "},
      {kHead + fixes + Fixes("18", 30, 1), "time_order 1@23 20! "},
      {kHead + fixes + "B1230005707500N01130001EA0012300456\n" + Fixes("12", 31),
       "not_flyable 1@23 40! "},
      {kHead + fixes + "B1230004707500N01130001EA9012300456\n" + Fixes("12", 31),
       "not_flyable 1@23 40! "},
      {kHead + fixes + "A12300PEV\n" + Fixes("12", 31), "stray_a_record 1@23 40! "},
      {kHead + Fixes("23") + "HFDTE150526\n" + Fixes("00"), "date_again 1@23 40! "},
      {kHead + fixes + "G123\n" + other, "20! 20! "},
      {kHead + fixes + "HFDTE150526\n" + fixes, "no_a_record 1@23 20! 20! "},
      {kHead + fixes + "AFLY001\nHFDTE15x526\n" + fixes,
       "20! The flight from line 23 on is left out: no date that can be read"},
  };
  for (const auto& [text, told] : cases) EXPECT_EQ(Repaired(text), told) << text.substr(0, 40);
}

TEST(IgcReadLenient, RefusesWhatDoesNotHangTogether) {
  const std::string fixes = Fixes("12");
  std::string all_over = kHead;
  for (int i = 10; i < 30; ++i) {
    all_over += "B1200" + std::to_string(i) + std::to_string(10 + i * 7 % 60) +
                "07500N01130001EA0012300456\n";
  }
  const std::pair<std::string, std::string> cases[] = {
      {"", "it holds nothing"},
      {"AXSH000\n" + fixes, "no date that can be read"},
      {"AXSH000\nHFDTE1405261\n" + fixes, "no date that can be read"},
      {kHead, "no fix that can be read"},
      {kHead + "HFDTE140527\n" + fixes, "the date on line 3 contradicts the one before"},
      {kHead + fixes + "HFDTE140527\n" + Fixes("12", 30),
       "the date on line 23 contradicts the one before"},
      {kHead + fixes + "Bx\nBx\nBx\nBx\nBx\nBx\n",
       "6 of 26 fixes are damaged or do not hang together, more than a fifth"},
      {all_over, "19 of 20 fixes are damaged or do not hang together, more than a fifth"},
  };
  for (const auto& [text, reason] : cases) {
    LenientFile file;
    EXPECT_EQ(ReadLenient(text, file), reason);
    EXPECT_TRUE(file.flights.empty());
  }
}

TEST(IgcFlyable, LeavesOutWhatHasNoPlace) {
  const auto line = [](int second, const char* place, char validity) {
    return "B1200" + std::to_string(second) + place + validity + "0012300456\n";
  };
  const char* const here = "4707500N01130001E";
  const char* const far = "4807500N01130001E";
  const char* const nowhere = "0000000N00000000E";
  std::string text = kHead + line(10, nowhere, 'V') + line(11, far, 'V') + line(12, here, 'A') +
                     line(13, here, 'V') + line(14, far, 'V') + line(15, here, 'A') +
                     line(16, nowhere, 'V');
  Points points;
  std::vector<FixSource> sources;
  std::string message;
  ASSERT_EQ(Read(text, points, message, &sources), 7);
  const LeftOutFixes left_out = LeaveOutUnknownPlaces(points, sources);
  EXPECT_EQ(left_out.count, 4U);
  EXPECT_EQ(left_out.first_line, 3U);
  EXPECT_EQ(points.front().segment_start, 1U);
  ASSERT_EQ(sources.size(), 3U);
  EXPECT_EQ(sources[0].line, 5U);
  EXPECT_EQ(sources[1].line, 6U);
}

}  // namespace
}  // namespace skyhaul::igc
