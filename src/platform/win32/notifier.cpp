#include "platform/win32/notifier.h"

#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

constexpr UINT kPatience_ms = 1000;

HWND FindClient(const std::string& client) {
  const std::wstring class_name = WideText(client);
  // An empty name would find any window.
  if (class_name.empty()) return nullptr;
  HWND const window = FindWindowW(class_name.c_str(), nullptr);
  if (window != nullptr) return window;
  // Windows that only take messages are not found by the call above.
  return FindWindowExW(HWND_MESSAGE, nullptr, class_name.c_str(), nullptr);
}

// The client's window procedure runs to its end within the call, so texts arrive in their order. A
// window that has not looked at its messages for 5 s is hung to the system, which then does not
// wait for it any more: a client that hangs costs these seconds once.
int Deliver(HWND window, const std::string& text) {
  // SMTO_BLOCK: while this thread waits, no message of ours is handled in between.
  COPYDATASTRUCT data{};
  data.cbData = static_cast<DWORD>(text.size() + 1);
  data.lpData = const_cast<char*>(text.c_str());  // the system copies it and leaves it alone
  DWORD_PTR ignored = 0;
  const LRESULT answered =
      SendMessageTimeoutW(window, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data),
                          SMTO_ABORTIFHUNG | SMTO_BLOCK, kPatience_ms, &ignored);
  return answered != 0 ? 0 : -1;
}

int Send(void*, const std::string& client, const std::string& text) {
  HWND const window = FindClient(client);
  if (window == nullptr) return -1;  // asking costs nothing, so the next text may find it
  return Deliver(window, text);
}

}  // namespace

NotifierFunctions Win32Notifier() {
  return {.send = Send};
}

}  // namespace skyhaul
