// SPDX-License-Identifier: MIT
#include "audio/archive/archive_writer.h"

#include <cerrno>
#include <cstdio>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "audio/archive/buffered_writer.h"
#include "audio/archive/mapped_file.h"
#include "audio/archive/sorted_search.h"
#include "audio/archive/string_list.h"

namespace vntts {
namespace {

constexpr std::string_view kCaption = "Create data";

std::string ErrorText(int error) {
  if (error == 0) return "the file is empty";
  return std::strerror(error);
}

void ReportWriteFailure(Messages& messages, const std::string& path, int error) {
  messages.Report("Cannot write " + path + ": " + ErrorText(error), kCaption, MessageIcon::kError);
}

// Writes the source's bytes straight from its mapping; the data file needs no extra buffering.
bool AppendToData(BufferedFileWriter& data, std::span<const std::uint8_t> bytes) {
  data.Write(bytes);
  return data.Ok();
}

} // namespace

CompanionPaths CreateDataCompanionPaths(std::string_view data_path) {
  const std::string stem(data_path.substr(0, data_path.size() >= 3 ? data_path.size() - 3 : 0));
  return {stem + "idx", stem + "arr"};
}

std::size_t RecordingLength(std::span<const std::uint8_t> file) {
  constexpr std::size_t kTagSize = 128;
  if (file.size() >= kTagSize) {
    const auto tag = file.subspan(file.size() - kTagSize, 3);
    if (tag[0] == 'T' && tag[1] == 'A' && tag[2] == 'G') return file.size() - kTagSize;
  }
  return file.size();
}

std::size_t Id3v2Size(std::span<const std::uint8_t> file) {
  if (file.size() < 10 || file[0] != 'I' || file[1] != 'D' || file[2] != '3') return 0;
  if ((file[6] | file[7] | file[8] | file[9]) & 0x80) return 0; // not a synchsafe size: not a tag
  const std::size_t body = (std::size_t{file[6]} << 21) | (std::size_t{file[7]} << 14) |
                           (std::size_t{file[8]} << 7) | file[9];
  const std::size_t footer = (file[5] & 0x10) ? 10 : 0;
  return std::min(file.size(), 10 + body + footer);
}

bool StartsWithFrameHeader(std::span<const std::uint8_t> b) {
  if (b.size() < 4 || b[0] != 0xFF || (b[1] & 0xE0) != 0xE0) return false;
  const int version = (b[1] >> 3) & 3, layer = (b[1] >> 1) & 3;
  const int bit_rate = b[2] >> 4, rate = (b[2] >> 2) & 3;
  return version != 1 && layer != 0 && bit_rate != 15 && rate != 3;
}

namespace {

// Files written under temporary names beside their targets and renamed over them once all are
// complete; removed when they never get that far.
class NewFiles {
public:
  explicit NewFiles(std::vector<std::string> targets) : targets_(std::move(targets)) {}
  ~NewFiles() {
    if (committed_) return;
    for (std::size_t i = 0; i < targets_.size(); ++i)
      ::unlink(Temporary(i).c_str());
  }
  NewFiles(const NewFiles&) = delete;
  NewFiles& operator=(const NewFiles&) = delete;

  std::string Temporary(std::size_t i) const { return targets_[i] + ".new"; }

  // Renames every file over its target: the target that could not be replaced (and errno).
  std::pair<const std::string*, int> Commit() {
    for (std::size_t i = 0; i < targets_.size(); ++i)
      if (::rename(Temporary(i).c_str(), targets_[i].c_str()) != 0) return {&targets_[i], errno};
    committed_ = true;
    return {nullptr, 0};
  }

private:
  std::vector<std::string> targets_;
  bool committed_ = false;
};

} // namespace

ArchiveWriteResult WriteArchive(std::span<const ListedRecording> list, const std::string& data_path,
                                Messages& messages, const ArchiveWriteOptions& options) {
  ArchiveWriteResult result;
  if (list.empty()) {
    messages.Report(kNoFileInListText, "", MessageIcon::kWarning);
    return result;
  }
  const CompanionPaths companions = CreateDataCompanionPaths(data_path);
  // The three files are written beside the old ones and renamed over them at the end: an engine
  // that has the old files mapped keeps reading them (truncating them in place would kill it),
  // and a build that fails leaves the old archive as it was.
  NewFiles files({data_path, companions.records, companions.keys});
  BufferedFileWriter data(files.Temporary(0));
  BufferedFileWriter records(files.Temporary(1));
  BufferedFileWriter keys_file(files.Temporary(2));
  for (const auto* f : {&data, &records, &keys_file}) {
    if (!f->Ok()) {
      const std::string& path = f == &data      ? data_path
                                : f == &records ? companions.records
                                                : companions.keys;
      ReportWriteFailure(messages, path, f->Error());
      return result;
    }
  }

  std::vector<std::string> keys;
  keys.reserve(list.size());
  std::uint64_t offset = 0;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const ListedRecording& entry = list[i];
    const MappedFile source(entry.file);
    std::string problem;
    std::size_t length = 0;
    std::size_t start = 0;
    if (!source.Mapped()) {
      problem = ErrorText(source.Error());
    } else {
      length = RecordingLength(source.Bytes());
      if (options.strip_id3v2) {
        start = std::min(length, Id3v2Size(source.Bytes()));
        length -= start;
      }
      if (options.require_frame_header &&
          !StartsWithFrameHeader(source.Bytes().subspan(start, length)))
        problem = "no MPEG audio frame header at its start";
      else if (offset + length > UINT32_MAX)
        problem = "the archive would pass 4 GiB";
    }
    if (!problem.empty()) {
      if (options.skip_unusable) {
        result.skipped.push_back({entry.name, problem});
        if (options.progress) options.progress(i + 1, list.size());
        continue;
      }
      messages.Report("Cannot read " + entry.file.string() + ": " + problem, kCaption,
                      MessageIcon::kError);
      return result;
    }
    keys.push_back(KeyFromListedName(entry.name));
    result.stripped_tags += start != 0;
    if (!AppendToData(data, source.Bytes().subspan(start, length))) {
      ReportWriteFailure(messages, data_path, data.Error());
      return result;
    }
    records.WriteU32(static_cast<std::uint32_t>(offset));
    records.WriteU32(static_cast<std::uint32_t>(length));
    offset += length;
    if (options.progress) options.progress(i + 1, list.size());
  }

  keys_file.Write(SerializeStringList(keys));
  const bool data_ok = data.Close();
  const bool records_ok = records.Close();
  const bool keys_ok = keys_file.Close();
  if (!data_ok || !records_ok || !keys_ok) {
    const std::string& path = !data_ok      ? data_path
                              : !records_ok ? companions.records
                                            : companions.keys;
    ReportWriteFailure(messages, path,
                       !data_ok      ? data.Error()
                       : !records_ok ? records.Error()
                                     : keys_file.Error());
    return result;
  }
  if (const auto [failed, error] = files.Commit(); failed) {
    ReportWriteFailure(messages, *failed, error);
    return result;
  }
  if (options.report_completion)
    messages.Report(kCreateDataCompleteText, "", MessageIcon::kInformation);
  result.ok = true;
  result.units = keys.size();
  result.data_bytes = offset;
  return result;
}

std::vector<ListedRecording> SortListByKey(std::span<const ListedRecording> list,
                                           std::vector<SkippedRecording>& skipped) {
  std::vector<std::pair<std::string, const ListedRecording*>> keyed;
  keyed.reserve(list.size());
  for (const auto& e : list)
    keyed.emplace_back(KeyFromListedName(e.name), &e);
  std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) {
    return CompareKeyBytes(a.first, b.first) < 0;
  });
  std::vector<ListedRecording> out;
  out.reserve(keyed.size());
  const std::string* previous = nullptr;
  for (const auto& [key, entry] : keyed) {
    if (key.empty()) {
      skipped.push_back({entry->name, "the name gives an empty key"});
      continue;
    }
    if (previous && *previous == key) {
      skipped.push_back({entry->name, "another recording has the key \"" + key + "\""});
      continue;
    }
    previous = &key;
    out.push_back(*entry);
  }
  return out;
}

} // namespace vntts
