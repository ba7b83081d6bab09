// SPDX-License-Identifier: MIT
#include "store/auto_correct_table.h"

#include <mutex>

#include "store/file_io.h"

namespace vntts {

AutoCorrectTable::AutoCorrectTable(std::vector<AutoCorrectPair> pairs) {
  SetPairs(std::move(pairs));
}

StoreResult AutoCorrectTable::Load(const std::filesystem::path& path) {
  std::string bytes;
  if (auto read = ReadWholeFile(path, bytes); !read) return read;
  auto parsed = ParseAutoCorrectFile(
      std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
  if (!parsed.ok()) return StoreResult::Failure(path.string() + ": " + parsed.error);
  SetPairs(std::move(parsed.pairs));
  return StoreResult::Success();
}

StoreResult AutoCorrectTable::Save(const std::filesystem::path& path) const {
  std::vector<std::uint8_t> bytes;
  {
    std::shared_lock lock(mutex_);
    bytes = SerializeAutoCorrectFile(pairs_);
  }
  return ReplaceFileAtomically(path, [&](ReplacementFile& file) { return file.Write(bytes); });
}

std::optional<std::string> AutoCorrectTable::FindReplacement(std::string_view token) const {
  std::shared_lock lock(mutex_);
  if (auto it = index_.find(std::string(token)); it != index_.end()) return pairs_[it->second].with;
  return std::nullopt;
}

std::vector<AutoCorrectPair> AutoCorrectTable::Pairs() const {
  std::shared_lock lock(mutex_);
  return pairs_;
}

void AutoCorrectTable::SetPairs(std::vector<AutoCorrectPair> pairs) {
  std::unique_lock lock(mutex_);
  pairs_ = std::move(pairs);
  Rebuild();
}

std::size_t AutoCorrectTable::size() const {
  std::shared_lock lock(mutex_);
  return pairs_.size();
}

void AutoCorrectTable::Rebuild() {
  index_.clear();
  index_.reserve(pairs_.size());
  for (std::size_t i = 0; i < pairs_.size(); ++i)
    index_[pairs_[i].replace] = i;
}

} // namespace vntts
