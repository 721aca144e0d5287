#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/platform.h"
#include "tests/platform/notified_client.h"

namespace skyhaul {
namespace {

int Send(const std::string& client, const std::string& text) {
  return NativePlatform().notifier.send(nullptr, client, text);
}

TEST(Notifier, TextsArriveWholeAndInOrder) {
  NotifiedClient client(ClientName());
  const std::vector<std::string> texts = {"first", std::string(4000, 'x'), "", "\xE2\x82\xAC"};
  for (const std::string& text : texts) EXPECT_EQ(Send(ClientName(), text), 0);
  EXPECT_EQ(client.TakeTexts(), texts);
}

TEST(Notifier, AMissingClientIsAFailure) {
  { const NotifiedClient gone(ClientName()); }
  EXPECT_EQ(Send(ClientName(), "text"), -1);
  for (const std::string& name : NobodysNames()) EXPECT_EQ(Send(name, "text"), -1) << name;
}

// A client that hangs costs a wait of a second, on Windows a few of them, and is served again once
// it takes texts.
TEST(Notifier, AHangingClientIsNotWaitedForAgainAndAgain) {
  const std::string name = ClientName();
  NotifiedClient client(name);
  const ClockFunctions& clock = NativePlatform().clock;
  EXPECT_EQ(Send(name, "before"), 0);
  client.Hang();
  uint64_t start_ms = 0;
  int sent = 0;
  do {
    start_ms = clock.tick_ms(nullptr);
  } while (Send(name, "kept") == 0 && ++sent < 10000);
  EXPECT_GE(clock.tick_ms(nullptr) - start_ms, 900U);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(Send(name, "lost"), -1);
  EXPECT_LT(clock.tick_ms(nullptr) - start_ms, 10000U) << "21 waits would take 21 seconds";

  std::vector<std::string> kept(static_cast<size_t>(sent) + 1, "kept");
  kept[0] = "before";
  std::vector<std::string> texts = client.TakeTexts();
  texts.resize(kept.size());
  EXPECT_EQ(texts, kept);
  int result = -1;
  for (int i = 0; i < 1000 && result != 0; ++i) result = Send(name, "again");
  ASSERT_EQ(result, 0);
  EXPECT_EQ(client.TakeTexts().back(), "again");
}

}  // namespace
}  // namespace skyhaul
