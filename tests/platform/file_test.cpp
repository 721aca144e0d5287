#include "platform/file.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/path.h"
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
  EXPECT_EQ(Write(At("file"), "old", IfExists::kRefuse), FileProblem::kNone);
  EXPECT_EQ(Write(At("file"), "new", IfExists::kRefuse), FileProblem::kExists);
  EXPECT_EQ(Read(At("file")), "old");
  EXPECT_EQ(Write(At("file"), "new", IfExists::kReplace), FileProblem::kNone);
  EXPECT_EQ(Read(At("file")), "new");
  EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(File, ProblemsAreToldApart) {
  fs::create_directory(At("folder"));
  Write(At("file"), "text", IfExists::kRefuse);
  const struct {
    std::string path;
    FileProblem reading;
    FileProblem writing;
  } cases[] = {
      {At("none/file"), FileProblem::kMissing, FileProblem::kMissing},
      {At("file/below"), FileProblem::kMissing, FileProblem::kMissing},
      {"", FileProblem::kMissing, FileProblem::kMissing},
      {At("folder"), FileProblem::kIsDirectory, FileProblem::kIsDirectory},
  };
  for (const auto& c : cases) {
    std::string text = "before";
    const FileResult read_result = ReadWholeFile(c.path, text);
    EXPECT_EQ(read_result.problem, c.reading) << c.path;
    EXPECT_FALSE(read_result.reason.empty()) << c.path;
    EXPECT_EQ(text, "") << c.path;
    EXPECT_EQ(Write(c.path, "text", IfExists::kReplace), c.writing) << c.path;
    EXPECT_EQ(Write(c.path, "text", IfExists::kRefuse), c.writing) << c.path;
  }
  EXPECT_EQ(CountFiles(), 2U);
}

TEST_F(File, LongNamesHaveTemporaryFilesToo) {
  EXPECT_EQ(Write(At(std::string(255, 'n')), "text", IfExists::kRefuse), FileProblem::kNone);
  EXPECT_EQ(CountFiles(), 1U);
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
    std::vector<FileProblem> problems(kWriters, FileProblem::kOther);
    std::vector<std::thread> writers;
    for (size_t i = 0; i < kWriters; ++i) {
      writers.emplace_back([&, i] {
        ++ready;
        while (ready < kWriters) std::this_thread::yield();
        problems[i] = WriteWholeFile(path, std::to_string(i), IfExists::kRefuse).problem;
      });
    }
    for (std::thread& writer : writers) writer.join();
    size_t winner = kWriters;
    for (size_t i = 0; i < kWriters; ++i) {
      if (problems[i] == FileProblem::kExists) continue;
      EXPECT_EQ(problems[i], FileProblem::kNone);
      EXPECT_EQ(winner, size_t{kWriters}) << "two writers took the same name";
      winner = i;
    }
    EXPECT_EQ(Read(path), std::to_string(winner));
  }
  EXPECT_EQ(CountFiles(), size_t{kRounds});
}

TEST_F(File, KnowsWhatIsThere) {
  Write(At("file"), "", IfExists::kRefuse);
  EXPECT_TRUE(FileExists(At("file")));
  EXPECT_TRUE(FileExists(folder.path.string()));
  EXPECT_FALSE(FileExists(At("none")));
  EXPECT_TRUE(IsDirectory(folder.path.string()));
  EXPECT_FALSE(IsDirectory(At("file")));
  EXPECT_FALSE(IsDirectory(At("none")));
  EXPECT_TRUE(FolderIsWritable(folder.path.string()));
  EXPECT_FALSE(FolderIsWritable(At("file")));
  EXPECT_FALSE(FolderIsWritable(At("none")));
}

}  // namespace
}  // namespace skyhaul
