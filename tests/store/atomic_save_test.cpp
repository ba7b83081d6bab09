// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "store/file_io.h"
#include "support/temp_folder.h"

namespace vntts {
namespace {

using test::TempFolder;

const std::string kOld = "the old contents, which must survive\n";

TEST(AtomicSave, ReplacesTheFileKeepingItsPermissions) {
  TempFolder folder;
  folder.Write("store", kOld);
  ASSERT_EQ(chmod((folder / "store").c_str(), 0640), 0);
  ASSERT_TRUE(ReplaceFileAtomically(folder / "store", "new"));
  EXPECT_EQ(folder.Read("store"), "new");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"store"}) << "no temporary left";
  struct stat info {};
  ASSERT_EQ(stat((folder / "store").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0640u);
}

// However a save fails, the file as it was stays and no temporary is left beside it.
TEST(AtomicSave, AFailedSaveKeepsTheOldFileAndLeavesNoTemporary) {
  TempFolder folder;
  folder.Write("store", kOld);
  const auto gave_up = ReplaceFileAtomically(folder / "store", [](ReplacementFile& file) {
    EXPECT_TRUE(file.Write(std::string_view("half of the new ")));
    return false;
  });
  EXPECT_NE(gave_up.error.find("store"), std::string::npos) << gave_up.error;
  const auto builder = ReplaceFileByBuilding(folder / "store", [](const auto& temporary) {
    std::ofstream(temporary) << "half";
    return StoreResult::Failure("builder failed");
  });
  EXPECT_EQ(builder.error, "builder failed");
  EXPECT_EQ(folder.Read("store"), kOld);
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"store"});
  const auto no_folder = ReplaceFileAtomically(folder / "no" / "store", "new");
  EXPECT_NE(no_folder.error.find("temporary"), std::string::npos) << no_folder.error;
  // A rename that fails (a folder stands where the file goes) removes its temporary too.
  std::filesystem::create_directory(folder / "folder");
  EXPECT_FALSE(ReplaceFileAtomically(folder / "folder", "new"));
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"folder", "store"}));
}

// A process that dies in the middle of a save (power cut, kill -9) must not have touched the
// file: only its temporary can be incomplete.
TEST(AtomicSave, AProcessKilledMidSaveLeavesTheOldFileWhole) {
  TempFolder folder;
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

TEST(ReadWholeFile, RefusesWhatIsNotAReadableRegularFile) {
  TempFolder folder;
  std::string bytes = "stale";
  EXPECT_FALSE(ReadWholeFile(folder / "missing", bytes));
  EXPECT_TRUE(bytes.empty());
  EXPECT_FALSE(ReadWholeFile(folder.path(), bytes));
  EXPECT_FALSE(ReadWholeFile("/dev/zero", bytes)) << "a device is not a store";
  // A sparse file past the size limit is refused before anything is read.
  folder.Write("huge", "");
  std::filesystem::resize_file(folder / "huge", kMaxStoreFileBytes + 1);
  EXPECT_NE(ReadWholeFile(folder / "huge", bytes).error.find("too large"), std::string::npos);
  folder.Write("store", std::string("a\0b", 3));
  ASSERT_TRUE(ReadWholeFile(folder / "store", bytes));
  EXPECT_EQ(bytes, std::string("a\0b", 3));
}

} // namespace
} // namespace vntts
