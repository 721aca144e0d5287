#include <cmath>

#include "core/time_scale.h"
#include "core/units.h"
#include "protocols/flytec/field_text.h"
#include "protocols/flytec/waypoint_list.h"
#include "protocols/flytec/waypoint_recogniser.h"
#include "protocols/flytec/waypoint_upload.h"
#include "tests/protocols/flytec/flytec_bench.h"

namespace skyhaul::flytec {
namespace {

// --- Reading -------------------------------------------------------------------------------------

// What the last byte of a text gave; every earlier one must have asked for more.
int Feed(WaypointRecogniser& recogniser, const std::string& text) {
  int result = 1;
  for (const char c : text) {
    EXPECT_EQ(result, 1) << text;
    result = FeedWaypointByte(recogniser, static_cast<uint8_t>(c));
  }
  return result;
}

TEST(WaypointRecogniser, TakesRealSentencesAndWhatMayBeLeftOut) {
  // Name, description and altitude stand in one text.
  const std::tuple<std::string, double, double, std::string> cases[] = {
      // Two that real instruments sent.
      {"$PBRWPS,4743.564,N,01121.571,E,URT062,Urthaler Hof     ,0620*03\r\n", 47.72606667,
       11.35951667, "URT062|Urthaler Hof|620"},
      {"$PBRWPS,0425.130,N,07607.610,W,S03095,S03              ,0950*21\r\n", 4.41883333,
       -76.12683333, "S03095|S03|950"},
      {Sentence("PBRWPS,4730.5,S,01100.0,W,,,0"), -47.50833333, -11, "||0"},
      {Sentence("PBRWPS,4730,,01100,,ABC,Only a long name ,-12"), 47.5, 11,
       "ABC|Only a long name|-12"},
      {Sentence("PBRWPS,4730,N,01100,E,ABCDEF"), 47.5, 11, "ABCDEF||0"},
      {Sentence("PBRWPS,8959.999,N,17959.999,E,A,B,99999"), 89.99998333, 179.99998333, "A|B|99999"},
      {Sentence("PBRWPS,4730,N,01100,E,A,B,-9999"), 47.5, 11, "A|B|-9999"},
  };
  for (const auto& [sentence, lat_deg, lon_deg, texts] : cases) {
    WaypointRecogniser recogniser;
    ASSERT_EQ(Feed(recogniser, sentence), 0) << sentence;
    const WaypointRecord& waypoint = recogniser.waypoint;
    EXPECT_NEAR(SemicirclesToDegrees(waypoint.lat), lat_deg, 1e-7) << sentence;
    EXPECT_NEAR(SemicirclesToDegrees(waypoint.lon), lon_deg, 1e-7) << sentence;
    EXPECT_EQ(std::string(waypoint.name) + "|" + waypoint.description + "|" +
                  std::to_string(waypoint.altitude),
              texts);
  }
}

TEST(WaypointRecogniser, EachFaultHasItsNumberAtItsByte) {
  const std::string place = "4743.5,N,01121.5,E,";
  const std::string whole = "4743.564,N,01121.571,E,URT062,Urthaler Hof     ,0620*";
  // The last byte is the wrong one.
  const std::pair<int, Texts> cases[] = {
      {kWaypointLatitudeTooLong, {"8960", "89590"}},
      {kWaypointBadLatitude, {"47x", ",", "."}},
      {kWaypointBadLatitudeFraction, {"4743.5-", "4743.5."}},
      {kWaypointBadLatitudeHemisphere, {"4743.5,E", "4743.5,n"}},
      {kWaypointLatitudeCommaMissing, {"4743.5,NN"}},
      {kWaypointLongitudeTooLong, {"4743.5,N,17960"}},
      {kWaypointBadLongitude, {"4743.5,N,011-"}},
      {kWaypointBadLongitudeHemisphere, {"4743.5,N,01121.5,N"}},
      {kWaypointLineEndInShortName, {place + "AB\r", place + "\n"}},
      {kWaypointShortNameTooLong, {place + "ABCDEFG"}},
      {kWaypointLineEndInLongName, {place + "ABC,De\r"}},
      {kWaypointLongNameTooLong, {place + "ABC,123456789012345678"}},
      {kWaypointBadAltitude, {place + ",,x", place + ",,*", place + ",,--", place + ",,-*"}},
      {kWaypointAltitudeTooLong, {place + ",,123456", place + ",,-12345", place + ",,12,"}},
      {kWaypointBadFirstChecksumDigit, {place + ",,12*g", place + ",,12*a"}},
      {kWaypointBadSecondChecksumDigit, {place + ",,12*0\r"}},
      {kWaypointCrMissing, {place + ",,12*00\n"}},
      {kWaypointChecksumMismatch, {whole + "04\r\n"}},
      {kWaypointLfMissing, {whole + "03\r\r"}},
  };
  for (const auto& [error, texts] : cases) {
    for (const std::string& text : texts) {
      WaypointRecogniser recogniser;
      EXPECT_EQ(Feed(recogniser, "$PBRWPS," + text), -error) << text;
      EXPECT_EQ(Feed(recogniser, Sentence("PBRWPS,4730,N,01100,E,A,B,1")), 0) << text;
    }
  }
}

TEST(WaypointRecogniser, PassesOverOtherSentences) {
  for (const char* before : {"noise\r\n$PBRSNP,5030,A,1,2*00\r\n", "$PBR", "$"}) {
    WaypointRecogniser recogniser;
    EXPECT_EQ(Feed(recogniser, before + WaypointLine()), 0) << before;
  }
}

FileWaypoint Waypoint(const std::string& name, const std::string& description, double lat_deg,
                      double lon_deg, double altitude_m) {
  return {.lat = RadiansToSemicircles(lat_deg / kDegreesPerRadian),
          .lon = RadiansToSemicircles(lon_deg / kDegreesPerRadian),
          .altitude_m = altitude_m,
          .name = name,
          .description = description};
}

TEST(ReadWaypoints, EachIsReadAsOfNow) {
  FlytecBench b;
  b.script.answers["$PBRWPS,"] = {WaypointLine(0) + WaypointLine(44)};
  ASSERT_EQ(ReadWaypointsJob(b.job), 2);
  EXPECT_STREQ(b.job.data.waypoints[1].name, "URT144");
  const ClockFunctions& clock = b.platform.clock;
  const uint32_t now = TimeFromUnix(clock.unix_time_s(clock.context));
  EXPECT_NEAR(b.job.data.waypoints[1].time, now - 2, 1);
}

// --- Writing -------------------------------------------------------------------------------------

// The sentences of an upload, which the instrument has received without checksum and line end.
Texts Sent(FlytecBench& b) {
  Texts sentences;
  for (const std::string& request : b.script.requests) {
    if (request.starts_with("$PBRWPR")) sentences.push_back(request.substr(1, request.size() - 4));
  }
  return sentences;
}

TEST(WriteWaypoints, OneNameOf17CharactersAndAPositionGoOverTheWire) {
  FlytecBench b;
  b.job.verify = false;
  b.job.data.waypoints_to_send = {
      Waypoint("URT062", "Urthaler Hof", 47.7260667, 11.3595167, 619.5),
      Waypoint("N", "North Pole", 90, 0, 0),
      Waypoint("W", "", 0, -180, 0),
      Waypoint("S03095", "", -4.4188333, -76.1268333, -7),
      Waypoint("A", "Seventeen letters and more", 0, 0, 99999),
      Waypoint("Low", "", 0, 0, -9999.5),
      Waypoint("High", "", 0, 0, 99999.5),
      Waypoint("A", " a,b*c$d\te", 59.9999999, 9.99999999, NAN),
      Waypoint("H\xc3\xb6rnle und weiter", "\n", 89.99998, 179.99998, -9999)};
  EXPECT_EQ(WriteWaypointsJob(b.job), 5);
  EXPECT_EQ(Sent(b), (Texts{"PBRWPR,4743.564,N,01121.571,E,,Urthaler Hof     ,0620",
                            "PBRWPR,0425.130,S,07607.610,W,,S03095           ,-007",
                            "PBRWPR,0000.000,N,00000.000,E,,Seventeen letters,99999",
                            "PBRWPR,6000.000,N,01000.000,E,,a-b-c-d e        ,0000",
                            "PBRWPR,8959.999,N,17959.999,E,,Hornle und weiter,-9999"}));
  const std::string title = "Write GPS waypoints: Waypoint ";
  EXPECT_EQ(b.recorder.messages,
            (Texts{title + "North Pole lies where the instrument knows no position",
                   title + "W lies where the instrument knows no position",
                   title + "Low has an altitude of more than five characters",
                   title + "High has an altitude of more than five characters"}));
  EXPECT_EQ(b.recorder.statuses,
            (Texts{"Product data read", "1 names were changed to fit 17 characters",
                   "Waypoint 1 sent", "Waypoint 2 sent", "Waypoint 3 sent", "Waypoint 4 sent",
                   "Waypoint 5 sent", "5 waypoints sent"}));
  EXPECT_EQ(b.recorder.progress.back(), "Sent wpt 5/9");
  EXPECT_EQ(b.recorder.percents.back(), 55);
  // 200 opening, 1000 after identification and 300 after each waypoint.
  EXPECT_NEAR(b.Waited_ms(), 2700, 60);
}

TEST(WriteWaypoints, TheListShowsWhatArrived) {
  const std::string broken = "$PBRWPS,47x";
  const auto urthal = [](const char* name, const char* minutes, const char* altitude) {
    return Sentence(std::string("PBRWPS,4743.") + minutes + ",N,01121.571,E,URT062," + name + "," +
                    altitude);
  };
  const std::string hof = urthal("Urthaler Hof     ", "564", "0620");
  const std::string alm = urthal("Urthaler Alm     ", "564", "0620");
  const std::string rounded = urthal("Urthaler Alm     ", "565", "0619");
  const std::string full = [&] {
    std::string text = hof;
    for (int n = 0; n < 199; ++n) text += WaypointLine(n);
    return text;
  }();
  const std::string unread =
      "2 waypoints sent, but the instrument's list could not be read back to verify them\n";
  const std::string wrong =
      "1 of 2 waypoints are missing or different in the instrument: Urthaler Alm";
  // The lists in turn, how many waypoints are sent in all, and the message.
  const std::tuple<Texts, size_t, std::string> cases[] = {
      {{alm + hof}, 2, ""},
      {{hof + rounded}, 2, ""},
      {{broken, hof + alm}, 2, ""},
      {{"", hof + alm}, 2, ""},
      {{hof, broken, hof + alm}, 3, ""},
      {{hof + urthal("Urthaler Alm     ", "566", "0620"), hof + alm}, 3, ""},
      {{hof + urthal("Urthaler Alm     ", "564", "0618")}, 3, wrong},
      {{full}, 3, wrong + "\nIt is full: it holds 200 waypoints"},
      {{broken}, 2, unread + "E302 Format error 2"},
      {{hof, broken}, 3, unread + "E302 Format error 2"},
      {{""}, 2, unread + "No waypoint came"},
  };
  for (const auto& [lists, sent, message] : cases) {
    FlytecBench b;
    b.job.data.waypoints_to_send = {Waypoint("", "Urthaler Hof", 47.7260667, 11.3595167, 620),
                                    Waypoint("", "Urthaler Alm", 47.7260667, 11.3595167, 620)};
    b.script.answers["$PBRWPS,"] = lists;
    SCOPED_TRACE(lists.front() + message);
    EXPECT_EQ(WriteWaypointsJob(b.job), message.empty() ? 2 : -1);
    EXPECT_EQ(Sent(b).size(), sent);
    EXPECT_EQ(b.recorder.messages,
              message.empty() ? Texts{} : Texts{"Write GPS waypoints: " + message});
    EXPECT_EQ(b.recorder.statuses.back() == "2 of 2 verified", message.empty());
    EXPECT_EQ(b.job.data.verified.has_value(), !message.starts_with(unread));
    EXPECT_EQ(b.job.data.sent, 2U);
  }
}

TEST(WriteWaypoints, OnlyTheFirstNamesAreToldAndTooManyAreNotSent) {
  FlytecBench b;
  for (const char* name : {"A", "B", "C", "D", "E", "F", "G"}) {
    b.job.data.waypoints_to_send.push_back(Waypoint(name, "", 0, 0, 0));
  }
  b.script.answers["$PBRWPS,"] = {WaypointLine()};
  EXPECT_LT(WriteWaypointsJob(b.job), 0);
  EXPECT_TRUE(b.recorder.messages.back().ends_with(": A, B, C, D, E and 2 more"));
  b.bench.written.clear();
  b.job.data.waypoints_to_send.resize(201);
  EXPECT_LT(WriteWaypointsJob(b.job), 0);
  EXPECT_EQ(b.recorder.messages.back(),
            "Write GPS waypoints: 201 waypoints, but the instrument holds 200: nothing was sent");
  EXPECT_EQ(b.bench.written, "");
}

TEST(NameFields, NamesAreMadeDifferentAndTheChangesCounted) {
  const std::tuple<Texts, Texts, uint32_t> cases[] = {
      {{"Hut", "Hut", "Hut"}, {"Hut              ", "Hut2             ", "Hut3             "}, 2},
      {{"Seventeen letters", "Seventeen letters"}, {"Seventeen letters", "Seventeen letter2"}, 1},
      {{"", ""}, {"Unnamed          ", "Unnamed2         "}, 1},
  };
  for (const auto& [names, expected, expected_changes] : cases) {
    uint32_t changed = 99;
    EXPECT_EQ(NameFields(names, changed), expected);
    EXPECT_EQ(changed, expected_changes);
  }
}

TEST(WriteWaypoints, TellsHowManyWereSentWhenItBreaksOff) {
  FlytecBench b;
  b.job.data.waypoints_to_send.resize(3, {.name = "A"});
  b.bench.fault = FailWrite(3);
  EXPECT_LT(WriteWaypointsJob(b.job), 0);
  EXPECT_EQ(b.recorder.statuses.back(), "2 waypoints sent");
  EXPECT_EQ(b.recorder.messages, Texts{"Write GPS waypoints: COM port write error"});
  EXPECT_EQ(b.script.requests.size(), 3U);
}

}  // namespace
}  // namespace skyhaul::flytec
