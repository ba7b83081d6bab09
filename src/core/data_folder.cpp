// SPDX-License-Identifier: MIT
#include "core/data_folder.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <system_error>

#ifndef VNTTS_SHARE_INDEX_DIR
#define VNTTS_SHARE_INDEX_DIR "/usr/local/share/vntts/index"
#endif
// The installed data folder seen from the installed library's folder and from the command's
// (the build system fixes both), so that an installation moved to another prefix still finds
// its data.
#ifndef VNTTS_DATA_FROM_LIBDIR
#define VNTTS_DATA_FROM_LIBDIR "../share/vntts/index"
#endif
#ifndef VNTTS_DATA_FROM_BINDIR
#define VNTTS_DATA_FROM_BINDIR "../share/vntts/index"
#endif

namespace vntts {
namespace fs = std::filesystem;

fs::path ChooseDataFolder(const char* env_value, const fs::path& module_folder,
                          const fs::path& share_folder) {
  if (env_value && *env_value) return fs::path(env_value);
  if (!module_folder.empty()) {
    std::error_code ec;
    fs::path beside = module_folder / "index";
    if (fs::is_directory(beside, ec)) return beside;
  }
  return share_folder;
}

fs::path ModuleFolder() {
  Dl_info info{};
  // Any function of this module will do; dladdr names the file it was loaded from.
  if (dladdr(reinterpret_cast<const void*>(&ModuleFolder), &info) == 0 || !info.dli_fname ||
      !*info.dli_fname)
    return {};
  // The loader names shared libraries by their path, but the program by the name it was started
  // with ("vntts" when found through PATH), which says nothing about its folder.
  fs::path named(info.dli_fname);
  std::error_code ec;
  if (!named.is_absolute()) named = fs::read_symlink("/proc/self/exe", ec);
  if (ec || named.empty()) named = fs::path(info.dli_fname);
  fs::path file = fs::weakly_canonical(named, ec);
  if (ec) file = fs::path(info.dli_fname);
  return file.parent_path();
}

fs::path ShareDataFolder() {
  return fs::path(VNTTS_SHARE_INDEX_DIR);
}

DataFolder DataFolder::Locate() {
  const fs::path module = ModuleFolder();
  fs::path share = ShareDataFolder();
  if (!module.empty()) {
    for (const char* relative : {VNTTS_DATA_FROM_LIBDIR, VNTTS_DATA_FROM_BINDIR}) {
      std::error_code ec;
      const fs::path installed = (module / relative).lexically_normal();
      if (fs::is_directory(installed, ec)) {
        share = installed;
        break;
      }
    }
  }
  return DataFolder(ChooseDataFolder(std::getenv("VNTTS_DATA_DIR"), module, share));
}

DataFolder::DataFolder(const fs::path& folder) {
  std::error_code ec;
  path_ = fs::absolute(folder, ec);
  if (ec) path_ = folder;
  if (path_.native().find('.') != std::string::npos)
    directory_fd_ = ::open(path_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
}

DataFolder::DataFolder(DataFolder&& other) noexcept
    : path_(std::move(other.path_)), directory_fd_(other.directory_fd_) {
  other.directory_fd_ = -1;
}

DataFolder& DataFolder::operator=(DataFolder&& other) noexcept {
  if (this != &other) {
    if (directory_fd_ >= 0) ::close(directory_fd_);
    path_ = std::move(other.path_);
    directory_fd_ = other.directory_fd_;
    other.directory_fd_ = -1;
  }
  return *this;
}

DataFolder::~DataFolder() {
  if (directory_fd_ >= 0) ::close(directory_fd_);
}

std::string DataFolder::FilePath(std::string_view name) const {
  if (directory_fd_ >= 0)
    return "/proc/self/fd/" + std::to_string(directory_fd_) + "/" + std::string(name);
  return (path_ / fs::path(name)).string();
}

} // namespace vntts
