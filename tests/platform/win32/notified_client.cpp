#include "tests/platform/notified_client.h"

#include <atomic>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

constexpr UINT kHang = WM_APP;

}  // namespace

// A window that only takes messages, on a thread of its own. Any other is found more easily.
struct NotifiedClient::Own {
  void Run(const std::wstring& class_name);
  static LRESULT CALLBACK Procedure(HWND target, UINT message, WPARAM sender, LPARAM data);

  std::mutex mutex;  // of the texts: those that were given up may come late
  std::vector<std::string> texts;
  std::atomic<bool> ready = false;
  std::atomic<bool> hangs = false;
  HWND window = nullptr;
  DWORD thread_id = 0;
  std::thread thread;
};

LRESULT CALLBACK NotifiedClient::Own::Procedure(HWND target, UINT message, WPARAM sender,
                                                LPARAM data) {
  auto* own = reinterpret_cast<Own*>(GetWindowLongPtrW(target, GWLP_USERDATA));
  if (own != nullptr && message == kHang) own->hangs.wait(true);
  if (own == nullptr || message != WM_COPYDATA) {
    return DefWindowProcW(target, message, sender, data);
  }
  const auto* copied = reinterpret_cast<const COPYDATASTRUCT*>(data);
  std::string text(static_cast<const char*>(copied->lpData), copied->cbData);
  const bool in_form = text.ends_with('\0') && copied->dwData == 0;
  if (in_form) text.pop_back();
  const std::scoped_lock lock(own->mutex);
  own->texts.push_back(in_form ? text : "(damaged)");
  return TRUE;
}

void NotifiedClient::Own::Run(const std::wstring& class_name) {
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = Procedure;
  window_class.hInstance = GetModuleHandleW(nullptr);
  window_class.lpszClassName = class_name.c_str();
  RegisterClassW(&window_class);
  window = CreateWindowW(class_name.c_str(), L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
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

NotifiedClient::NotifiedClient(const std::string& name) : own(new Own) {
  own->thread = std::thread([this, name] { own->Run(WideText(name)); });
  own->ready.wait(false);
}

NotifiedClient::~NotifiedClient() {
  own->hangs = false;
  own->hangs.notify_all();
  PostThreadMessageW(own->thread_id, WM_QUIT, 0, 0);
  own->thread.join();
}

void NotifiedClient::Hang() {
  own->hangs = true;
  SendNotifyMessageW(own->window, kHang, 0, 0);
}

std::vector<std::string> NotifiedClient::TakeTexts() {
  own->hangs = false;
  own->hangs.notify_all();
  const std::scoped_lock lock(own->mutex);
  return std::exchange(own->texts, {});
}

std::string ClientName() {
  return "Skyhaul\xC3\xBC";
}

std::vector<std::string> NobodysNames() {
  return {"", "SkyhaulNobody", "\xFF", std::string(300, 'x')};
}

}  // namespace skyhaul
