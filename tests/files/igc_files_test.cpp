#include "files/igc_files.h"

#include <gtest/gtest.h>

#include <thread>

#include "core/time_scale.h"
#include "core/units.h"
#include "formats/igc/security_record.h"
#include "tests/support/recording_shell.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

using Texts = std::vector<std::string>;

const char* const kMinimal = "AXXX001\r\nHFDTE140526\r\nB1200004743564N01121571EA0062000640\r\n";

Flight SomeFlight() {
  Flight flight;
  const uint32_t start = TimeFromCalendar({.year = 2026, .month = 5, .day = 14, .hour = 11});
  for (uint32_t i = 0; i < 3; ++i) {
    flight.points.push_back({.segment_start = i == 0 ? 1U : 0U,
                             .time = start + i,
                             .lat = MilliminutesToSemicircles(2863564),
                             .lon = MilliminutesToSemicircles(681571),
                             .gps_alt_dm = 6400});
  }
  return flight;
}

// A path of folders that are not there: two characters for each, three bytes.
std::string Deep(int folders) {
  std::string path;
  for (int i = 0; i < folders; ++i) path += "\xC3\xBC/";
  return path;
}

class IgcFilesTest : public testing::Test {
 protected:
  void SetUp() override {
    shell = MakeShell(recorder);
    operation.shell = &shell;
    save.path = folder.File("");
    save.options = {.sign = true, .may_be_signed = true, .serial = "000"};
  }

  ScratchFolder folder;
  RecordingShell recorder;
  Shell shell;
  Operation operation;
  IgcSave save;
  std::string written;
};

TEST_F(IgcFilesTest, ReadingFailuresAreTold) {
  const std::string minimal = kMinimal;
  WriteText(folder.File("good.igc"), minimal);
  WriteText(folder.File("empty.igc"), "");
  WriteText(folder.File("broken.igc"), minimal + "B120001474356xN01121571EA0062000640\r\n");
  std::filesystem::create_directory(folder.path / "folder.igc");
  FileContents contents;
  ASSERT_EQ(LoadIgcFile(operation, folder.File("good.igc"), {}, contents), 1);

  const std::pair<std::string, std::string> cases[] = {
      {folder.File("empty"), "File is empty"},
      {folder.File("broken"), "Format error on line 4"},
      {folder.File("missing"), "Error opening IGC Log File"},
      {folder.File("folder"), "Error opening file"},
      {Deep(126), "Error opening IGC Log File"},
      {Deep(126) + "x", "File name too long"},
  };
  for (const auto& [base, message] : cases) {
    EXPECT_EQ(LoadIgcFile(operation, base + ".igc", {}, contents), -1) << message;
    const std::string expected = "Reading IGC log file: " + message;
    EXPECT_EQ(recorder.messages.back().substr(0, expected.size()), expected);
    EXPECT_TRUE(contents.points.empty());
  }
}

TEST_F(IgcFilesTest, AnInstrumentsOwnTextIsSavedUnchanged) {
  Flight flight = SomeFlight();
  flight.instrument_igc = {.expected = true,
                           .text = "whatever\nit \xff said\r\n",
                           .manufacturer = "FLY",
                           .serial = "A12"};
  ASSERT_EQ(SaveIgcAuto(operation, flight, save, written), 3);
  EXPECT_EQ(folder.Names(), Texts{"2026-05-14-xxx-A12-01.igc"});
  EXPECT_EQ(ReadText(written), flight.instrument_igc.text);
  EXPECT_EQ(recorder.statuses, Texts{"3 positions written"});
}

TEST_F(IgcFilesTest, OtherLogsAreWrittenAndSigned) {
  ASSERT_EQ(SaveIgcAuto(operation, SomeFlight(), save, written), 3);
  EXPECT_EQ(folder.Names(), Texts{"2026-05-14-xsh-000-01.igc"});
  const std::string text = ReadText(written);
  EXPECT_EQ(igc::CheckSecurityRecord(text), igc::SecurityCheck::kPassed);
  FileContents again;
  EXPECT_EQ(LoadIgcFile(operation, written, {}, again), 3);
  EXPECT_EQ(again.points, SomeFlight().points);
}

TEST_F(IgcFilesTest, FreeNumbersEndAt35AndNothingIsOverwritten) {
  for (int i = 1; i <= 35; ++i) ASSERT_EQ(SaveIgcAuto(operation, SomeFlight(), save, written), 3);
  EXPECT_EQ(folder.Names().back(), "2026-05-14-xsh-000-35.igc");
  EXPECT_EQ(SaveIgcAuto(operation, SomeFlight(), save, written), -1);
  EXPECT_EQ(recorder.messages, Texts{"Save IGC log: No free flight number available"});
  EXPECT_EQ(folder.Names().size(), 35U);
}

TEST_F(IgcFilesTest, OverwritingKeepsWhatThisRunHasWritten) {
  const std::string first = folder.File("2026-05-14-xsh-000-01.igc");
  WriteText(first, "old");
  save.overwrite = true;
  ASSERT_EQ(SaveIgcAuto(operation, SomeFlight(), save, written), 3);
  EXPECT_EQ(written, first);
  EXPECT_NE(ReadText(first), "old");
  save.not_over = {first};
  ASSERT_EQ(SaveIgcAuto(operation, SomeFlight(), save, written), 3);
  EXPECT_EQ(written, folder.File("2026-05-14-xsh-000-02.igc"));
}

TEST_F(IgcFilesTest, TwoAtOnceNeverShareANumber) {
  std::vector<std::thread> threads(2);
  for (std::thread& thread : threads) {
    thread = std::thread([this] {
      std::string path;
      for (int i = 0; i < 15; ++i) EXPECT_EQ(SaveIgcAuto({}, SomeFlight(), save, path), 3);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(folder.Names().size(), 30U);
}

TEST_F(IgcFilesTest, FixedNamesAndTemplates) {
  save.path = folder.File("log-$date-$time.igc");
  save.is_template = true;
  ASSERT_EQ(SaveIgcAuto(operation, SomeFlight(), save, written), 3);
  EXPECT_EQ(folder.Names(), Texts{"log-20260514-110000.igc"});
  EXPECT_EQ(SaveIgcAuto(operation, SomeFlight(), save, written), -1);
  EXPECT_EQ(
      recorder.messages.back().find("Save IGC log: File open error, possibly already existing\n"),
      0U);
  save.overwrite = true;
  EXPECT_EQ(SaveIgcAuto(operation, SomeFlight(), save, written), 3);
}

TEST_F(IgcFilesTest, SavingFailuresLeaveNothing) {
  save.is_template = true;
  const Flight none = {.instrument_igc = {.expected = true}};
  const std::tuple<Flight, std::string, const char*> cases[] = {
      {{}, folder.File(""), "Save IGC log: No positions"},
      {none, folder.File(""), "Save IGC log: No log stored"},
      {SomeFlight(), folder.File("none/"), "Save IGC log: File open error\n"},
      {SomeFlight(), Deep(125) + "x$date", "Save IGC log: File open error, possibly"},
      {SomeFlight(), Deep(125) + "xx$date", "Save IGC log: Too long file name\n"},
      {SomeFlight(), Deep(117), "Save IGC log: File open error\n"},
      {SomeFlight(), Deep(116) + "xx/", "Save IGC log: Too long file name\n"},
  };
  for (const auto& [flight, path, message] : cases) {
    save.path = path;
    const int failure = path == folder.File("") ? kNothingToSave : -1;
    EXPECT_EQ(SaveIgcAuto(operation, flight, save, written), failure);
    EXPECT_EQ(recorder.messages.back().find(message), 0U) << recorder.messages.back();
  }
  save.selection = {0, 2};
  EXPECT_EQ(SaveIgcAuto(operation, SomeFlight(), save, written), kNothingToSave);
  EXPECT_EQ(recorder.messages.back(), "Save IGC log: No gaps in selected points allowed");
  EXPECT_TRUE(folder.Names().empty());
  EXPECT_EQ(CheckIgcFolderLength(operation, Deep(117)), 0);
  EXPECT_EQ(CheckIgcFolderLength(operation, Deep(116) + "xx/"), -1);
}

}  // namespace
}  // namespace skyhaul
