#include "platform/win32/serial.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "platform/win32/line_settings.h"
#include "platform/win32/port_list.h"
#include "platform/win32/port_name.h"
#include "platform/win32/serial_port.h"
#include "platform/win32/system_reason.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

constexpr DWORD kQueueSize = 4096;  // bytes, in each direction
constexpr DWORD kPurgeAll = PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR;
constexpr size_t kMaxTransfer = 1U << 20;  // counts and time-outs have 32 bits

// Drivers end every call in the time that they were given. One that does not must not block the job
// for ever.
constexpr DWORD kDriverGrace_ms = 1000;

// --- Opening ------------------------------------------------------------------------------------

struct OpenProblem {
  DWORD error;
  PortProblem problem;
  const char* before;  // the port's name
  const char* after;
};

// A port that is in use denies access.
constexpr OpenProblem kOpenProblems[] = {
    {ERROR_FILE_NOT_FOUND, PortProblem::kMissing, "There is no port ", ": --ports lists the ports"},
    {ERROR_PATH_NOT_FOUND, PortProblem::kMissing, "There is no port ", ": --ports lists the ports"},
    {ERROR_INVALID_NAME, PortProblem::kMissing, "There is no port ", ": --ports lists the ports"},
    {ERROR_ACCESS_DENIED, PortProblem::kBusy, "Another program is using ", ""},
    {ERROR_SHARING_VIOLATION, PortProblem::kBusy, "Another program is using ", ""},
    {ERROR_BUSY, PortProblem::kBusy, "Another program is using ", ""},
    // Bluetooth's way to say so; the system's text is about a semaphore.
    {ERROR_SEM_TIMEOUT, PortProblem::kOther, "Nothing answers on ",
     ": is the instrument switched on and near?"},
};

PortOpening RefuseForError(const std::string& name, DWORD error) {
  const std::string plain(PlainPortName(name));
  const auto* const found =
      std::find_if(std::begin(kOpenProblems), std::end(kOpenProblems),
                   [&](const OpenProblem& problem) { return problem.error == error; });
  if (found == std::end(kOpenProblems)) {
    return {.problem = PortProblem::kOther, .reason = plain + ": " + SystemReason(error)};
  }
  return {.problem = found->problem, .reason = found->before + plain + found->after};
}

// Windows gives a port to one program alone; Wine opens it for everybody who asks. A named object
// keeps at least two of us apart there, and goes when its program ends, however it ends. Returns
// the system's error number.
DWORD ClaimPort(const std::string& name, OwnedHandle& claim) {
  std::wstring port = WideText(PlainPortName(name));
  std::replace(port.begin(), port.end(), L'\\', L'/');  // a backslash would name a folder
  const std::wstring claim_name = L"Local\\Skyhaul has " + port;
  claim.handle = CreateEventW(nullptr, TRUE, FALSE, claim_name.c_str());
  const DWORD error = GetLastError();
  if (claim.handle == nullptr) return error;
  return error == ERROR_ALREADY_EXISTS ? ERROR_SHARING_VIOLATION : ERROR_SUCCESS;
}

// Any other name could be that of a file.
bool NamesPort(const std::string& name) {
  return IsDeviceName(name) || name == ComPortName(ComPortNumber(name));
}

PortOpening Open(void*, const std::string& name) {
  if (!NamesPort(name)) return RefuseForError(name, ERROR_FILE_NOT_FOUND);
  auto port = std::make_unique<SerialPort>();
  const DWORD error = ClaimPort(name, port->claim);
  if (error != ERROR_SUCCESS) return RefuseForError(name, error);
  const std::wstring wide_name = WideText(name);
  // Overlapped, so that a call can be waited for with a limit and cancelled.
  OwnedHandle file(CreateFileW(wide_name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                               OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
  if (file.handle == nullptr) return RefuseForError(name, GetLastError());
  port->file.handle = file.Release();
  PortOpening opened;
  opened.handle = std::bit_cast<SerialHandle>(port.release());
  return opened;
}

// --- Settings -----------------------------------------------------------------------------------

bool MakeEvent(OwnedHandle& signal, OVERLAPPED& block) {
  if (signal.handle == nullptr) signal.handle = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  block.hEvent = signal.handle;
  return signal.handle != nullptr;
}

// Sets up what an open port needs once: the sizes of its queues, which kinds of event it reports,
// and the events of the overlapped calls. Reads have a time-out of their own, so nobody waits for
// the comm event.
bool Prepare(SerialPort& port) {
  if (port.read_signal.handle != nullptr) return true;
  return SetupComm(port.file.handle, kQueueSize, kQueueSize) != 0 &&
         SetCommMask(port.file.handle, EV_RXCHAR) != 0 &&
         MakeEvent(port.comm_event_signal, port.comm_event) &&
         MakeEvent(port.write_signal, port.write) && MakeEvent(port.read_signal, port.read);
}

SetupStep Configure(void*, SerialHandle handle, const SerialSettings& settings) {
  SerialPort& port = PortOf(handle);
  DCB state{};
  state.DCBlength = sizeof(state);
  if (GetCommState(port.file.handle, &state) == 0) return SetupStep::kGetState;
  COMMTIMEOUTS timeouts = TimeoutsFor(settings.baud);
  if (SetCommTimeouts(port.file.handle, &timeouts) == 0) return SetupStep::kSetTimeouts;
  port.write_ms_per_byte = timeouts.WriteTotalTimeoutMultiplier;
  if (SetLine(state, settings) != 0 || SetCommState(port.file.handle, &state) == 0) {
    return SetupStep::kSetState;
  }
  // After the new speed is set: what was received before was taken in with the old one.
  if (PurgeComm(port.file.handle, kPurgeAll) == 0) return SetupStep::kPurge;
  return Prepare(port) ? SetupStep::kNone : SetupStep::kSetState;
}

// --- Bytes --------------------------------------------------------------------------------------

struct Transfer {
  DWORD error = ERROR_SUCCESS;
  DWORD count = 0;  // bytes
};

// Ends an overlapped call that ReadFile() or WriteFile() began and returned `done` for. Running out
// of time is no error: Windows counts it as a success of fewer bytes, and Wine says ERROR_TIMEOUT.
Transfer FinishTransfer(SerialPort& port, OVERLAPPED& block, BOOL done, DWORD patience_ms) {
  Transfer transfer{.error = done != 0 ? ERROR_SUCCESS : GetLastError()};
  bool cancelled = false;
  if (transfer.error == ERROR_IO_PENDING) {
    cancelled = WaitForSingleObject(block.hEvent, patience_ms + kDriverGrace_ms) != WAIT_OBJECT_0;
    if (cancelled) CancelIoEx(port.file.handle, &block);
  }
  if (transfer.error == ERROR_IO_PENDING || transfer.error == ERROR_SUCCESS) {
    // Waits for a cancelled call too: its block and its buffer must stay until it has ended.
    const BOOL ended = GetOverlappedResult(port.file.handle, &block, &transfer.count, TRUE);
    transfer.error = ended != 0 ? ERROR_SUCCESS : GetLastError();
  }
  if (transfer.error == ERROR_TIMEOUT || (cancelled && transfer.error == ERROR_OPERATION_ABORTED)) {
    transfer.error = ERROR_SUCCESS;
  }
  return transfer;
}

// False when the port cannot even be asked, as when its adapter was pulled out.
bool ClearError(SerialPort& port) {
  constexpr DWORD kLost = CE_OVERRUN | CE_RXOVER | CE_FRAME;
  DWORD errors = 0;
  const bool is_there = ClearCommError(port.file.handle, &errors, nullptr) != 0;
  // Asking clears the flags, so whoever asks has to count.
  if ((errors & kLost) != 0) ++port.losses;
  return is_there;
}

// The drivers of some adapters go on reading nothing, without an error, after the adapter was
// pulled out, so a port that is silent is asked whether it is still there.
int Read(void*, SerialHandle handle, uint8_t* buffer, size_t capacity) {
  SerialPort& port = PortOf(handle);
  const DWORD wanted = static_cast<DWORD>(std::min(capacity, kMaxTransfer));
  const BOOL done = ReadFile(port.file.handle, buffer, wanted, nullptr, &port.read);
  const Transfer transfer = FinishTransfer(port, port.read, done, kReadWait_ms);
  // Bytes count even when the call ended with an error; the next call reports it again.
  if (transfer.count > 0) return static_cast<int>(transfer.count);
  const bool is_there = ClearError(port);
  return transfer.error == ERROR_SUCCESS && is_there ? 0 : -1;
}

int Write(void*, SerialHandle handle, const uint8_t* bytes, size_t count) {
  if (count > kMaxTransfer) return -1;
  SerialPort& port = PortOf(handle);
  const DWORD wanted = static_cast<DWORD>(count);
  const BOOL done = WriteFile(port.file.handle, bytes, wanted, nullptr, &port.write);
  const Transfer transfer = FinishTransfer(port, port.write, done, wanted * port.write_ms_per_byte);
  if (transfer.error == ERROR_SUCCESS && transfer.count == wanted) return 0;
  ClearError(port);
  return -1;
}

void FreeOutput(void*, SerialHandle handle) {
  EscapeCommFunction(PortOf(handle).file.handle, SETXON);
}

uint32_t Losses(void*, SerialHandle handle) {
  SerialPort& port = PortOf(handle);
  ClearError(port);
  return port.losses;
}

// --- The end ------------------------------------------------------------------------------------

void Close(void*, SerialHandle handle) {
  const std::unique_ptr<SerialPort> owned(&PortOf(handle));
}

int List(void*, std::vector<PortInfo>& ports) {
  return ListPorts(HKEY_LOCAL_MACHINE, kSerialPortsKey, ports);
}

std::string NameOf(void*, uint32_t number) {
  return ComPortName(number);
}

}  // namespace

SerialFunctions Win32Serial() {
  return {.open = Open,
          .configure = Configure,
          .read = Read,
          .write = Write,
          .close = Close,
          .free_output = FreeOutput,
          .losses = Losses,
          .list = List,
          .name_of = NameOf};
}

}  // namespace skyhaul
