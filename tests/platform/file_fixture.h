#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/file.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {

// Reading and writing in a folder of the test's own.
struct FileFixture : testing::Test {
  std::string At(const std::string& name) const { return folder.File(name); }

  static std::string Read(const std::string& path) {
    std::string text;
    const FileResult result = ReadWholeFile(path, text);
    EXPECT_EQ(result.problem, FileProblem::kNone) << result.reason;
    return text;
  }

  static FileProblem Write(const std::string& path, const std::string& text, IfExists if_exists) {
    const FileResult result = WriteWholeFile(path, text, if_exists);
    EXPECT_EQ(result.reason.empty(), result.problem == FileProblem::kNone);
    return result.problem;
  }

  // Files that are there, temporary ones included.
  size_t CountFiles() const { return folder.Names().size(); }

  ScratchFolder folder;
};

}  // namespace skyhaul
