// SPDX-License-Identifier: MIT
#pragma once
// Whole-file reads and crash-safe replacement of a file. A store is saved by writing a
// temporary file beside the target, flushing it to disk and renaming it over the target, so
// that at every moment the target holds either its old or its new contents in full.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "store/store_result.h"

namespace vntts {

// Files larger than this are refused instead of read: no word store comes near it, and it
// keeps a wrong path (a disk image, a device) from eating the memory.
inline constexpr std::uintmax_t kMaxStoreFileBytes = 256u * 1024 * 1024;

// Reads the whole file into `out`.
StoreResult ReadWholeFile(const std::filesystem::path& path, std::string& out);

// Receives the new contents of a file being replaced.
class ReplacementFile {
public:
  explicit ReplacementFile(int fd) : fd_(fd) {}
  bool Write(std::string_view bytes);
  bool Write(std::span<const std::uint8_t> bytes);

private:
  int fd_;
};

// Replaces `path` with what `fill` writes. When fill returns false, a write fails or the
// rename fails, the target is untouched and the temporary file is removed. The new file keeps
// the permission bits of the one it replaces (0644 for a new file).
StoreResult ReplaceFileAtomically(const std::filesystem::path& path,
                                  const std::function<bool(ReplacementFile&)>& fill);
StoreResult ReplaceFileAtomically(const std::filesystem::path& path, std::string_view contents);

// For stores that are written by a library which wants a file name of its own (SQLite): makes
// an empty temporary file beside `path`, lets `build` fill it by name, then renames it over
// `path`. Same guarantees as above.
StoreResult ReplaceFileByBuilding(
    const std::filesystem::path& path,
    const std::function<StoreResult(const std::filesystem::path& temporary)>& build);

} // namespace vntts
