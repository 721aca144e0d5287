#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
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

  // Nobody has written to the files there for two minutes.
  void MakeOld() const {
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::minutes(2);
    for (const std::string& name : folder.Names()) std::filesystem::last_write_time(At(name), old);
  }

  // Files that are there, temporary ones included.
  size_t CountFiles() const { return folder.Names().size(); }

  ScratchFolder folder;
};

}  // namespace skyhaul
