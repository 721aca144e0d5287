#include "commands/target.h"

#include "platform/file.h"
#include "platform/path.h"

namespace skyhaul {

int CheckFolder(const Operation& operation, const std::string& folder, const char* title) {
  if (FolderIsWritable(folder)) return 0;
  // Two reasons, because a person mends them in different ways.
  const char* text =
      IsDirectory(folder) ? "There is no permission to save files in " : "There is no folder ";
  ShowMessage(operation, text + folder, title);
  return -1;
}

int CheckTarget(const Operation& operation, const std::string& path, std::string_view keyword,
                FileKind kind, bool overwrite) {
  constexpr const char* kTitle = "Writing file";
  std::string message;
  if (FormatToWrite(path, keyword, kind, message) == nullptr) {
    ShowMessage(operation, message, kTitle);
    return -1;
  }
  // Asked again when the file is written: another program may make it during the transfer.
  if (PathLength(path) > kMaxWrittenPath) {
    ShowMessage(operation, "Too long file name\n" + path, kTitle);
    return -1;
  }
  if (FileExists(path) && !overwrite) {
    ShowMessage(operation, path + " exists already", kTitle);
    return -1;
  }
  // Writing whole or not at all makes a second file beside the first, so the folder counts, not the
  // file.
  return CheckFolder(operation, FolderOf(path), kTitle);
}

}  // namespace skyhaul
