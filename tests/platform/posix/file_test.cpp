#include "platform/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/posix/new_file.h"
#include "platform/temporary_name.h"
#include "tests/platform/file_fixture.h"
#include "tests/platform/posix/child.h"

namespace skyhaul {
namespace {

namespace fs = std::filesystem;

struct PosixFile : FileFixture {
  static unsigned Permissions(const std::string& path) {
    return static_cast<unsigned>(fs::status(path).permissions());
  }

  // Writes in a child process, as what the first function makes of it.
  template <typename Function>
  static FileProblem ReplaceInChild(Function become, const std::string& path) {
    return static_cast<FileProblem>(InChild([&] {
      become();
      const std::string text(20000, 'n');
      return static_cast<int>(WriteWholeFile(path, text, IfExists::kReplace).problem);
    }));
  }
};

// Also one that leads nowhere yet.
TEST_F(PosixFile, WritesThroughALink) {
  fs::create_directory(At("real"));
  Write(At("real/file"), "old", IfExists::kRefuse);
  for (const std::string name : {"file", "dangling"}) {
    fs::create_symlink("real/" + name, At(name));
    EXPECT_EQ(Write(At(name), "new", IfExists::kRefuse), FileProblem::kExists);
    EXPECT_EQ(Write(At(name), "new", IfExists::kReplace), FileProblem::kNone);
    EXPECT_TRUE(fs::is_symlink(At(name)));
    EXPECT_EQ(Read(At("real/" + name)), "new");
    EXPECT_TRUE(SameFile(At(name), At("real/" + name)));
  }
  EXPECT_EQ(CountFiles(), 3U);
}

TEST_F(PosixFile, TooLargeIsRefusedBeforeReading) {
  WriteText(At("huge"), "");
  fs::resize_file(At("huge"), (uintmax_t{1} << 30) + 1);
  std::string text;
  EXPECT_EQ(ReadWholeFile(At("huge"), text).problem, FileProblem::kTooLarge);
}

TEST_F(PosixFile, PermissionsAreKeptOrTheUsers) {
  const mode_t mask = umask(027);
  Write(At("new"), "text", IfExists::kReplace);
  EXPECT_EQ(Permissions(At("new")), 0640U);
  fs::permissions(At("new"), fs::perms{0606});
  Write(At("new"), "other", IfExists::kReplace);
  EXPECT_EQ(Permissions(At("new")), 0606U);
  umask(mask);
}

TEST_F(PosixFile, NamesWithoutAFolderAreInTheCurrentOne) {
  const auto enter = [&] { fs::current_path(folder.path); };
  EXPECT_EQ(ReplaceInChild(enter, "file"), FileProblem::kNone);
  EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(PosixFile, PipesAndDevicesAreUsedInPlace) {
  EXPECT_FALSE(SameFile("/dev/null", "/dev/null"));
  int ends[2] = {-1, -1};
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  EXPECT_EQ(Write("/dev/fd/" + std::to_string(ends[1]), "text", IfExists::kReplace),
            FileProblem::kNone);
  close(ends[1]);
  EXPECT_EQ(Read("/dev/fd/" + std::to_string(ends[0])), "text");
  close(ends[0]);
  EXPECT_EQ(Write("/dev/full", "text", IfExists::kReplace), FileProblem::kOther);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

// A write-protected file cannot be written, and nothing can be made in a write-protected folder.
TEST_F(PosixFile, ProtectionIsRespected) {
  Write(At("file"), "old", IfExists::kRefuse);
  fs::permissions(At("file"), fs::perms{0444});
  fs::permissions(folder.path, fs::perms{0777});
  // access() asks for the real user, so that one changes too.
  const auto become_user = [] {
    if (geteuid() == 0 && setreuid(65534, 65534) != 0) _exit(255);
  };
  EXPECT_EQ(ReplaceInChild(become_user, At("file")), FileProblem::kDenied);
  EXPECT_EQ(ReplaceInChild(become_user, At("other")), FileProblem::kNone);
  fs::permissions(folder.path, fs::perms{0555});
  EXPECT_EQ(ReplaceInChild(become_user, At("third")), FileProblem::kDenied);
  fs::permissions(folder.path, fs::perms{0777});
  EXPECT_EQ(Read(At("file")), "old");
  EXPECT_EQ(CountFiles(), 2U);
}

// A limit on the file size fails in the middle of the text, as a full disk does.
TEST_F(PosixFile, AFailedWriteLeavesTheOldFileAndNothingElse) {
  Write(At("file"), "old", IfExists::kRefuse);
  for (const char* name : {"file", "new"}) {
    EXPECT_EQ(ReplaceInChild([] { LimitFileSize(5000); }, At(name)), FileProblem::kTooLarge);
  }
  EXPECT_EQ(Read(At("file")), "old");
  EXPECT_EQ(CountFiles(), 1U);
}

// Killed in the middle of the text. What has a name by then goes at a later save.
TEST_F(PosixFile, AKilledProgramLeavesNothingForLong) {
  const auto write_killed = [&](Making making) {
    return InChild([&] {
      LimitFileSize(5000, true);
      return MakeFile({.path = At("file")}, std::string(20000, 'n'), making);
    });
  };
  EXPECT_EQ(write_killed(Making::kUnnamed), -1);
  EXPECT_EQ(CountFiles(), 0U);
  EXPECT_EQ(write_killed(Making::kTemporaryName), -1);
  EXPECT_EQ(CountFiles(), 1U);
  const std::string living = ".file" + TemporarySuffix(static_cast<uint32_t>(getpid()), 0);
  WriteText(At(living), "");
  MakeOld();
  Write(At("file"), "text", IfExists::kReplace);
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{living, "file"}));
}

// On a file system without unnamed files.
TEST_F(PosixFile, ATemporaryNameDoesTheSame) {
  const auto make = [&](const std::string& text, IfExists if_exists) {
    return MakeFile({.path = At("file"), .if_exists = if_exists}, text, Making::kTemporaryName);
  };
  EXPECT_EQ(make("first", IfExists::kRefuse), 0);
  EXPECT_EQ(make("second", IfExists::kRefuse), EEXIST);
  EXPECT_EQ(Read(At("file")), "first");
  EXPECT_EQ(make("third", IfExists::kReplace), 0);
  EXPECT_EQ(Read(At("file")), "third");
  EXPECT_EQ(CountFiles(), 1U);
}

}  // namespace
}  // namespace skyhaul
