// SPDX-License-Identifier: MIT
#include "store/phrase_store.h"

#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <sqlite3.h>

#include "store/file_io.h"

namespace vntts {

namespace {

std::string SqliteError(const std::filesystem::path& path, sqlite3* db, std::string_view what) {
  std::string text = path.string();
  text.append(": ").append(what);
  if (db != nullptr) text.append(": ").append(sqlite3_errmsg(db));
  return text;
}

bool Execute(sqlite3* db, const char* sql) {
  return sqlite3_exec(db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

int BindText(sqlite3_stmt* statement, int index, std::string_view text) {
  return sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()),
                           SQLITE_TRANSIENT);
}

StoreResult WriteDatabase(const std::filesystem::path& file, std::span<const std::string> phrases) {
  sqlite3* db = nullptr;
  if (sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) !=
      SQLITE_OK) {
    auto result = StoreResult::Failure(SqliteError(file, db, "cannot create the database"));
    sqlite3_close(db);
    return result;
  }
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> guard(db, sqlite3_close);
  // The file is private until it is renamed, so no journal is needed: a failure discards it.
  if (!Execute(db, "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;") ||
      !Execute(db, "CREATE TABLE Express(Value TEXT)") || !Execute(db, "BEGIN"))
    return StoreResult::Failure(SqliteError(file, db, "cannot create the Express table"));
  sqlite3_stmt* insert = nullptr;
  if (sqlite3_prepare_v2(db, "INSERT INTO Express(Value) VALUES(?1)", -1, &insert, nullptr) !=
      SQLITE_OK)
    return StoreResult::Failure(SqliteError(file, db, "cannot prepare the insert"));
  std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> insert_guard(insert, sqlite3_finalize);
  std::vector<std::string_view> unique(phrases.begin(), phrases.end());
  std::sort(unique.begin(), unique.end());
  unique.erase(std::unique(unique.begin(), unique.end()), unique.end());
  for (std::string_view phrase : unique) {
    if (BindText(insert, 1, phrase) != SQLITE_OK || sqlite3_step(insert) != SQLITE_DONE)
      return StoreResult::Failure(SqliteError(file, db, "cannot insert a phrase"));
    sqlite3_reset(insert);
  }
  if (!Execute(db, "CREATE INDEX ExpressValue ON Express(Value)") || !Execute(db, "COMMIT"))
    return StoreResult::Failure(SqliteError(file, db, "cannot finish the database"));
  return StoreResult::Success();
}

// Every phrase of the database, sorted and without duplicates, or the reason it cannot be read.
StoreResult ReadAllPhrases(const std::filesystem::path& path, std::vector<std::string>& out) {
  sqlite3* handle = nullptr;
  if (sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr) !=
      SQLITE_OK) {
    auto result = StoreResult::Failure(SqliteError(path, handle, "cannot open the phrase store"));
    sqlite3_close(handle);
    return result;
  }
  std::unique_ptr<sqlite3, int (*)(sqlite3*)> guard(handle, sqlite3_close);
  sqlite3_stmt* all = nullptr;
  if (sqlite3_prepare_v2(handle, "SELECT Value FROM Express", -1, &all, nullptr) != SQLITE_OK)
    return StoreResult::Failure(
        SqliteError(path, handle, "is not a phrase store with an Express table"));
  std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> all_guard(all, sqlite3_finalize);
  out.clear();
  int step;
  while ((step = sqlite3_step(all)) == SQLITE_ROW) {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(all, 0));
    out.emplace_back(bytes == nullptr ? "" : bytes,
                     static_cast<std::size_t>(sqlite3_column_bytes(all, 0)));
  }
  if (step != SQLITE_DONE)
    return StoreResult::Failure(SqliteError(path, handle, "cannot read the phrases"));
  std::sort(out.begin(), out.end());
  out.erase(std::unique(out.begin(), out.end()), out.end());
  return StoreResult::Success();
}

} // namespace

PhraseStore::PhraseStore() = default;
PhraseStore::~PhraseStore() = default;

std::optional<PhraseStore::FileIdentity> PhraseStore::Identify(const std::filesystem::path& path) {
  struct stat st {};
  if (::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return std::nullopt;
  return FileIdentity{st.st_dev, st.st_ino, static_cast<std::uintmax_t>(st.st_size),
                      std::int64_t{st.st_mtim.tv_sec} * 1'000'000'000 + st.st_mtim.tv_nsec};
}

StoreResult PhraseStore::Open(const std::filesystem::path& path) {
  const auto identity = Identify(path);
  std::vector<std::string> phrases;
  StoreResult result = identity
                           ? ReadAllPhrases(path, phrases)
                           : StoreResult::Failure(path.string() + ": the phrase store is missing");
  std::unique_lock lock(mutex_);
  path_ = path;
  open_ = result.ok;
  identity_ = identity.value_or(FileIdentity{});
  phrases_ = std::move(phrases);
  return result;
}

void PhraseStore::ReloadIfChanged() {
  std::filesystem::path path;
  {
    std::shared_lock lock(mutex_);
    if (path_.empty()) return;
    const auto identity = Identify(path_);
    if (!identity || *identity == identity_) return;
    path = path_;
  }
  std::vector<std::string> phrases;
  const auto identity = Identify(path);
  if (!identity || !ReadAllPhrases(path, phrases)) return;
  std::unique_lock lock(mutex_);
  open_ = true;
  identity_ = *identity;
  phrases_ = std::move(phrases);
}

void PhraseStore::Close() {
  std::unique_lock lock(mutex_);
  open_ = false;
  path_.clear();
  phrases_.clear();
}

bool PhraseStore::IsOpen() const {
  std::shared_lock lock(mutex_);
  return open_;
}

bool PhraseStore::IsPhrase(std::string_view first, std::string_view second) const {
  if (first.empty() || second.empty()) return false;
  std::string key;
  key.reserve(first.size() + 1 + second.size());
  key.append(first).append(" ").append(second);
  return Contains(key);
}

bool PhraseStore::Contains(std::string_view value) const {
  std::shared_lock lock(mutex_);
  return std::binary_search(phrases_.begin(), phrases_.end(), value,
                            [](std::string_view a, std::string_view b) { return a < b; });
}

std::vector<std::string> PhraseStore::AllPhrases() const {
  std::shared_lock lock(mutex_);
  return phrases_;
}

std::size_t PhraseStore::size() const {
  std::shared_lock lock(mutex_);
  return phrases_.size();
}

StoreResult PhraseStore::Save(const std::filesystem::path& path,
                              std::span<const std::string> phrases) {
  return ReplaceFileByBuilding(path, [&](const std::filesystem::path& temporary) {
    return WriteDatabase(temporary, phrases);
  });
}

std::optional<std::string> NormalizeTwoWordPhrase(std::string_view candidate) {
  std::string out;
  bool pending_blank = false;
  for (char c : candidate) {
    if (c == ' ') {
      pending_blank = !out.empty();
      continue;
    }
    if (pending_blank) out.push_back(' ');
    pending_blank = false;
    out.push_back(c);
  }
  if (std::count(out.begin(), out.end(), ' ') != 1) return std::nullopt;
  return out;
}

std::vector<std::string> ExtractTwoWordPhrases(std::string_view text) {
  std::vector<std::string> phrases;
  std::size_t begin = 0;
  while (begin <= text.size()) {
    std::size_t end = text.find_first_of("\r\n,.", begin);
    if (end == std::string_view::npos) end = text.size();
    if (auto phrase = NormalizeTwoWordPhrase(text.substr(begin, end - begin)))
      phrases.push_back(std::move(*phrase));
    begin = end + 1;
  }
  std::sort(phrases.begin(), phrases.end());
  phrases.erase(std::unique(phrases.begin(), phrases.end()), phrases.end());
  return phrases;
}

} // namespace vntts
