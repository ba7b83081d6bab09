// SPDX-License-Identifier: MIT
#pragma once
// Writes the three files of a syllable archive from a list of recordings, with the rules of the
// Create data tool: key = listed name without its last four characters, lower-cased; the
// recording's bytes go to the data file end to end (a trailing 128-byte ID3v1 "TAG" block left
// out); one {offset, length} record per key; the keys last, through a 4096-byte buffered writer.
// The list's order is written as it is: a list sorted by full file name can hold keys out of
// order (a-b.mp3 sorts before a.mp3), which the tool accepts; SortListByKey() repairs that.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "audio/archive/recording_list.h"
#include "audio/archive/unit_archive.h"
#include "core/messages.h"

namespace vntts {

inline constexpr std::string_view kNoFileInListText = "No file in listbox";
inline constexpr std::string_view kCreateDataCompleteText = "Create data complete.";

// The tool's companion names: the chosen path without its last three characters, then "idx"
// and "arr" ("voice.data" gives "voice.didx" and "voice.darr").
CompanionPaths CreateDataCompanionPaths(std::string_view data_path);

// Bytes of a recording that go into the archive: all of them, or all but the last 128 when
// those start with "TAG".
std::size_t RecordingLength(std::span<const std::uint8_t> file);

// Size of an ID3v2 tag at the start of the bytes (header, body and footer), 0 without one.
std::size_t Id3v2Size(std::span<const std::uint8_t> file);

// True when the bytes start with an MPEG audio frame header that names a valid layer, bit rate
// and sampling frequency.
bool StartsWithFrameHeader(std::span<const std::uint8_t> bytes);

struct SkippedRecording {
  std::string name;   // the listed name
  std::string reason; // why it was left out
};

struct ArchiveWriteOptions {
  // Leave out recordings that cannot be read, are empty or would overflow the 32-bit offsets,
  // instead of failing the whole archive on the first one.
  bool skip_unusable = false;
  // Leave a leading ID3v2 tag out of the data (the decoder wants a frame header at byte 0).
  bool strip_id3v2 = false;
  // Treat a recording that does not start with an MPEG audio frame header (after any stripped
  // tag) as unusable.
  bool require_frame_header = false;
  // Report kCreateDataCompleteText when done.
  bool report_completion = true;
  // Called after each recording with (done, total).
  std::function<void(std::size_t, std::size_t)> progress;
};

struct ArchiveWriteResult {
  bool ok = false;
  std::size_t units = 0;         // keys written
  std::uint64_t data_bytes = 0;  // size of the data file
  std::size_t stripped_tags = 0; // ID3v2 tags left out
  std::vector<SkippedRecording> skipped;
};

// Empty list: reports kNoFileInListText and writes nothing. A recording that cannot be used
// stops the build with a report naming it (unless skip_unusable); so does an output file that
// cannot be written. Keys from non-ASCII names are whatever the listing made of them.
ArchiveWriteResult WriteArchive(std::span<const ListedRecording> list, const std::string& data_path,
                                Messages& messages, const ArchiveWriteOptions& options = {});

// Orders a list by its keys (stable) and drops entries whose key is empty or repeats an
// earlier one, noting each dropped entry in skipped. The result reads correctly with FindUnit.
std::vector<ListedRecording> SortListByKey(std::span<const ListedRecording> list,
                                           std::vector<SkippedRecording>& skipped);

} // namespace vntts
