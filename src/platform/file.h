#pragma once

#include <string>

namespace skyhaul {

enum class FileProblem { kNone, kExists, kMissing, kDenied, kIsDirectory, kTooLarge, kOther };

struct FileResult {
  FileProblem problem = FileProblem::kNone;
  std::string reason;  // the system's own words; empty on success
};

enum class IfExists { kRefuse, kReplace };

// Reads a whole file, at most 1 GiB, into text. On failure text is empty.
FileResult ReadWholeFile(const std::string& path, std::string& text);

// Writes a whole file or nothing: the text goes to a file in the same folder that has no name yet
// or a temporary one, is flushed to the disk and then takes the name in one step. Temporary files
// that killed programs have left in that folder are removed. With kRefuse, of two programs that
// write the same name at once exactly one succeeds and the other gets kExists. A replaced file
// keeps its permissions, and links are followed to their file. A pipe, a terminal or another device
// is written to in place with kReplace; part of the text is written then when writing fails.
// Folders are not created.
FileResult WriteWholeFile(const std::string& path, const std::string& text, IfExists if_exists);

// True when both paths lead to one file on a disk, through whatever spelling or link. Pipes and
// devices are never the same: what is read from them and what is written to them is not.
bool SameFile(const std::string& left, const std::string& right);

// Makes one folder; the folder above it must be there. A folder that exists already is no failure.
FileResult MakeFolder(const std::string& path);

bool FileExists(const std::string& path);
bool IsDirectory(const std::string& path);
// True when files can be created in the folder.
bool FolderIsWritable(const std::string& path);

}  // namespace skyhaul
