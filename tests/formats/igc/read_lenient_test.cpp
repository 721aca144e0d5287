#include "formats/igc/read_lenient.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
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
    Write(GenerateFlight({.start_time = start, .interval_s = 1}).points, {},
          {.serial = "001", .enl = true}, texts[hour == 9 ? 0 : 1]);
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

// What happens to a fix's line of that length at `fix`.
using Damage = void (*)(std::string& text, size_t fix, size_t length, std::mt19937& random);

const Damage kFlipBit = [](std::string& text, size_t fix, size_t length, std::mt19937& random) {
  char& byte = text[fix + random() % length];
  byte = static_cast<char>(byte ^ (1 << random() % 8));
};
const Damage kLoseByte = [](std::string& text, size_t fix, size_t length, std::mt19937& random) {
  // From the altitudes on: a lost one before them leaves nothing that can be read.
  text.erase(fix + length - 1 - random() % 13, 1);
};
const Damage kBendLetter = [](std::string& text, size_t fix, size_t, std::mt19937& random) {
  text[fix] = "ACFGHI"[random() % 6];
};
const Damage kBendMark = [](std::string& text, size_t fix, size_t, std::mt19937&) {
  text[fix + 24] = 'W';
};

// Damages about so many of every hundred fixes. Returns how many.
size_t DamageFixes(std::string& text, Damage damage, unsigned percent, std::mt19937& random) {
  size_t damaged = 0;
  for (size_t at = text.rfind("\nB"); at != text.npos; at = text.rfind("\nB", at - 1)) {
    if (random() % 100 >= percent) continue;
    ++damaged;
    const size_t fix = at + 1;
    damage(text, fix, text.find_first_of("\r\n", fix) - fix, random);
  }
  return damaged;
}

std::string UseCr(const std::string& original) {
  std::string text = original;
  std::erase(text, '\r');
  std::ranges::replace(text, '\n', '\r');
  return text;
}

// What came out of bent digits lies where it can be flown to from the fix before: within 300 m and
// 200 m of altitude when that is a second away, and what is flown in that second.
void ExpectNear(const TrackPoint& point, const Points& points, const Points& original) {
  const auto place = std::ranges::lower_bound(points, point.time, {}, &TrackPoint::time);
  const uint32_t gap_s = place == points.begin() ? 60 : place->time - std::prev(place)->time;
  const auto at = std::ranges::lower_bound(original, point.time, {}, &TrackPoint::time);
  const TrackPoint& near = at == original.end() ? original.back() : *at;
  EXPECT_TRUE(CanBeFlown(near, point, gap_s));
  EXPECT_LE(std::abs(near.pressure_alt - point.pressure_alt), 105 * int64_t{gap_s + 1});
  EXPECT_LE(std::abs(near.gps_alt_dm - point.gps_alt_dm), 1050 * int64_t{gap_s + 1});
}

TEST(IgcReadLenient, DamageCostsTheDamagedLinesOnly) {
  std::mt19937 random(1);
  const std::vector<std::string> flights = Flights();
  for (const std::string& text : flights) {
    const Points original = Lenient("\n" + text);
    // One real flight jumps over half the earth and is refused.
    if (original.empty()) continue;
    // Fixes that were left out of the original may come in again beside damaged ones.
    Points all;
    std::string message;
    if (Read(text, all, message) < 0) all = original;
    const bool generated = &text - flights.data() < 2;
    for (const Damage damage : {kFlipBit, kLoseByte, kBendLetter, kBendMark}) {
      for (const unsigned percent : {5U, 15U, 30U}) {
        // The blank line keeps the strict reader, which takes some damage for good, out of it.
        std::string bent = "\n" + text;
        const size_t damaged = DamageFixes(bent, damage, percent, random);
        const Points points = Lenient(bent);
        const Points strange = Strange(points, all);
        EXPECT_TRUE(strange.empty() || damage == kFlipBit) << text.substr(0, 20);
        EXPECT_TRUE(points.empty() || damage == kFlipBit || percent < 30);
        if (!generated || percent == 30) continue;
        // A bent second may take the next one's place, and a bent fix that of good ones.
        EXPECT_GE(points.size() + 2 * damaged, original.size());
        for (const TrackPoint& point : strange) ExpectNear(point, points, original);
      }
    }
    EXPECT_EQ(Lenient("\xEF\xBB\xBF" + text), original);
    EXPECT_EQ(Lenient(UseCr(text)), original);
    const Points half = Lenient("\n" + text.substr(0, text.size() / 2 + random() % 1000));
    EXPECT_TRUE(Strange(half, original).empty());
    EXPECT_LE(original.size() / 4, half.size());
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
  std::string long_i = "I12";
  for (int i = 0; i < 12; ++i) long_i += "3636FXA";
  const std::pair<std::string, std::string> cases[] = {
      {"\xEF\xBB\xBF\n\n" + kHead + fixes, "byte_order_mark 1@1 before_start 2@1 20! "},
      {"From: me\nDear all\n" + kHead + fixes, "before_start 2@1 20! "},
      {"HFDTE140526\n" + fixes, "no_a_record 1@1 20! "},
      {"HFDTE140526\nAXSH000\n" + fixes, "moved_a_record 1@2 20! "},
      {"AX-H000\nHFDTE140526\n" + fixes, "no_a_record 1@1 bad_a_record 1@1 20! "},
      {kHead + "HFDTEDATE:140526,01\n" + fixes, "date_again 1@3 20! "},
      {"AXSH000\nHFDTE 140526\nHFDTEx\n" + fixes, "bad_date 1@3 date_form 1@2 20! "},
      {kHead + "I013637TD\nI013637FXA\nI013637FXA\n" + fixes,
       "bad_i_record 1@3 i_record_again 1@5 20! "},
      {kHead + "I" + std::string(90, '0') + "\n" + fixes, "20! "},
      {kHead + long_i + "\n" + fixes, "long_i_record 1@3 20! "},
      {kHead + fixes + "B1230004707", "cut_line 1@23 20! "},
      {kHead + fixes + "B123000470750xN01130001EA0012300456\n", "bad_fix 1@23 20! "},
      {kHead + fixes + "B1230004707500N01130001EA001230045678\n", "odd_length 1@23 20! "},
      {kHead + fixes + "\xC2" + "1230\n", "not_a_record 1@23 20! "},
      {kHead + fixes + "1230004707500N01130001EA0012300456\n", "bad_fix 1@23 20! "},
      {kHead + fixes + "HFDTM: WGS-84" + Fixes("13", 10, 1), "bad_fix 1@23 20! "},
      {"AXSH000\nHFDTE140526" + fixes, "date_form 1@2 bad_fix 1@2 19! "},
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
      {kHead + fixes + "\x1A" + other, "end_mark 1@23 20! 20! "},
      // A second flight of the day whose A record is bent.
      {kHead + fixes + "-FLY001\nHFDTE140526\nHFPLTPILOT:\n" + Fixes("15"),
       "no_a_record 1@24 not_a_record 1@23 20! 20! "},
      {kHead + fixes + "HFDTE140526\nHFTZN\n" + Fixes("12", 30), "date_again 1@23 40! "},
      {kHead + fixes + "HFDTE150526\n" + fixes, "no_a_record 1@23 20! 20! "},
      {kHead + fixes + "AFLY001\nHFDTE15x526\n" + fixes,
       "20! The flight from line 23 on is left out: no date that can be read"},
  };
  for (const auto& [text, told] : cases) EXPECT_EQ(Repaired(text), told) << text.substr(0, 40);
}

TEST(IgcReadLenient, RefusesWhatDoesNotHangTogether) {
  const std::string fixes = Fixes("12");
  const std::string one_lost =
      "\xC2"
      "123x004707500N01130001EA0012300456\n";
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
      {kHead + "HFDTE140527\n" + fixes, "the date on line 3 contradicts what stands before it"},
      {kHead + fixes + "HFDTE140527\n" + Fixes("12", 40),
       "the date on line 23 contradicts what stands before it"},
      {kHead + fixes + "HFFTY\n" + Fixes("12", 40),
       "the header on line 23 contradicts what stands before it"},
      {kHead + Fixes("12", 10, 7) + "B1217004707500N01130001EA00123004567\n" +
           "B1218004707500N01130001EA00123004567\n",
       "less than four fifths of its fixes have the same length, so that nothing tells which have "
       "lost characters"},
      {kHead + Fixes("12", 10, 12) + one_lost + one_lost + one_lost + one_lost,
       "4 of 16 fixes are damaged or do not hang together, more than a fifth"},
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
  EXPECT_EQ(LeaveOutMarked(points, sources).first_line, 6U);
}

TEST(IgcFlyable, CountsTheDaysOfWhatStays) {
  const std::string nowhere = "0000000N00000000EV0012300456\n";
  const std::string text = kHead + "B235940" + nowhere + "B000000" + nowhere + Fixes("10") +
                           "B000000" + nowhere + "B000001" + "0000000N00000000EW0012300456\n" +
                           Fixes("11");
  Points points;
  std::vector<FixSource> sources;
  std::string message;
  ASSERT_EQ(Read(text, points, message, &sources), 44);
  EXPECT_EQ(LeaveOutUnknownPlaces(points, sources).count, 4U);
  for (const TrackPoint& point : points) EXPECT_EQ(CalendarFromTime(point.time).day, 14);
}

}  // namespace
}  // namespace skyhaul::igc
