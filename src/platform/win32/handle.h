#pragma once

#include "platform/win32/windows_api.h"

namespace skyhaul {

// Owns a handle of the system and closes it at the end of its scope. The functions that open files
// and those that make other objects have different values for "none"; both count.
struct OwnedHandle {
  explicit OwnedHandle(HANDLE opened) : handle(opened == INVALID_HANDLE_VALUE ? nullptr : opened) {}
  ~OwnedHandle() { Close(); }
  OwnedHandle(const OwnedHandle&) = delete;
  OwnedHandle& operator=(const OwnedHandle&) = delete;

  void Close() {
    if (handle != nullptr) CloseHandle(handle);
    handle = nullptr;
  }

  // Gives the handle to another owner.
  HANDLE Release() {
    HANDLE const released = handle;
    handle = nullptr;
    return released;
  }

  HANDLE handle;  // null: there is none
};

}  // namespace skyhaul
