// SPDX-License-Identifier: MIT
#pragma once
// The folder that holds the engine's data files (the syllable archive, the word stores).
//
// Where it is: $VNTTS_DATA_DIR when set, else the "index" folder beside the module that holds
// this code (libvntts.so, or the program it is linked into) when that folder exists, else the
// installed share folder, found relative to that module first so that a moved installation
// still works.
//
// The syllable archive derives its companion file names by cutting its path at the first dot, so
// a folder such as ~/.local/share/vntts/index would break it. A DataFolder therefore keeps the
// folder open and hands out file paths through /proc/self/fd/N/ whenever the folder's own path
// holds a dot: such a path has no dot before the file name.
#include <filesystem>
#include <string>
#include <string_view>

namespace vntts {

// The folder chosen from the three candidates. Pure, so that the order can be tested:
// env_value is the value of $VNTTS_DATA_DIR (null or empty when unset), module_folder the folder
// of the module file, share_folder the installed data folder.
std::filesystem::path ChooseDataFolder(const char* env_value,
                                       const std::filesystem::path& module_folder,
                                       const std::filesystem::path& share_folder);

// The folder of the module file (shared library or program) that contains this code, found with
// dladdr; empty when it cannot be found.
std::filesystem::path ModuleFolder();

// The installed data folder, <prefix>/share/vntts/index.
std::filesystem::path ShareDataFolder();

class DataFolder {
public:
  // Resolves the folder from the environment, the module's folder and the share folder.
  static DataFolder Locate();

  // Uses folder as it is (made absolute). The folder need not exist: every file in it then
  // simply cannot be opened, which the components report themselves.
  explicit DataFolder(const std::filesystem::path& folder);
  DataFolder(DataFolder&& other) noexcept;
  DataFolder& operator=(DataFolder&& other) noexcept;
  DataFolder(const DataFolder&) = delete;
  DataFolder& operator=(const DataFolder&) = delete;
  ~DataFolder();

  // The folder as the user named it, made absolute; for messages and for listing.
  const std::filesystem::path& path() const { return path_; }

  // A path to the file name inside the folder whose only dots are those of name. Valid while
  // this object lives (it may go through the folder's open descriptor).
  std::string FilePath(std::string_view name) const;

private:
  std::filesystem::path path_;
  int directory_fd_ = -1;
};

} // namespace vntts
