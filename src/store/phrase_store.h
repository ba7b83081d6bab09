#pragma once
// The phrase-express store (index/data.dic): an SQLite database with one table
// Express(Value TEXT) whose rows are two-word phrases, "first second", in internal text.
// The speak driver asks, for each word and the word after it, whether the two form a known
// phrase; the answer shortens the gap between them. Lookups run on the speaking thread and take
// the store's own lock, separate from any lock of the engine's work queue.
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/store_result.h"
#include "text/word_stores.h"

struct sqlite3;
struct sqlite3_stmt;

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
  struct Database;
  mutable std::mutex mutex_;
  std::unique_ptr<Database> db_;
};

// The phrase rule of the Phrase Express tool: blanks trimmed at both ends, runs of blanks made
// one; accepted (and returned) only when exactly one blank remains, i.e. two words.
std::optional<std::string> NormalizeTwoWordPhrase(std::string_view candidate);

// Cuts text into candidates at line breaks, commas and full stops and keeps the two-word ones,
// normalised, sorted in byte order and without duplicates.
std::vector<std::string> ExtractTwoWordPhrases(std::string_view text);

} // namespace vntts
