// SPDX-License-Identifier: MIT
#pragma once
// The auto-correct table the speak driver consults for a token it could not say: the token as
// it stands (case and all) maps to the text read in its place. Loaded from and saved to the
// AutoCorrect file layout; readers on the speaking thread and a reload from the host thread may
// meet, so every access takes the table's lock.
#include <filesystem>
#include <optional>
#include <shared_mutex>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/auto_correct_file.h"
#include "store/store_result.h"
#include "text/word_stores.h"

namespace vntts {

class AutoCorrectTable final : public AutoCorrectLookup {
public:
  AutoCorrectTable() = default;
  explicit AutoCorrectTable(std::vector<AutoCorrectPair> pairs);

  // Replaces the contents with the file's pairs. On any failure the table keeps what it held.
  StoreResult Load(const std::filesystem::path& path);
  // Writes every pair in order, replacing the file atomically.
  StoreResult Save(const std::filesystem::path& path) const;

  // When a token is listed more than once, the pair that comes last wins, as when the pairs
  // are entered one by one into a map.
  std::optional<std::string> FindReplacement(std::string_view token) const override;

  std::vector<AutoCorrectPair> Pairs() const;
  void SetPairs(std::vector<AutoCorrectPair> pairs);
  std::size_t size() const;

private:
  void Rebuild(); // needs the lock held for writing

  mutable std::shared_mutex mutex_;
  std::vector<AutoCorrectPair> pairs_;
  std::unordered_map<std::string, std::size_t> index_;
};

} // namespace vntts
