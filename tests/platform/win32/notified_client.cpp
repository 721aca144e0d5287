#include "tests/platform/notified_client.h"

#include <atomic>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

// A window that only takes messages, on a thread of its own. Any other is found more easily.
struct NotifiedClient::Own {
  void Run(const std::wstring& class_name);
  static LRESULT CALLBACK Procedure(HWND target, UINT message, WPARAM sender, LPARAM data);

  std::mutex mutex;   // of the texts; a client that hangs waits for it
  bool hung = false;  // the mutex is held until TakeTexts()
  std::vector<std::string> texts;
  std::atomic<HWND> window = nullptr;
  std::thread thread;
};

LRESULT CALLBACK NotifiedClient::Own::Procedure(HWND target, UINT message, WPARAM sender,
                                                LPARAM data) {
  auto* own = reinterpret_cast<Own*>(GetWindowLongPtrW(target, GWLP_USERDATA));
  if (own == nullptr || message != WM_COPYDATA) {
    return DefWindowProcW(target, message, sender, data);
  }
  // Before the lock: a sender that has given up may take its data away.
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
  HWND const made = CreateWindowW(class_name.c_str(), L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                  window_class.hInstance, nullptr);
  SetWindowLongPtrW(made, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  window = made;
  window.notify_all();
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  DestroyWindow(made);
  UnregisterClassW(class_name.c_str(), window_class.hInstance);
}

NotifiedClient::NotifiedClient(const std::string& name) : own(new Own) {
  own->thread = std::thread([this, name] { own->Run(WideText(name)); });
  own->window.wait(nullptr);
}

NotifiedClient::~NotifiedClient() {
  TakeTexts();
  PostThreadMessageW(GetWindowThreadProcessId(own->window, nullptr), WM_QUIT, 0, 0);
  own->thread.join();
}

void NotifiedClient::Hang() {
  own->mutex.lock();
  own->hung = true;
}

std::vector<std::string> NotifiedClient::TakeTexts() {
  if (std::exchange(own->hung, false)) own->mutex.unlock();
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
