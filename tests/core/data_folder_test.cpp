// SPDX-License-Identifier: MIT
#include "core/data_folder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace vntts {
namespace {
namespace fs = std::filesystem;

// A private folder tree under the system's temporary folder, removed afterwards.
class TempTree : public ::testing::Test {
protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "vntts-data-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    root_ = pattern;
  }
  void TearDown() override {
    std::error_code ec;
    fs::remove_all(root_, ec);
  }
  fs::path root_;
};

using ChooseDataFolderTest = TempTree;

TEST_F(ChooseDataFolderTest, EnvironmentThenIndexBesideTheModuleThenShare) {
  const fs::path module_with_index = root_ / "lib";
  fs::create_directories(module_with_index / "index");
  const fs::path module_without_index = root_ / "bare";
  fs::create_directories(module_without_index);
  const fs::path share = "/usr/share/vntts/index";
  struct Case {
    const char* env;
    fs::path module;
    fs::path expected;
  };
  const Case cases[] = {
      {"/data/voice", module_with_index, "/data/voice"},
      {"", module_with_index, module_with_index / "index"}, // empty counts as unset
      {nullptr, module_with_index, module_with_index / "index"},
      {nullptr, module_without_index, share},
      {nullptr, fs::path(), share},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ChooseDataFolder(c.env, c.module, share), c.expected)
        << (c.env ? c.env : "(unset)") << " / " << c.module;
}

TEST(ModuleFolderTest, IsTheFolderOfTheFileThatHoldsThisCode) {
  // This test program links the core statically, so the module is the program itself.
  EXPECT_EQ(ModuleFolder(), fs::canonical("/proc/self/exe").parent_path());
}

using DataFolderTest = TempTree;

// The archive finds its companions by cutting the path at its first dot; through a folder whose
// path holds dots that cut must still land on the file's own extension.
TEST_F(DataFolderTest, FolderWithDotsGivesPathsWhoseFirstDotIsTheFileExtension) {
  const fs::path index = root_ / ".local" / "share" / "vntts.d" / "index";
  fs::create_directories(index);
  for (const char* name : {"main_dic.dat", "main_dic.idx", "main_dic.arr"})
    std::ofstream(index / name) << name;
  const DataFolder folder(index);
  EXPECT_EQ(folder.path(), index);
  const std::string dat = folder.FilePath("main_dic.dat");
  const std::size_t first_dot = dat.find('.');
  ASSERT_NE(first_dot, std::string::npos);
  EXPECT_EQ(dat.substr(first_dot), ".dat") << dat;
  for (const char* extension : {".dat", ".idx", ".arr"})
    EXPECT_TRUE(fs::is_regular_file(dat.substr(0, first_dot) + extension)) << extension;
}

TEST_F(DataFolderTest, RelativeFolderIsMadeAbsoluteAndNoDescriptorStaysOpen) {
  const auto open_descriptors = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator{});
  };
  const auto before = open_descriptors();
  const fs::path saved = fs::current_path();
  fs::create_directories(root_ / "x.y");
  fs::current_path(root_);
  {
    const DataFolder folder(fs::path("x.y"));
    fs::current_path(saved);
    EXPECT_EQ(folder.path(), root_ / "x.y");
  }
  EXPECT_EQ(open_descriptors(), before);
}

} // namespace
} // namespace vntts
