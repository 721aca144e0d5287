#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "platform/posix/lock_file.h"
#include "tests/platform/cable.h"
#include "tests/platform/posix/child.h"
#include "tests/support/scratch_folder.h"

namespace skyhaul {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;
namespace fs = std::filesystem;

// As lock files have it.
std::string TenCharacters(pid_t process) {
  const std::string number = std::to_string(process);
  return std::string(10 - number.size(), ' ') + number + "\n";
}

pid_t DeadProcess() {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  waitpid(child, nullptr, 0);
  return child;
}

// Ports whose lock files are in a folder of the test's own. The parent is a process that lives.
struct PortSharingTest : testing::Test {
  PortOpening Open() { return Serial().open(&sharing, link); }

  void SetUp() override {
    fs::create_directory(sharing.lock_folder);
    fs::create_symlink(cable.name, link);
  }

  ScratchFolder folder;
  Cable cable;
  const std::string link = folder.File("by-id");
  PortSharing sharing = {.lock_folder = folder.File("lock"), .locks_pseudo_terminals = true};
  const std::string lock =
      sharing.lock_folder + "/LCK.." + cable.name.substr(cable.name.rfind('/') + 1);
  const pid_t living = getppid();
};

TEST_F(PortSharingTest, TheLockFileTellsOthersWhileThePortIsOpen) {
  const mode_t mask = umask(077);
  const PortOpening opening = Open();
  umask(mask);
  ASSERT_EQ(opening.problem, PortProblem::kNone) << opening.reason;
  EXPECT_EQ(ReadText(lock), TenCharacters(getpid()));
  EXPECT_EQ(fs::status(lock).permissions(), fs::perms{0644});
  Serial().close(&sharing, opening.handle);
  EXPECT_TRUE(fs::is_empty(sharing.lock_folder));
}

TEST_F(PortSharingTest, ALivingProcessKeepsThePortAndADeadOneDoesNot) {
  const std::string four_bytes(reinterpret_cast<const char*>(&living), sizeof living);
  const struct {
    std::string text;
    int age_s = 0;
    bool held = false;
  } cases[] = {
      {.text = "   " + std::to_string(living) + " minicom root\n", .held = true},
      {.text = four_bytes, .age_s = 60, .held = true},
      {.text = TenCharacters(DeadProcess())},
      {.text = TenCharacters(getpid())},  // of a process before this one
      {.text = "-1\n", .age_s = 60},
      {.text = "", .held = true},
      {.text = "", .age_s = 60},
      {.text = "", .age_s = -60},  // of a clock that was ahead
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    WriteText(lock, c.text);
    const auto age = std::chrono::seconds(c.age_s);
    fs::last_write_time(lock, fs::file_time_type::clock::now() - age);
    const PortOpening opening = Open();
    EXPECT_EQ(opening.problem, c.held ? PortProblem::kBusy : PortProblem::kNone);
    if (c.held) {
      EXPECT_THAT(opening.reason, StartsWith("Another program is using " + link + ": "));
      EXPECT_THAT(opening.reason,
                  HasSubstr(c.text.empty() ? "just opening" : "(" + std::to_string(living) + ")"));
      EXPECT_EQ(ReadText(lock), c.text);
    } else {
      EXPECT_EQ(ReadText(lock), TenCharacters(getpid()));
      Serial().close(&sharing, opening.handle);
      EXPECT_FALSE(fs::exists(lock));
    }
  }
}

// Nor does a place that takes no lock files keep a port closed.
TEST_F(PortSharingTest, PseudoTerminalsGetNoLockFileUnasked) {
  for (const char* lock_folder : {"/proc", "lock"}) {
    sharing = {.lock_folder = lock_folder[0] == '/' ? lock_folder : folder.File(lock_folder),
               .locks_pseudo_terminals = lock_folder[0] == '/'};
    const PortOpening opening = Open();
    ASSERT_EQ(opening.problem, PortProblem::kNone) << opening.reason;
    EXPECT_FALSE(fs::exists(lock));
    Serial().close(&sharing, opening.handle);
  }
}

TEST_F(PortSharingTest, OtherProgramsThatHaveThePortOpenAreNamed) {
  int ready[2] = {-1, -1};
  ASSERT_EQ(pipe2(ready, O_CLOEXEC), 0);
  const pid_t child = fork();
  if (child == 0) {
    prctl(PR_SET_NAME, "two\nlines");
    close(static_cast<int>(cable.instrument.handle));  // the other end is not what counts
    const int port = open(cable.name.c_str(), O_RDWR | O_NOCTTY);
    static_cast<void>(!write(ready[1], &port, 1));
    pause();
    _exit(0);
  }
  char byte = 0;
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  const PortOpening opening = Open();
  EXPECT_EQ(opening.problem, PortProblem::kNone) << opening.reason;
  EXPECT_THAT(opening.warning, StartsWith("Other programs have this port open: "));
  EXPECT_THAT(opening.warning, HasSubstr("two lines (" + std::to_string(child) + ")"));
  Serial().close(&sharing, opening.handle);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  const PortOpening alone = Open();
  EXPECT_EQ(alone.warning, "");
  Serial().close(&sharing, alone.handle);
  for (const int end : ready) close(end);
}

}  // namespace
}  // namespace skyhaul
