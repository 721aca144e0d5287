#include "platform/file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/path.h"
#include "platform/temporary_name.h"
#include "tests/platform/file_fixture.h"

namespace skyhaul {
namespace {

namespace fs = std::filesystem;

using File = FileFixture;

TEST_F(File, ReadsBackWhatItWrote) {
  std::string long_text(300000, 'x');
  for (size_t i = 0; i < long_text.size(); ++i) long_text[i] = static_cast<char>(i * 7 % 251);
  // 65536 is the size of one read.
  for (const std::string& text :
       {std::string(), std::string("a\0b\r\n", 5), std::string(65536, 'y'), long_text}) {
    EXPECT_EQ(Write(At("file"), text, IfExists::kReplace), FileProblem::kNone);
    EXPECT_EQ(Read(At("file")), text);
  }
  EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(File, RefusesToReplaceUnlessTold) {
  // With a temporary file the longest name would be too long; 255 bytes are a name's limit.
  for (const std::string& path : {At("file"), At(std::string(255, 'n'))}) {
    EXPECT_EQ(Write(path, "old", IfExists::kRefuse), FileProblem::kNone);
    EXPECT_EQ(Write(path, "new", IfExists::kRefuse), FileProblem::kExists);
    EXPECT_EQ(Read(path), "old");
    EXPECT_EQ(Write(path, "new", IfExists::kReplace), FileProblem::kNone);
    EXPECT_EQ(Read(path), "new");
  }
  EXPECT_EQ(CountFiles(), 2U);
}

TEST_F(File, ProblemsAreToldApart) {
  fs::create_directory(At("folder"));
  Write(At("file"), "text", IfExists::kRefuse);
  const std::pair<std::string, FileProblem> cases[] = {
      {At("none/file"), FileProblem::kMissing},
      {At("file/below"), FileProblem::kMissing},
      {"", FileProblem::kMissing},
      {At("folder"), FileProblem::kIsDirectory},
  };
  for (const auto& [path, problem] : cases) {
    std::string text = "before";
    const FileResult read_result = ReadWholeFile(path, text);
    EXPECT_EQ(read_result.problem, problem) << path;
    EXPECT_FALSE(read_result.reason.empty()) << path;
    EXPECT_EQ(text, "") << path;
    EXPECT_EQ(Write(path, "text", IfExists::kReplace), problem) << path;
    EXPECT_EQ(Write(path, "text", IfExists::kRefuse), problem) << path;
  }
  EXPECT_EQ(CountFiles(), 2U);
}

// Names are UTF-8 on every system, whatever it speaks itself.
TEST_F(File, NamesMayHaveAnyLetter) {
  const std::string path =
      At("\xC3\x9C"
         "bungsflug \xE2\x82\xAC \xF0\x9F\xAA\x82.igc");
  EXPECT_EQ(Write(path, "text", IfExists::kRefuse), FileProblem::kNone);
  EXPECT_EQ(Read(path), "text");
  EXPECT_TRUE(fs::exists(folder.path / fs::path(u8"\u00DCbungsflug \u20AC \U0001FA82.igc")));
}

// The last of them takes two 16-bit units, so that its length depends on the system.
TEST(Path, LengthCountsTheSystemsCharacters) {
  EXPECT_EQ(PathLength(""), 0U);
  EXPECT_EQ(PathLength("/tmp/\xC3\xBC.igc"), 10U);
  EXPECT_EQ(PathLength("\xE2\x82\xAC\xF0\x9F\xAA\x82"), std::wstring(L"\u20AC\U0001FA82").size());
}

TEST_F(File, OfManyWritersOneTakesTheName) {
  constexpr int kRounds = 50;
  constexpr int kWriters = 4;
  for (int round = 0; round < kRounds; ++round) {
    const std::string path = At(std::to_string(round));
    std::atomic<int> ready = 0;
    std::mutex mutex;
    std::vector<std::string> winners;
    std::vector<std::thread> writers;
    for (int i = 0; i < kWriters; ++i) {
      writers.emplace_back([&, text = std::to_string(i)] {
        ++ready;
        while (ready < kWriters) std::this_thread::yield();
        const FileProblem problem = WriteWholeFile(path, text, IfExists::kRefuse).problem;
        if (problem == FileProblem::kExists) return;
        const std::scoped_lock lock(mutex);
        winners.push_back(problem == FileProblem::kNone ? text : "neither written nor refused");
      });
    }
    for (std::thread& writer : writers) writer.join();
    EXPECT_EQ(winners, std::vector{Read(path)});
  }
  EXPECT_EQ(CountFiles(), size_t{kRounds});
}

TEST_F(File, AFileIsTheSameUnderEachOfItsNames) {
  for (const char* name : {"file", "copy"}) Write(At(name), "text", IfExists::kRefuse);
  fs::create_hard_link(At("file"), At("link"));
  const std::tuple<std::string, std::string, bool> cases[] = {
      {At("file"), At("./file"), true}, {At("link"), At("file"), true},
      {At("file"), At("copy"), false},  {At("file"), At("none"), false},
      {At("none"), At("none"), false},  {folder.path.string(), folder.path.string(), false}};
  for (const auto& [left, right, same] : cases) {
    EXPECT_EQ(SameFile(left, right), same) << left << ' ' << right;
  }
}

TEST_F(File, KnowsWhatIsThere) {
  Write(At("file"), "", IfExists::kRefuse);
  const std::tuple<std::string, bool, bool> cases[] = {
      {At("file"), true, false}, {folder.path.string(), true, true}, {At("none"), false, false}};
  for (const auto& [path, exists, is_folder] : cases) {
    EXPECT_EQ(FileExists(path), exists) << path;
    EXPECT_EQ(IsDirectory(path), is_folder) << path;
    EXPECT_EQ(FolderIsWritable(path), is_folder) << path;
  }
}

TEST_F(File, OnlyTheOldLeftoversOfDeadProgramsAreRemoved) {
  const std::string dead = TemporarySuffix(4294967292U, 0);  // no process has that number
  std::vector<std::string> kept = {"a", "a" + dead, ".a" + dead + "x", dead,
                                   ".a.0" + dead.substr(1)};
  WriteText(At(".a" + dead), "");
  for (const std::string& name : kept) WriteText(At(name), "");
  MakeOld();
  kept.push_back(".young" + dead);
  WriteText(At(kept.back()), "");
  Write(At("a"), "text", IfExists::kReplace);
  std::sort(kept.begin(), kept.end());
  EXPECT_EQ(folder.Names(), kept);
}

}  // namespace
}  // namespace skyhaul
