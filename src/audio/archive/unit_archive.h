// SPDX-License-Identifier: MIT
#pragma once
// The read-only syllable archive: three files side by side.
//   <name>.arr  sorted, lower-cased unit keys (string list, see string_list.h)
//   <name>.idx  one {u32 offset, u32 length} record per key, same order, no header
//   <name>.dat  the units' MPEG audio streams end to end, mapped once and never read by calls
// The archive is opened by its constructor. If the key or record file cannot be read, one
// message goes to the Messages sink and the archive stays failed for good: every lookup then
// answers -1 and every fetch false, without further messages.
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "audio/archive/decoder_pool.h"
#include "audio/archive/mapped_file.h"
#include "core/messages.h"

namespace vntts {

struct UnitRecord {
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
};

struct CompanionPaths {
  std::string records; // ".idx"
  std::string keys;    // ".arr"
};

// Cuts the data path before its first '.' at index 2 or later and appends ".idx" / ".arr". A dot
// in a folder name therefore cuts there ("/a.b/index/main_dic.dat" gives "/a.idx"), and a path
// without such a dot yields the bare names ".idx" and ".arr"; callers hand a dot-free folder.
CompanionPaths ArchiveCompanionPaths(std::string_view data_path);

// "Khong tim thay file <path>, nen khong the thuc hien qua trinh doc duoc."
std::string ArchiveMissingFileText(std::string_view path);

class UnitArchive {
public:
  UnitArchive(std::string data_path, Messages& messages);

  bool IsOpen() const { return open_; }

  // Index of the key (lower-cased first) in the key list, or -1 (also when the archive failed).
  std::int32_t FindUnit(std::string_view key) const;

  // Decodes the key's unit and converts it to the unit format: signed 16-bit mono 22050 Hz.
  // False for a failed archive, an unknown key, a missing data mapping, a record that runs past
  // the data file or a stream the decoder rejects.
  bool GetUnit(std::string_view key, std::vector<std::int16_t>& samples) const;

  // The same into a caller's buffer: length receives the bytes copied. A unit longer than the
  // buffer is cut to the buffer (whole samples) rather than dropped.
  bool GetUnit(std::string_view key, std::span<std::byte> buffer, std::uint32_t& length) const;

  const std::vector<std::string>& Keys() const { return keys_; }
  const std::vector<UnitRecord>& Records() const { return records_; }
  // The compressed stream of a unit (empty when the record is not backed by the data file).
  std::span<const std::uint8_t> Stream(std::size_t index) const;

private:
  bool LoadKeys();
  bool LoadRecords();
  void Fail(std::string_view path);

  std::string data_path_;
  CompanionPaths companions_;
  Messages& messages_;
  bool open_ = true;
  std::vector<std::string> keys_;
  std::vector<UnitRecord> records_;
  MappedFile data_;
  mutable DecoderPool decoders_;
};

} // namespace vntts
