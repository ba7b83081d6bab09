#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "store/file_io.h"
#include "temp_folder.h"

namespace vntts {
namespace {

const std::string kOld = "the old contents, which must survive\n";

TEST(AtomicSave, ReplacesTheFileAndLeavesNothingBehind) {
  testing::TempFolder folder;
  folder.Write("store", kOld);
  ASSERT_TRUE(ReplaceFileAtomically(folder / "store", "new"));
  EXPECT_EQ(folder.Read("store"), "new");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"store"});
}

TEST(AtomicSave, AFailureMidWriteKeepsTheOldFile) {
  testing::TempFolder folder;
  folder.Write("store", kOld);
  const auto result = ReplaceFileAtomically(folder / "store", [](ReplacementFile& file) {
    EXPECT_TRUE(file.Write(std::string_view("half of the new ")));
    return false; // the writer gives up half way
  });
  EXPECT_FALSE(result);
  EXPECT_NE(result.error.find("store"), std::string::npos) << result.error;
  EXPECT_EQ(folder.Read("store"), kOld);
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"store"}) << "temporary removed";
}

// A process that dies in the middle of a save (power cut, kill -9) must not have touched the
// file: only its temporary can be incomplete.
TEST(AtomicSave, AProcessKilledMidSaveLeavesTheOldFileWhole) {
  testing::TempFolder folder;
  folder.Write("store", kOld);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ReplaceFileAtomically(folder / "store", [](ReplacementFile& file) {
      file.Write(std::string_view("partial"));
      _exit(3); // dies before the rename
      return true;
    });
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 3);
  EXPECT_EQ(folder.Read("store"), kOld);
  // Its temporary is left behind; once it is old, the next save of the file removes it.
  auto names = folder.Names();
  ASSERT_EQ(names.size(), 2u);
  std::filesystem::last_write_time(
      folder / names[1], std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  folder.Write("store.tmp-abcdef", "a save still under way");
  ASSERT_TRUE(ReplaceFileAtomically(folder / "store", std::string_view("new")));
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"store", "store.tmp-abcdef"}));
}

TEST(AtomicSave, ARenameThatFailsKeepsTheTargetAndRemovesTheTemporary) {
  testing::TempFolder folder;
  std::filesystem::create_directory(folder / "store");
  folder.Write("store/inside", "x");
  EXPECT_FALSE(ReplaceFileAtomically(folder / "store", "new"));
  EXPECT_EQ(folder.Read("store/inside"), "x");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"store"});
}

TEST(AtomicSave, AMissingFolderIsAnError) {
  testing::TempFolder folder;
  const auto result = ReplaceFileAtomically(folder / "no" / "such" / "store", "new");
  EXPECT_FALSE(result);
  EXPECT_NE(result.error.find("temporary"), std::string::npos) << result.error;
}

TEST(AtomicSave, KeepsThePermissionsOfTheReplacedFile) {
  testing::TempFolder folder;
  folder.Write("store", kOld);
  ASSERT_EQ(chmod((folder / "store").c_str(), 0640), 0);
  ASSERT_TRUE(ReplaceFileAtomically(folder / "store", "new"));
  struct stat info {};
  ASSERT_EQ(stat((folder / "store").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0640u);
}

TEST(AtomicSave, BuilderFailureKeepsTheOldFile) {
  testing::TempFolder folder;
  folder.Write("data.dic", kOld);
  const auto result = ReplaceFileByBuilding(folder / "data.dic", [](const auto& temporary) {
    std::ofstream(temporary) << "half";
    return StoreResult::Failure("builder failed");
  });
  EXPECT_FALSE(result);
  EXPECT_EQ(result.error, "builder failed");
  EXPECT_EQ(folder.Read("data.dic"), kOld);
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"data.dic"});
}

TEST(ReadWholeFile, RefusesWhatIsNotAReadableRegularFile) {
  testing::TempFolder folder;
  std::string bytes = "stale";
  EXPECT_FALSE(ReadWholeFile(folder / "missing", bytes));
  EXPECT_TRUE(bytes.empty());
  EXPECT_FALSE(ReadWholeFile(folder.path(), bytes));
  EXPECT_FALSE(ReadWholeFile("/dev/zero", bytes)) << "a device is not a store";
  // A sparse file past the size limit is refused before anything is read.
  folder.Write("huge", "");
  std::filesystem::resize_file(folder / "huge", kMaxStoreFileBytes + 1);
  const auto huge = ReadWholeFile(folder / "huge", bytes);
  EXPECT_FALSE(huge);
  EXPECT_NE(huge.error.find("too large"), std::string::npos) << huge.error;
  folder.Write("store", std::string("a\0b", 3));
  ASSERT_TRUE(ReadWholeFile(folder / "store", bytes));
  EXPECT_EQ(bytes, std::string("a\0b", 3));
}

} // namespace
} // namespace vntts
