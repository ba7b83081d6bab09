// SPDX-License-Identifier: MIT
#pragma once
// The phrase-express store (index/data.dic): an SQLite database with one table
// Express(Value TEXT) whose rows are two-word phrases, "first second", in internal text.
// The speak driver asks, for each word and the word after it, whether the two form a known
// phrase; the answer shortens the gap between them. Opening reads every phrase into memory, so
// a lookup never touches the file (it runs for every word spoken); ReloadIfChanged reads the
// file again when it was saved since. Lookups take the store's own reader lock, separate from
// any lock of the engine's work queue.
#include <cstdint>
#include <filesystem>
#include <optional>
#include <shared_mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/store_result.h"
#include "text/word_stores.h"

namespace vntts {

class PhraseStore final : public PhraseLookup {
public:
  PhraseStore();
  ~PhraseStore() override;
  PhraseStore(const PhraseStore&) = delete;
  PhraseStore& operator=(const PhraseStore&) = delete;

  // Opens the database read-only. A missing file, a file that is not an SQLite database or
  // one without the Express table is an error, and the store then answers no to everything.
  StoreResult Open(const std::filesystem::path& path);
  void Close();
  bool IsOpen() const;
  // Reads the file again when it is not the one read last (saved or replaced since); one stat
  // otherwise. A file that became unreadable leaves the phrases as they were.
  void ReloadIfChanged();

  // Yes only when both words are non-empty and the store holds "first second" byte for byte
  // (case-sensitive).
  bool IsPhrase(std::string_view first, std::string_view second) const override;
  bool Contains(std::string_view value) const;
  std::vector<std::string> AllPhrases() const; // in ascending byte order
  std::size_t size() const;

  // Writes a new store holding `phrases` (duplicates dropped) and replaces the file at `path`
  // atomically; an open store keeps reading its old file until it is opened again.
  static StoreResult Save(const std::filesystem::path& path, std::span<const std::string> phrases);

private:
  struct FileIdentity {
    std::uintmax_t device = 0, inode = 0, size = 0;
    std::int64_t modified_ns = 0;
    bool operator==(const FileIdentity&) const = default;
  };
  static std::optional<FileIdentity> Identify(const std::filesystem::path& path);

  mutable std::shared_mutex mutex_;
  bool open_ = false;
  std::filesystem::path path_;
  FileIdentity identity_;
  std::vector<std::string> phrases_; // sorted, without duplicates
};

// The phrase rule of the Phrase Express tool: blanks trimmed at both ends, runs of blanks made
// one; accepted (and returned) only when exactly one blank remains, i.e. two words.
std::optional<std::string> NormalizeTwoWordPhrase(std::string_view candidate);

// Cuts text into candidates at line breaks, commas and full stops and keeps the two-word ones,
// normalised, sorted in byte order and without duplicates.
std::vector<std::string> ExtractTwoWordPhrases(std::string_view text);

} // namespace vntts
