#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/operation.h"
#include "files/formats.h"

namespace skyhaul {

// Reads a file of any known format. Lines that were skipped or repaired are told as statuses, the
// first of which names the file. Returns the number of records, or -1 after a message titled
// "Reading file".
int LoadFile(const Operation& operation, const std::string& path, const igc::ReadOptions& options,
             FileContents& contents);

// Writes a file in the format of the keyword, or of the path's extension when it is empty, whole or
// not at all. Returns the number of records, or -1 after a message titled "Writing file".
int SaveFile(const Operation& operation, const std::string& path, std::string_view keyword,
             const FileContents& contents, bool overwrite);

// Reads a file to be opened: as LoadFile() does, but one with the extension of IGC files as
// LoadIgcFile() does, whose messages name an IGC file. Returns the number of records, or -1 after a
// message.
int LoadFileToOpen(const Operation& operation, const std::string& path,
                   const igc::ReadOptions& options, FileContents& contents);

// Whether a file that was read is of the kind that is wanted; empty: any. Returns 0, or -1 after a
// message titled "Reading file".
int CheckKind(const Operation& operation, const std::string& path, const FileContents& contents,
              std::optional<FileKind> only);

}  // namespace skyhaul
