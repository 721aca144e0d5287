// A program that is told of a download: it has a window of a class and writes every text that is
// sent to it to a file, each with a line end, until one begins with "Done=".
//   copy_data_client CLASS FILE
// The file is there as soon as the window is. Status 1: nothing is done within a minute.

#include <windows.h>

#include <cstdio>
#include <cstring>

namespace {

constexpr UINT kPatience_ms = 60000;

std::FILE* heard = nullptr;
int status = 1;

void Hear(const COPYDATASTRUCT& data) {
  const auto* text = static_cast<const char*>(data.lpData);
  // What does not end in a zero is not a text of ours, and shows as an empty line.
  const bool is_text = data.cbData > 0 && text[data.cbData - 1] == '\0';
  (void)std::fprintf(heard, "%s\n", is_text ? text : "");
  (void)std::fflush(heard);
  if (!is_text || std::strncmp(text, "Done=", 5) != 0) return;
  status = 0;
  PostQuitMessage(0);
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_COPYDATA) {
    Hear(*reinterpret_cast<const COPYDATASTRUCT*>(l));
    return TRUE;
  }
  if (message == WM_TIMER) PostQuitMessage(0);
  return DefWindowProcW(window, message, w, l);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  WNDCLASSA window_class{};
  window_class.lpfnWndProc = reinterpret_cast<WNDPROC>(Procedure);
  window_class.hInstance = GetModuleHandleW(nullptr);
  window_class.lpszClassName = argv[1];
  RegisterClassA(&window_class);
  HWND const window =
      CreateWindowA(argv[1], "", 0, 0, 0, 0, 0, nullptr, nullptr, window_class.hInstance, nullptr);
  if (window == nullptr || SetTimer(window, 1, kPatience_ms, nullptr) == 0) return 2;
  heard = std::fopen(argv[2], "wb");
  if (heard == nullptr) return 2;
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
  return std::fclose(heard) == 0 ? status : 2;
}
