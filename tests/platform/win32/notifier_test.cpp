#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/platform.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {
namespace {

constexpr UINT kHold = WM_APP;

int Send(const std::string& client, const std::string& text) {
  return NativePlatform().notifier.send(nullptr, client, text);
}

struct Received {
  std::vector<std::string> texts;
  std::vector<ULONG_PTR> numbers;
};

// A program with a window of a class, on a thread of its own. It answers for as long as it is not
// held.
struct Client {
  Client(const std::string& class_name, HWND parent) {
    thread = std::thread([this, class_name, parent] { Run(WideText(class_name), parent); });
    ready.wait(false);
  }
  ~Client() {
    Release();
    PostThreadMessageW(thread_id, WM_QUIT, 0, 0);
    thread.join();
  }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  // The window answers nothing from now on.
  void Hold() {
    held = true;
    SendNotifyMessageW(window, kHold, 0, 0);
  }
  void Release() {
    held = false;
    held.notify_all();
  }

  static LRESULT CALLBACK Procedure(HWND target, UINT message, WPARAM sender, LPARAM data) {
    auto* client = reinterpret_cast<Client*>(GetWindowLongPtrW(target, GWLP_USERDATA));
    if (client != nullptr && message == kHold) client->held.wait(true);
    if (client == nullptr || message != WM_COPYDATA) {
      return DefWindowProcW(target, message, sender, data);
    }
    const auto* copied = reinterpret_cast<const COPYDATASTRUCT*>(data);
    client->received.texts.emplace_back(static_cast<const char*>(copied->lpData), copied->cbData);
    client->received.numbers.push_back(copied->dwData);
    return TRUE;
  }

  void Run(const std::wstring& class_name, HWND parent) {
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = Procedure;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.lpszClassName = class_name.c_str();
    RegisterClassW(&window_class);
    window = CreateWindowW(class_name.c_str(), L"", 0, 0, 0, 0, 0, parent, nullptr,
                           window_class.hInstance, nullptr);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    thread_id = GetCurrentThreadId();
    ready = true;
    ready.notify_all();
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    DestroyWindow(window);
    UnregisterClassW(class_name.c_str(), window_class.hInstance);
  }

  Received received;  // by the client's thread, while send() waits for it
  std::thread thread;
  std::atomic<bool> ready = false;
  std::atomic<bool> held = false;
  HWND window = nullptr;
  DWORD thread_id = 0;
};

TEST(Notifier, TextsArriveWholeAndInOrder) {
  for (HWND const parent : {static_cast<HWND>(nullptr), HWND_MESSAGE}) {
    Client client("SkyhaulTestClient", parent);
    const std::vector<std::string> texts = {"Pos=47.1,8.2,1234", std::string(4000, 'x'), "",
                                            "\xE2\x82\xAC"};
    for (const std::string& text : texts) EXPECT_EQ(Send("SkyhaulTestClient", text), 0);
    ASSERT_EQ(client.received.texts.size(), texts.size());
    for (size_t i = 0; i < texts.size(); ++i) {
      EXPECT_EQ(client.received.texts[i], texts[i] + '\0') << "the zero at the end is sent too";
      EXPECT_EQ(client.received.numbers[i], 0U);
    }
  }
}

TEST(Notifier, ClassNamesAreUtf8) {
  const Client client(
      "Fl\xC3\xBC"
      "ge",
      nullptr);
  EXPECT_EQ(Send("Fl\xC3\xBC"
                 "ge",
                 "text"),
            0);
}

TEST(Notifier, AMissingClientIsAFailure) {
  EXPECT_EQ(Send("", "text"), -1);
  EXPECT_EQ(Send("SkyhaulNobody", "text"), -1);
  EXPECT_EQ(Send("\xFF", "text"), -1) << "not UTF-8";
  EXPECT_EQ(Send(std::string(300, 'x'), "text"), -1) << "longer than class names are";
  { const Client gone("SkyhaulGone", nullptr); }
  EXPECT_EQ(Send("SkyhaulGone", "text"), -1);
}

// A client that hangs costs a second for each text until the system calls it hung, after 5 s; it is
// served again once it answers.
TEST(Notifier, AHangingClientIsNotWaitedForLong) {
  Client client("SkyhaulHanging", nullptr);
  const ClockFunctions& clock = NativePlatform().clock;
  EXPECT_EQ(Send("SkyhaulHanging", "before"), 0);
  client.Hold();
  const uint64_t start_ms = clock.tick_ms(nullptr);
  EXPECT_EQ(Send("SkyhaulHanging", "lost"), -1);
  const uint64_t first_ms = clock.tick_ms(nullptr) - start_ms;
  EXPECT_GE(first_ms, 900U);
  EXPECT_LT(first_ms, 2000U);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(Send("SkyhaulHanging", "lost"), -1);
  EXPECT_LT(clock.tick_ms(nullptr) - start_ms, 10000U) << "21 waits would take 21 seconds";
  client.Release();
  int result = -1;
  for (int i = 0; i < 1000 && result != 0; ++i) result = Send("SkyhaulHanging", "again");
  ASSERT_EQ(result, 0);
  EXPECT_EQ(client.received.texts.back(), std::string("again") + '\0');
}

}  // namespace
}  // namespace skyhaul
