// SPDX-License-Identifier: MIT
#include "core/data_folder.h"

#include <gtest/gtest.h>

#include <string>

#include "support/temp_folder.h"
#include "support/tsv_table.h"

namespace vntts {
namespace {
namespace fs = std::filesystem;

TEST(ChooseDataFolderTest, EnvironmentThenIndexBesideTheModuleThenShare) {
  const test::TempFolder root;
  fs::create_directories(root / "lib" / "index");
  const auto resolve = [&](const std::string& path) -> fs::path {
    if (path.starts_with("ROOT")) return root.path().string() + path.substr(4);
    return path == "SHARE" ? "/usr/share/vntts/index" : path;
  };
  for (const auto& row : test::ReadTsv("data_folder_choice"))
    EXPECT_EQ(ChooseDataFolder(row[0] == "(unset)" ? nullptr : row[0].c_str(), resolve(row[1]),
                               resolve("SHARE")),
              resolve(row.at(2)))
        << "line " << row.line;
  // This test program links the core statically, so the module is the program itself.
  EXPECT_EQ(ModuleFolder(), fs::canonical("/proc/self/exe").parent_path());
}

// The archive finds its companions by cutting the path at its first dot; through a folder whose
// path holds dots (here given relative, so made absolute) that cut must still land on the file's
// own extension, and the descriptor that makes it so is closed with the folder.
TEST(DataFolderTest, FolderWithDotsGivesPathsWhoseFirstDotIsTheFileExtension) {
  const auto open_descriptors = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator{});
  };
  const auto before = open_descriptors();
  const test::TempFolder root;
  const fs::path index = fs::path(".local") / "share" / "vntts.d" / "index";
  fs::create_directories(root / index.string());
  for (const char* name : {"main_dic.dat", "main_dic.idx", "main_dic.arr"})
    root.Write((index / name).string(), name);
  const fs::path saved = fs::current_path();
  fs::current_path(root.path());
  {
    const DataFolder folder(index);
    fs::current_path(saved);
    EXPECT_EQ(folder.path(), root / index.string());
    const std::string dat = folder.FilePath("main_dic.dat");
    const std::size_t first_dot = dat.find('.');
    for (const char* extension : {".dat", ".idx", ".arr"})
      EXPECT_TRUE(fs::is_regular_file(dat.substr(0, first_dot) + extension)) << extension;
  }
  EXPECT_EQ(open_descriptors(), before);
}

} // namespace
} // namespace vntts
