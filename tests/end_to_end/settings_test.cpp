#include <gtest/gtest.h>
#include <stdlib.h>

#include <nlohmann/json.hpp>

#include "formats/igc/header.h"
#include "tests/end_to_end/program.h"

namespace skyhaul {
namespace {

using Texts = std::vector<std::string>;

class SettingsProgramTest : public testing::Test {
 protected:
  int Run(const Texts& more) {
    Texts arguments = {SKYHAUL_PROGRAM};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunToEnd(program, arguments);
  }

  // The lines of --settings about what differs from its default.
  Texts Changed() {
    EXPECT_EQ(Run({"--settings"}), 0) << program.Err();
    Texts lines;
    const std::string out = program.Out();
    for (size_t at = out.find("\n* "); at != std::string::npos; at = out.find("\n* ", at + 1)) {
      lines.push_back(out.substr(at + 1, out.find('\n', at + 1) - at - 1));
    }
    return lines;
  }

  std::string Path() const { return program.folder.File("config/skyhaul/settings"); }

  Program program;
};

TEST_F(SettingsProgramTest, AreShownAndChanged) {
  ASSERT_EQ(Run({"--settings"}), 0);
  EXPECT_TRUE(program.Out().starts_with("Settings in " + Path() + "\n  PilotListName "));
  EXPECT_TRUE(program.Out().ends_with("\n0 of 92 differ from their default (*)\n"));
  EXPECT_FALSE(std::filesystem::exists(program.folder.path / "config"));

  ASSERT_EQ(Run({"--set", "IgcSite=x", "loopflightgap=600", "IgcSite=Fiesch"}), 0) << program.Err();
  EXPECT_EQ(program.Out(), "2 settings changed\n");
  EXPECT_EQ(Changed(), (Texts{"* LoopFlightGap            600  (default: 800)",
                              "* IgcSite                  Fiesch  (default: None)"}));
  ASSERT_EQ(Run({"--set", "IgcSite=None", "LoopFlightGap=600"}), 0);
  EXPECT_EQ(program.Out(), "1 setting changed\n") << "the other had that value before";
  EXPECT_EQ(Changed().size(), 1U);

  EXPECT_EQ(Run({"--set", "IgcSite=Annecy", "--set", "Port=many"}), 2);
  EXPECT_NE(program.Err().find("Port must be a whole number"), std::string::npos);
  ASSERT_EQ(Run({"--settings", "--json"}), 0);
  const auto json = nlohmann::json::parse(program.Out(), nullptr, false);
  ASSERT_TRUE(json.is_object());
  EXPECT_EQ(json["settings"].size(), 92U);
  EXPECT_EQ(json["settings"][27],
            nlohmann::json(
                {{"name", "LoopFlightGap"}, {"value", 600}, {"default", 800}, {"changed", true}}));
}

TEST_F(SettingsProgramTest, APasswordWithoutAPlaceIsNotStored) {
  // The thread sanitizer cannot follow the threads of the secret service's library.
  setenv("TSAN_OPTIONS", "ignore_noninstrumented_modules=1", 1);
  EXPECT_EQ(Run({"--set", "IgcSite=Fiesch", "SkylogPassword=hunter2"}), 1);
  EXPECT_NE(program.Err().find("SkylogPassword is not stored: "), std::string::npos);
  unsetenv("TSAN_OPTIONS");
  EXPECT_EQ(ReadText(Path()), "") << "neither the other setting nor any default";
  EXPECT_EQ(Changed(), Texts{});
}

TEST_F(SettingsProgramTest, ABatchRunUsesThemAndWritesNothing) {
  // Two flights joined: a single one is saved in the instrument's own words.
  const std::string first = program.folder.File("1.igc");
  const std::string second = program.folder.File("2.igc");
  WriteText(first, FlightText(60));
  WriteText(second, FlightText(60, 1'200'000'100));
  Instrument instrument;
  StartInstrument(instrument,
                  {"--baud", "0", "--pilot", "ANNA MUSTER", "--flight", first, "--flight", second});
  const Texts download = {"/GPS=IQCOMPEO", "/RD_LOG=" + program.folder.File("flight.igc"),
                          "/TRACK=1,2", "/NOSPLIT", "/OVERWRITE"};
  const std::string settings = "PortName=" + instrument.port +
                               "\nIgcGliderType=Omega\nIgcPilotName=Other\nIgcSite=None\nno line\n";
  std::filesystem::create_directories(program.folder.path / "config/skyhaul");
  WriteText(Path(), settings);
  ASSERT_EQ(Run(download), 0) << program.Err();
  EXPECT_NE(program.Err().find("settings: Line 5: it is neither Name=value nor a comment"),
            std::string::npos);
  igc::Header header = igc::ReadHeader(ReadText(program.folder.File("flight.igc")));
  EXPECT_EQ(header.glider_type, "Omega");
  EXPECT_EQ(header.pilot, "ANNA MUSTER");
  EXPECT_EQ(header.site, "");
  EXPECT_EQ(ReadText(Path()), settings);

  WriteText(Path(), "LoopFlightGap=0\nUseFaiMaxDistanceRules=0\n");
  ASSERT_EQ(Run({"--score", program.folder.File("flight.igc")}), 0) << program.Err();
  EXPECT_NE(program.Out().find("Gap 0 m, FAI rule off"), std::string::npos) << program.Out();

  // The command line is stronger than the settings.
  WriteText(Path(), "PortName=/dev/none\n");
  Texts more = download;
  more.insert(more.end(), {"/COM=" + instrument.port, "/PILOT=Me"});
  ASSERT_EQ(Run(more), 0) << program.Err();
  header = igc::ReadHeader(ReadText(program.folder.File("flight.igc")));
  EXPECT_EQ(header.pilot, "Me");
  EXPECT_EQ(header.glider_type, "");
}

}  // namespace
}  // namespace skyhaul
