#include "transport/trace.h"

#include <mutex>

namespace skyhaul {

namespace {

struct Trace {
  std::mutex mutex;
  std::string contents;
};

Trace& Current() {
  static Trace trace;
  return trace;
}

}  // namespace

void ClearTrace() {
  const std::scoped_lock lock(Current().mutex);
  Current().contents.clear();
}

void TraceText(std::string_view text) {
  const std::scoped_lock lock(Current().mutex);
  std::string& contents = Current().contents;
  // The contents never grow beyond the capacity, so the difference cannot wrap.
  contents.append(text.substr(0, kTraceCapacity - contents.size()));
}

void TraceBytes(const uint8_t* bytes, size_t count) {
  TraceText(std::string_view(reinterpret_cast<const char*>(bytes), count));
}

void TraceHexDump(const uint8_t* bytes, size_t count) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  constexpr size_t kBytesPerLine = 16;
  // Built first and appended at once, so that no other thread's text comes between its lines.
  std::string dump;
  dump.reserve(count * 3 + count / kBytesPerLine + 1);
  for (size_t i = 0; i < count; ++i) {
    dump += ' ';
    dump += kDigits[bytes[i] >> 4];
    dump += kDigits[bytes[i] & 0x0f];
    if (i % kBytesPerLine == kBytesPerLine - 1) dump += '\n';
  }
  if (count % kBytesPerLine != 0) dump += '\n';
  TraceText(dump);
}

std::string TraceContents() {
  const std::scoped_lock lock(Current().mutex);
  return Current().contents;
}

}  // namespace skyhaul
