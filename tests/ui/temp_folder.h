// SPDX-License-Identifier: MIT
#pragma once
// A folder of its own for one test, removed with everything in it at the end.
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace vntts::ui::test {

class TempFolder {
public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vntts-ui-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // The path of name in the folder, as a string ending in name.
  std::string operator/(std::string_view name) const { return (path_ / name).string(); }

  std::string Write(std::string_view name, std::string_view bytes) const {
    const std::string file = *this / name;
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
  }
  std::string Read(std::string_view name) const {
    std::ifstream in(*this / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

private:
  std::filesystem::path path_;
};

} // namespace vntts::ui::test
