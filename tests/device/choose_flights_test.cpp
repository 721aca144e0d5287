#include "device/choose_flights.h"

#include <gtest/gtest.h>

#include "tests/support/recording_shell.h"

namespace skyhaul {
namespace {

TEST(ChooseFlights, ByNumberTheNewestOrAsked) {
  using enum FlightChoice::How;
  using Indices = std::vector<uint32_t>;
  const std::tuple<FlightChoice, Indices, Indices, const char*> cases[] = {
      {{kNumbers, {8, 1}}, {}, {0, 7}, ""},
      {{kNumbers, {8, 5}}, {}, {}, "Select track: There is no track 5 in the list"},
      {{kNumbers, {0}}, {}, {}, "Select track: There is no track 0 in the list"},
      {{kNewest, {}}, {}, {3}, ""},
      {{kAsk, {}}, {7, 3}, {3, 7}, ""},
      {{kAsk, {}}, {}, {}, ""},
  };
  for (const auto& [choice, picked, expected, message] : cases) {
    RecordingShell recorder;
    recorder.choice = picked;
    const Shell shell = MakeShell(recorder);
    Job job;
    job.operation.shell = &shell;
    // Two flights start in the same second.
    job.data.track_list = {{.index = 0, .start_time = 5},
                           {.index = 3, .start_time = 9},
                           {.index = 7, .start_time = 9}};
    job.choice = choice;
    Indices chosen = {99};
    EXPECT_EQ(ChooseFlights(job, chosen),
              expected.empty() ? -1 : static_cast<int>(expected.size()));
    EXPECT_EQ(chosen, expected);
    EXPECT_EQ(recorder.messages.empty() ? "" : recorder.messages[0], message);
    EXPECT_EQ(recorder.list.size(), 3U) << "shown even when a number is wrong";
  }
}

}  // namespace
}  // namespace skyhaul
