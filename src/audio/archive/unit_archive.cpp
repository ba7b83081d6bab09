// SPDX-License-Identifier: MIT
#include "audio/archive/unit_archive.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

#include "audio/archive/key_case.h"
#include "audio/archive/sorted_search.h"
#include "audio/archive/string_list.h"
#include "audio/archive/unit_decoding.h"

namespace vntts {
namespace {

// Reads up to limit bytes of a regular file; nothing if it cannot be opened or read.
std::optional<std::vector<std::uint8_t>> ReadFileBytes(const std::string& path, std::size_t limit) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return std::nullopt;
  struct stat st {};
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    ::close(fd);
    return std::nullopt;
  }
  const auto size = std::min<std::size_t>(static_cast<std::size_t>(st.st_size), limit);
  std::vector<std::uint8_t> bytes(size);
  std::size_t got = 0;
  while (got < size) {
    const ssize_t n = ::read(fd, bytes.data() + got, size - got);
    if (n <= 0) break;
    got += static_cast<std::size_t>(n);
  }
  ::close(fd);
  bytes.resize(got);
  return bytes;
}

} // namespace

CompanionPaths ArchiveCompanionPaths(std::string_view data_path) {
  const std::size_t dot = data_path.size() > 2 ? data_path.find('.', 2) : std::string_view::npos;
  const std::string stem(dot == std::string_view::npos ? std::string_view{}
                                                       : data_path.substr(0, dot));
  return {stem + ".idx", stem + ".arr"};
}

std::string ArchiveMissingFileText(std::string_view path) {
  std::string text = "Khong tim thay file ";
  text += path;
  text += ", nen khong the thuc hien qua trinh doc duoc.";
  return text;
}

UnitArchive::UnitArchive(std::string data_path, Messages& messages)
    : data_path_(std::move(data_path)), companions_(ArchiveCompanionPaths(data_path_)),
      messages_(messages) {
  if (!LoadKeys() || !LoadRecords()) return;
  // A data file that is missing or empty is not reported: the keys stay answerable and every
  // fetch answers false.
  data_ = MappedFile(data_path_, /*random_access=*/true);
}

void UnitArchive::Fail(std::string_view path) {
  open_ = false;
  keys_.clear();
  records_.clear();
  messages_.Report(ArchiveMissingFileText(path), "", MessageIcon::kWarning);
}

bool UnitArchive::LoadKeys() {
  // A key file holds at most a few hundred kilobytes; 256 MiB bounds what a wrong path can cost.
  constexpr std::size_t kKeyFileLimit = std::size_t{256} << 20;
  const auto bytes = ReadFileBytes(companions_.keys, kKeyFileLimit);
  auto keys = bytes ? ParseStringList(*bytes) : std::nullopt;
  if (!keys) {
    // A key file that cannot be parsed is as unusable as a missing one and is told the same way.
    Fail(companions_.keys);
    return false;
  }
  keys_ = std::move(*keys);
  return true;
}

bool UnitArchive::LoadRecords() {
  const std::size_t wanted = keys_.size() * 8;
  const auto bytes = ReadFileBytes(companions_.records, wanted);
  if (!bytes || bytes->size() < wanted) {
    // Fewer records than keys would leave keys without a recording: refuse the archive.
    Fail(companions_.records);
    return false;
  }
  records_.resize(keys_.size());
  const std::uint8_t* p = bytes->data();
  for (auto& r : records_) {
    r.offset = static_cast<std::uint32_t>(p[0] | p[1] << 8 | p[2] << 16) |
               static_cast<std::uint32_t>(p[3]) << 24;
    r.length = static_cast<std::uint32_t>(p[4] | p[5] << 8 | p[6] << 16) |
               static_cast<std::uint32_t>(p[7]) << 24;
    p += 8;
  }
  return true;
}

std::int32_t UnitArchive::FindUnit(std::string_view key) const {
  if (!open_ || keys_.empty()) return -1;
  const SearchResult at = SearchSorted(keys_, LowerKey(key));
  return at.found ? static_cast<std::int32_t>(at.index) : -1;
}

std::span<const std::uint8_t> UnitArchive::Stream(std::size_t index) const {
  if (!open_ || index >= records_.size() || !data_.Mapped()) return {};
  const UnitRecord r = records_[index];
  const auto view = data_.Bytes();
  // Records come from a file: never trust them to stay inside the mapping.
  if (std::uint64_t{r.offset} + r.length > view.size()) return {};
  return view.subspan(r.offset, r.length);
}

bool UnitArchive::GetUnit(std::string_view key, std::vector<std::int16_t>& samples) const {
  const std::int32_t index = FindUnit(key);
  if (index < 0) return false;
  const auto stream = Stream(static_cast<std::size_t>(index));
  if (stream.empty()) return false;
  const DecoderPool::Loan decoder = decoders_.Borrow();
  return DecodeToUnitFormat(*decoder, stream, samples);
}

bool UnitArchive::GetUnit(std::string_view key, std::span<std::byte> buffer,
                          std::uint32_t& length) const {
  std::vector<std::int16_t> samples;
  if (!GetUnit(key, samples)) return false;
  const std::size_t bytes = std::min(samples.size() * 2, buffer.size() & ~std::size_t{1});
  if (bytes != 0) std::memcpy(buffer.data(), samples.data(), bytes);
  length = static_cast<std::uint32_t>(bytes);
  return true;
}

} // namespace vntts
