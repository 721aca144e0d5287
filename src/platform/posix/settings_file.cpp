#include "platform/posix/settings_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include "platform/file.h"
#include "platform/posix/clock.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/settings_text.h"
#include "platform/posix/system_reason.h"
#include "platform/posix/user_folders.h"

namespace skyhaul {

namespace {

constexpr const char* kFileName = "/skyhaul/settings";
constexpr const char* kLockSuffix = ".lock";
constexpr mode_t kOthers = 077;          // everybody's permissions but the user's
constexpr uint64_t kPatience_ms = 5000;  // a writing takes milliseconds, on a network disk longer
constexpr uint32_t kRetry_ms = 10;

constexpr std::string_view kFirstLines =
    "# Settings of Skyhaul, one Name=value a line. Lines that begin with # are kept.\n"
    "# What each of them means: docs/settings.md. skyhaul --settings shows them all.\n";

struct Change {
  std::string name;
  std::string value;
  IfSet if_set = IfSet::kReplace;
};

struct SettingsFile {
  std::string path;
  SettingsText text;  // as it was opened
  std::vector<Change> changes;
  std::map<std::string, std::string> unfit;  // values that a query could not make sense of
  bool asked = false;                        // there were queries
  std::set<ptrdiff_t> asked_for;             // places of the lines that they have found
  std::vector<std::string> notes;
};

SettingsFile& FileOf(RegistryHandle key) {
  return *static_cast<SettingsFile*>(key);
}

std::string UserPath() {
  const std::string folder = ConfigFolder();
  return folder.empty() ? "" : folder + kFileName;
}

std::string TemplatePath() {
  for (const std::string& folder : SystemConfigFolders()) {
    if (FileExists(folder + kFileName)) return folder + kFileName;
  }
  return {};
}

// Makes an empty file that only the user can read. Returns 1, 0 when it is there already, or -1
// with errno. O_EXCL: of two programs that start at once exactly one makes it.
int MakeFile(const std::string& path) {
  const Descriptor made(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (made.fd >= 0) return 1;
  return errno == EEXIST ? 0 : -1;
}

// The same with the folders that it lies in, which are the user's alone as well.
int MakeFileAndFolders(const std::string& path) {
  const int made = MakeFile(path);
  if (made >= 0 || errno != ENOENT) return made;
  for (size_t slash = path.find('/', 1); slash != std::string::npos;
       slash = path.find('/', slash + 1)) {
    if (mkdir(path.substr(0, slash).c_str(), 0700) != 0 && errno != EEXIST) return -1;
  }
  return MakeFile(path);
}

RegistryOpening Refused(const std::string& path, const std::string& reason) {
  return {.handle = kNoRegistryHandle, .reason = path + ": " + reason};
}

// True when there are no settings yet: no file, or an empty one. An empty one is there while a
// program is about to write its first settings, and remains when that failed.
bool IsNew(const FileResult& read, const std::string& text) {
  return read.problem == FileProblem::kMissing ||
         (read.problem == FileProblem::kNone && text.empty());
}

RegistryOpening OpenText(const std::string& path, const std::string& text) {
  auto file = std::make_unique<SettingsFile>();
  file->path = path;
  file->text = ParseSettingsText(text);
  for (const std::string& note : file->text.notes) {
    file->notes.push_back(path);
    file->notes.back().append(": ").append(note);
  }
  return {.handle = file.release(), .created = text.empty(), .reason = {}};
}

RegistryOpening OpenToRead(const std::string& path) {
  std::string text;
  const FileResult read = ReadWholeFile(path, text);
  if (IsNew(read, text)) return {.missing = true, .reason = {}};
  if (read.problem != FileProblem::kNone) return Refused(path, read.reason);
  return OpenText(path, text);
}

RegistryOpening OpenOrMake(const std::string& path) {
  if (path.empty()) return {.reason = "There is no home folder to keep settings in"};
  if (MakeFileAndFolders(path) < 0) return Refused(path, SystemReason(errno));
  std::string text;
  const FileResult read = ReadWholeFile(path, text);
  if (read.problem != FileProblem::kNone) return Refused(path, read.reason);
  return OpenText(path, text);
}

RegistryOpening Open(void*, RegistryKey which) {
  if (which == RegistryKey::kUser) return OpenOrMake(UserPath());
  const std::string path = which == RegistryKey::kTemplate ? TemplatePath() : UserPath();
  return path.empty() ? RegistryOpening{.missing = true, .reason = {}} : OpenToRead(path);
}

std::string NoteOn(const SettingsFile& file, size_t place, const std::string& text) {
  return file.path + ": Line " + std::to_string(place + 1) + ": " + text;
}

std::string WhatIsExpected(ValueKind kind, size_t capacity) {
  switch (kind) {
    case ValueKind::kNumber:
      return "a whole number of 32 bits";
    case ValueKind::kBinary:
      return "at most " + std::to_string(capacity) + " bytes as hexadecimal digits";
    case ValueKind::kText:
      break;
  }
  return "a text of at most " + std::to_string(capacity) + " bytes";
}

QueryResult Query(void*, RegistryHandle key, const std::string& name, ValueKind kind,
                  size_t capacity, std::string& bytes) {
  SettingsFile& file = FileOf(key);
  file.asked = true;
  const ptrdiff_t place = FindSetting(file.text, name);
  if (place < 0) return QueryResult::kMissing;
  file.asked_for.insert(place);
  const std::string& value = file.text.lines[static_cast<size_t>(place)].value;
  if (BytesFromValue(value, kind, capacity, bytes)) return QueryResult::kFound;
  file.unfit[name] = value;  // so that writing keeps it as a comment: a person typed it
  file.notes.push_back(
      NoteOn(file, static_cast<size_t>(place),
             name + " must be " + WhatIsExpected(kind, capacity) + "; it is not used"));
  return QueryResult::kUnfit;
}

int Set(void*, RegistryHandle key, const std::string& name, ValueKind kind,
        const std::string& bytes, IfSet if_set, std::string&) {
  FileOf(key).changes.push_back(
      {.name = name, .value = ValueFromBytes(bytes, kind), .if_set = if_set});
  return 0;
}

// The lock is a file of its own: the settings file becomes another one each time it is written.
// Returns a descriptor whose closing releases it, or -1 with the reason.
int TakeLock(const std::string& path, std::string& reason) {
  const std::string lock_path = path + kLockSuffix;
  Descriptor lock(open(lock_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  if (lock.fd < 0) {
    reason = lock_path + ": " + SystemReason(errno);
    return -1;
  }
  const ClockFunctions clock = PosixClock();
  const uint64_t end_ms = MonotonicMilliseconds() + kPatience_ms;
  while (flock(lock.fd, LOCK_EX | LOCK_NB) != 0) {
    // On a file system without locks the settings are better written unlocked than not at all.
    if (errno != EWOULDBLOCK && errno != EINTR) break;
    if (MonotonicMilliseconds() >= end_ms) {
      reason = lock_path + ": another program keeps the settings locked";
      return -1;
    }
    clock.wait(clock.context, kRetry_ms);
  }
  return lock.Release();
}

// Takes everybody else's permissions away. Returns 0, or -1 with errno.
int MakePrivate(const std::string& path) {
  struct stat status {};
  if (MakeFileAndFolders(path) < 0 || stat(path.c_str(), &status) != 0) return -1;
  if ((status.st_mode & kOthers) == 0) return 0;
  return chmod(path.c_str(), status.st_mode & 07777 & ~kOthers);
}

// Puts the changes into what the file holds now. An unfit value that nobody has mended meanwhile
// is kept in a comment.
void Apply(const SettingsFile& file, SettingsText& text) {
  for (const Change& change : file.changes) {
    const ptrdiff_t place = FindSetting(text, change.name);
    if (place >= 0 && change.if_set == IfSet::kKeep) continue;
    const auto unfit = file.unfit.find(change.name);
    const bool keep_old = place >= 0 && unfit != file.unfit.end() &&
                          text.lines[static_cast<size_t>(place)].value == unfit->second;
    PutSetting(text, change.name, change.value, keep_old);
  }
}

int Flush(void*, RegistryHandle key, std::string& reason) {
  SettingsFile& file = FileOf(key);
  if (file.changes.empty()) return 0;
  // Under the lock the file is read again, and only the changes go into it, so that what other
  // programs have written since it was opened stays.
  const Descriptor lock(TakeLock(file.path, reason));
  if (lock.fd < 0) return -1;
  if (MakePrivate(file.path) != 0) {
    reason = file.path + ": " + SystemReason(errno);
    return -1;
  }
  std::string text;
  FileResult result = ReadWholeFile(file.path, text);
  SettingsText settings = ParseSettingsText(text.empty() ? kFirstLines : text);
  Apply(file, settings);
  const std::string after = FormatSettingsText(settings);
  // What changes nothing also leaves the file's date.
  if (result.problem == FileProblem::kNone && after != text) {
    result = WriteWholeFile(file.path, after, IfExists::kReplace);
  }
  if (result.problem != FileProblem::kNone) {
    reason = file.path + ": " + result.reason;
    return -1;
  }
  file.changes.clear();
  return 0;
}

// A name that nobody has asked for is likely to be misspelt.
std::vector<std::string> TakeNotes(void*, RegistryHandle key) {
  SettingsFile& file = FileOf(key);
  for (size_t i = 0; file.asked && i < file.text.lines.size(); ++i) {
    const std::string& name = file.text.lines[i].name;
    if (name.empty() || file.asked_for.contains(FindSetting(file.text, name))) continue;
    file.notes.push_back(NoteOn(file, i, "there is no setting " + name));
  }
  return std::exchange(file.notes, {});
}

void Close(void*, RegistryHandle key) {
  const std::unique_ptr<SettingsFile> owner(&FileOf(key));
}

std::string Place(void*) {
  return UserPath();
}

std::string Documents(void*) {
  return DocumentsFolder();
}

}  // namespace

RegistryFunctions PosixRegistry() {
  return {.open = Open,
          .query = Query,
          .set = Set,
          .flush = Flush,
          .take_notes = TakeNotes,
          .close = Close,
          .place = Place,
          .documents_folder = Documents};
}

}  // namespace skyhaul
