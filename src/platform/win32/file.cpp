#include "platform/file.h"

#include <algorithm>
#include <atomic>
#include <cstdint>

#include "platform/path.h"
#include "platform/temporary_name.h"
#include "platform/win32/handle.h"
#include "platform/win32/leftovers.h"
#include "platform/win32/system_reason.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_api.h"

namespace skyhaul {

namespace {

// A flight has a few megabytes. What is larger by far is something else and would use the memory
// up.
constexpr size_t kMaxFileSize = size_t{1} << 30;
constexpr DWORD kChunk = DWORD{1} << 16;
constexpr size_t kMaxNameInTemporary = 100;  // characters of up to two units; 255 units are allowed
constexpr int kTemporaryAttempts = 100;
constexpr int kShareAttempts = 10;
constexpr DWORD kShareWait_ms = 50;
constexpr DWORD kDirectoryNotSupported = 336;  // a number of the system that older headers lack
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

struct KnownError {
  DWORD error;
  FileProblem problem;
};

constexpr KnownError kKnownErrors[] = {
    {ERROR_FILE_EXISTS, FileProblem::kExists},
    {ERROR_ALREADY_EXISTS, FileProblem::kExists},
    {ERROR_FILE_NOT_FOUND, FileProblem::kMissing},
    {ERROR_PATH_NOT_FOUND, FileProblem::kMissing},
    {ERROR_INVALID_DRIVE, FileProblem::kMissing},
    {ERROR_INVALID_NAME, FileProblem::kMissing},
    {ERROR_BAD_NETPATH, FileProblem::kMissing},
    {ERROR_BAD_NET_NAME, FileProblem::kMissing},
    {ERROR_DIRECTORY, FileProblem::kMissing},
    {ERROR_ACCESS_DENIED, FileProblem::kDenied},
    {ERROR_WRITE_PROTECT, FileProblem::kDenied},
    {ERROR_SHARING_VIOLATION, FileProblem::kDenied},
    {ERROR_LOCK_VIOLATION, FileProblem::kDenied},
    {ERROR_UNABLE_TO_REMOVE_REPLACED, FileProblem::kDenied},
    {kDirectoryNotSupported, FileProblem::kIsDirectory},
    {ERROR_FILE_TOO_LARGE, FileProblem::kTooLarge},
};

FileResult ResultOf(DWORD error) {
  if (error == ERROR_SUCCESS) return {};
  const auto* const known = std::find_if(std::begin(kKnownErrors), std::end(kKnownErrors),
                                         [&](const KnownError& k) { return k.error == error; });
  const bool found = known != std::end(kKnownErrors);
  // Not every version has words for it.
  if (error == kDirectoryNotSupported) return {known->problem, "This is a folder"};
  return {.problem = found ? known->problem : FileProblem::kOther, .reason = SystemReason(error)};
}

// The attributes of what a path leads to; INVALID_FILE_ATTRIBUTES when there is nothing.
DWORD Attributes(const std::wstring& path) {
  return path.empty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(path.c_str());
}

bool IsFolder(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// Shared with everybody: other programs may go on reading a flight, or delete it.
HANDLE Open(const std::wstring& path, DWORD access, DWORD disposition) {
  return CreateFileW(path.c_str(), access, kShareAll, nullptr, disposition, FILE_ATTRIBUTE_NORMAL,
                     nullptr);
}

// Reads to the end, not to a size: pipes have none. Returns 0 or a system error.
DWORD ReadToEnd(HANDLE file, std::string& text) {
  for (;;) {
    const size_t have = text.size();
    text.resize(have + kChunk);
    DWORD count = 0;
    const bool read = ReadFile(file, text.data() + have, kChunk, &count, nullptr) != 0;
    const DWORD error = read ? ERROR_SUCCESS : GetLastError();
    text.resize(have + (read ? count : 0));
    if (text.size() > kMaxFileSize) return ERROR_FILE_TOO_LARGE;
    if (read && count == 0) return ERROR_SUCCESS;
    // The other end of a pipe has closed it: that is its end.
    if (error == ERROR_BROKEN_PIPE || error == ERROR_HANDLE_EOF) return ERROR_SUCCESS;
    if (!read) return error;
  }
}

DWORD OpenAndRead(const std::wstring& path, std::string& text) {
  // Opening a folder fails with "access denied", which would be taken for the reason.
  if (IsFolder(Attributes(path))) return kDirectoryNotSupported;
  const OwnedHandle file(Open(path, GENERIC_READ, OPEN_EXISTING));
  if (file.handle == nullptr) return GetLastError();
  LARGE_INTEGER size{};
  if (GetFileType(file.handle) == FILE_TYPE_DISK && GetFileSizeEx(file.handle, &size) != 0) {
    if (size.QuadPart > static_cast<LONGLONG>(kMaxFileSize)) return ERROR_FILE_TOO_LARGE;
    // One chunk more, because the read that finds the end asks for one too.
    text.reserve(static_cast<size_t>(size.QuadPart) + kChunk);
  }
  return ReadToEnd(file.handle, text);
}

DWORD WriteAll(HANDLE file, const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    const auto wanted = static_cast<DWORD>(std::min<size_t>(text.size() - done, kChunk));
    DWORD count = 0;
    if (WriteFile(file, text.data() + done, wanted, &count, nullptr) == 0) return GetLastError();
    if (count == 0) return ERROR_WRITE_FAULT;  // else a device that takes nothing would loop
    done += count;
  }
  return ERROR_SUCCESS;
}

// What has a path's name at this moment, links followed.
struct Target {
  std::wstring path;
  bool exists = false;
  bool is_file = false;  // not a folder, device or pipe
  DWORD error = ERROR_SUCCESS;
};

// Where the links in a path lead in the end.
std::wstring FinalPath(HANDLE file, const std::wstring& path) {
  // The first call counts the zero at the end, the second does not.
  const DWORD room = GetFinalPathNameByHandleW(file, nullptr, 0, FILE_NAME_NORMALIZED);
  std::wstring resolved(room, L'\0');
  const DWORD length = GetFinalPathNameByHandleW(file, resolved.data(), room, FILE_NAME_NORMALIZED);
  if (length == 0 || length >= room) return path;
  resolved.resize(length);
  return resolved;
}

// Opening for writing asks whether the file may be changed at all: taking its name asks only the
// folder.
Target FindTarget(const std::wstring& path) {
  Target target;
  target.path = path;
  const DWORD attributes = Attributes(path);
  const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
  if (path.empty()) target.error = ERROR_INVALID_NAME;
  if (IsFolder(attributes)) target.error = kDirectoryNotSupported;
  if (target.error != ERROR_SUCCESS) return target;
  target.exists = exists;
  // Wine lets the superuser write all the same.
  if (exists && (attributes & FILE_ATTRIBUTE_READONLY) != 0) target.error = ERROR_ACCESS_DENIED;
  if (target.error != ERROR_SUCCESS) return target;
  const OwnedHandle file(Open(path, GENERIC_WRITE, OPEN_EXISTING));
  if (file.handle == nullptr) {
    if (exists) target.error = GetLastError();
    return target;
  }
  target.exists = true;
  target.is_file = GetFileType(file.handle) == FILE_TYPE_DISK;
  const bool is_link = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (target.is_file && is_link) target.path = FinalPath(file.handle, path);
  return target;
}

// A file in the making beside the one it becomes. The destructor removes it unless it was renamed.
// The system would remove it by itself (FILE_FLAG_DELETE_ON_CLOSE), but not let go of that again
// for a finished file on every version and file system; what a killed program leaves is removed at
// the next save.
struct TemporaryFile {
  explicit TemporaryFile(const std::wstring& target);
  ~TemporaryFile() {
    file.Close();
    if (made) DeleteFileW(path.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  std::wstring folder;  // with its separator; empty for the current one
  std::wstring path;
  bool made = false;
  DWORD error = ERROR_SUCCESS;  // why it could not be made
  OwnedHandle file;
};

TemporaryFile::TemporaryFile(const std::wstring& target) : file(nullptr) {
  static std::atomic<unsigned> counter = 0;
  const size_t name_start = target.find_last_of(L"\\/:") + 1;  // npos + 1 is 0
  folder = target.substr(0, name_start);
  const std::wstring start = folder + L"." + target.substr(name_start, kMaxNameInTemporary);
  for (int i = 0; i < kTemporaryAttempts && !made; ++i) {
    // Longer than the target, so it may need the form without a limit although the target does not.
    const std::string suffix = TemporarySuffix(GetCurrentProcessId(), counter++);
    path = WidePath(Utf8Text(start + WideText(suffix)));
    HANDLE const opened = Open(path, GENERIC_WRITE, CREATE_NEW);
    made = opened != INVALID_HANDLE_VALUE;
    error = made ? ERROR_SUCCESS : GetLastError();
    if (made) file.handle = opened;
    if (error != ERROR_FILE_EXISTS) return;
  }
}

// The bytes are on the disk before the name is.
DWORD Fill(TemporaryFile& temporary, const std::string& text) {
  if (!temporary.made) return temporary.error;
  // Before the text is written, because on a full disk the leftovers' room may be what it needs.
  RemoveLeftovers(temporary.folder, temporary.file.handle);
  const DWORD error = WriteAll(temporary.file.handle, text);
  if (error != ERROR_SUCCESS) return error;
  if (FlushFileBuffers(temporary.file.handle) == 0) return GetLastError();
  // ReplaceFile() refuses a file that is still open.
  temporary.file.Close();
  return ERROR_SUCCESS;
}

bool IsHeld(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION ||
         error == ERROR_ACCESS_DENIED || error == ERROR_UNABLE_TO_REMOVE_REPLACED;
}

// ReplaceFile keeps the old file's permissions; file systems that cannot do that still rename.
DWORD TakeNameOnce(const std::wstring& from, const Target& target, IfExists if_exists) {
  const wchar_t* to = target.path.c_str();
  DWORD how = MOVEFILE_WRITE_THROUGH;
  if (if_exists == IfExists::kReplace) {
    constexpr DWORD kFlags = REPLACEFILE_WRITE_THROUGH | REPLACEFILE_IGNORE_MERGE_ERRORS;
    how |= MOVEFILE_REPLACE_EXISTING;
    if (target.exists && ReplaceFileW(to, from.c_str(), nullptr, kFlags, nullptr, nullptr) != 0) {
      return ERROR_SUCCESS;
    }
    const DWORD error = GetLastError();
    // A rename could succeed where the replacement was refused, and lose the permissions.
    if (target.exists && IsHeld(error)) return error;
  }
  return MoveFileExW(from.c_str(), to, how) != 0 ? ERROR_SUCCESS : GetLastError();
}

// Virus scanners and search indexers open new files for a moment, during which they cannot be
// renamed. By now it is known that the file may be changed and that the folder takes new ones, so a
// denial is worth another try.
DWORD TakeName(TemporaryFile& temporary, const Target& target, IfExists if_exists) {
  DWORD error = TakeNameOnce(temporary.path, target, if_exists);
  for (int i = 1; i < kShareAttempts && IsHeld(error); ++i) {
    Sleep(kShareWait_ms);
    error = TakeNameOnce(temporary.path, target, if_exists);
  }
  if (error == ERROR_SUCCESS) temporary.made = false;
  return error;
}

// A device or a pipe is written to, never replaced by a file.
DWORD WriteDirectly(const std::wstring& path, const std::string& text) {
  const OwnedHandle file(Open(path, GENERIC_WRITE, OPEN_EXISTING));
  return file.handle == nullptr ? GetLastError() : WriteAll(file.handle, text);
}

DWORD WriteTarget(const Target& target, const std::string& text, IfExists if_exists) {
  if (target.exists && if_exists == IfExists::kRefuse) return ERROR_FILE_EXISTS;
  if (target.error != ERROR_SUCCESS) return target.error;
  if (target.exists && !target.is_file) return WriteDirectly(target.path, text);
  TemporaryFile temporary(target.path);
  const DWORD error = Fill(temporary, text);
  return error != ERROR_SUCCESS ? error : TakeName(temporary, target, if_exists);
}

}  // namespace

FileResult ReadWholeFile(const std::string& path, std::string& text) {
  text.clear();
  const std::wstring wide = WidePath(path);
  const DWORD error = wide.empty() ? ERROR_INVALID_NAME : OpenAndRead(wide, text);
  if (error != ERROR_SUCCESS) text.clear();
  return ResultOf(error);
}

FileResult WriteWholeFile(const std::string& path, const std::string& text, IfExists if_exists) {
  return ResultOf(WriteTarget(FindTarget(WidePath(path)), text, if_exists));
}

FileResult MakeFolder(const std::string& path) {
  if (CreateDirectoryW(WidePath(path).c_str(), nullptr) != 0) return {};
  const DWORD error = GetLastError();
  return IsDirectory(path) ? FileResult{} : ResultOf(error);
}

// Asks for the right to add a file, which is what saving one needs.
bool FolderIsWritable(const std::string& path) {
  const std::wstring wide = WidePath(path);
  if (!IsFolder(Attributes(wide))) return false;
  const OwnedHandle folder(CreateFileW(wide.c_str(), FILE_ADD_FILE, kShareAll, nullptr,
                                       OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  return folder.handle != nullptr;
}

// Both stay open while they are compared: a file system may give the number of a closed file away.
bool SameFile(const std::string& left, const std::string& right) {
  const std::wstring wide[] = {WidePath(left), WidePath(right)};
  if (wide[0].empty() || wide[1].empty()) return false;
  // No access is asked for: the numbers of a file that may not be read can be asked for too.
  const OwnedHandle files[] = {OwnedHandle(Open(wide[0], 0, OPEN_EXISTING)),
                               OwnedHandle(Open(wide[1], 0, OPEN_EXISTING))};
  BY_HANDLE_FILE_INFORMATION of[2] = {};
  for (int i = 0; i < 2; ++i) {
    if (files[i].handle == nullptr || GetFileType(files[i].handle) != FILE_TYPE_DISK ||
        GetFileInformationByHandle(files[i].handle, &of[i]) == 0) {
      return false;
    }
  }
  return of[0].dwVolumeSerialNumber == of[1].dwVolumeSerialNumber &&
         of[0].nFileIndexHigh == of[1].nFileIndexHigh && of[0].nFileIndexLow == of[1].nFileIndexLow;
}

bool FileExists(const std::string& path) {
  return Attributes(WidePath(path)) != INVALID_FILE_ATTRIBUTES;
}

bool IsDirectory(const std::string& path) {
  return IsFolder(Attributes(WidePath(path)));
}

}  // namespace skyhaul
