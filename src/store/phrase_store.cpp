#include "store/phrase_store.h"

#include <algorithm>
#include <sqlite3.h>

#include "store/file_io.h"

namespace vntts {

struct PhraseStore::Database {
  sqlite3* handle = nullptr;
  sqlite3_stmt* find = nullptr;

  ~Database() {
    sqlite3_finalize(find);
    sqlite3_close(handle);
  }
};

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
  std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> insertGuard(insert, sqlite3_finalize);
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

} // namespace

PhraseStore::PhraseStore() = default;
PhraseStore::~PhraseStore() = default;

StoreResult PhraseStore::Open(const std::filesystem::path& path) {
  std::lock_guard lock(mutex_);
  db_.reset();
  if (!std::filesystem::is_regular_file(path))
    return StoreResult::Failure(path.string() + ": the phrase store is missing");
  auto db = std::make_unique<Database>();
  if (sqlite3_open_v2(path.c_str(), &db->handle, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX,
                      nullptr) != SQLITE_OK)
    return StoreResult::Failure(SqliteError(path, db->handle, "cannot open the phrase store"));
  if (sqlite3_prepare_v2(db->handle, "SELECT Value FROM Express WHERE Value = ?1 LIMIT 1", -1,
                         &db->find, nullptr) != SQLITE_OK)
    return StoreResult::Failure(
        SqliteError(path, db->handle, "is not a phrase store with an Express table"));
  db_ = std::move(db);
  return StoreResult::Success();
}

void PhraseStore::Close() {
  std::lock_guard lock(mutex_);
  db_.reset();
}

bool PhraseStore::IsOpen() const {
  std::lock_guard lock(mutex_);
  return db_ != nullptr;
}

bool PhraseStore::IsPhrase(std::string_view first, std::string_view second) const {
  if (first.empty() || second.empty()) return false;
  std::string key;
  key.reserve(first.size() + 1 + second.size());
  key.append(first).append(" ").append(second);
  return Contains(key);
}

bool PhraseStore::Contains(std::string_view value) const {
  std::lock_guard lock(mutex_);
  if (!db_) return false;
  sqlite3_stmt* find = db_->find;
  bool found = false;
  if (BindText(find, 1, value) == SQLITE_OK && sqlite3_step(find) == SQLITE_ROW) {
    // The index compares with the column's collation; the answer must be byte for byte.
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(find, 0));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(find, 0));
    found = std::string_view(bytes == nullptr ? "" : bytes, size) == value;
  }
  sqlite3_reset(find);
  sqlite3_clear_bindings(find);
  return found;
}

std::vector<std::string> PhraseStore::AllPhrases() const {
  std::lock_guard lock(mutex_);
  std::vector<std::string> phrases;
  if (!db_) return phrases;
  sqlite3_stmt* all = nullptr;
  if (sqlite3_prepare_v2(db_->handle, "SELECT Value FROM Express", -1, &all, nullptr) != SQLITE_OK)
    return phrases;
  while (sqlite3_step(all) == SQLITE_ROW) {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(all, 0));
    phrases.emplace_back(bytes == nullptr ? "" : bytes,
                         static_cast<std::size_t>(sqlite3_column_bytes(all, 0)));
  }
  sqlite3_finalize(all);
  std::sort(phrases.begin(), phrases.end());
  return phrases;
}

std::size_t PhraseStore::size() const {
  std::lock_guard lock(mutex_);
  if (!db_) return 0;
  sqlite3_stmt* count = nullptr;
  std::size_t rows = 0;
  if (sqlite3_prepare_v2(db_->handle, "SELECT COUNT(*) FROM Express", -1, &count, nullptr) ==
          SQLITE_OK &&
      sqlite3_step(count) == SQLITE_ROW)
    rows = static_cast<std::size_t>(sqlite3_column_int64(count, 0));
  sqlite3_finalize(count);
  return rows;
}

StoreResult PhraseStore::Save(const std::filesystem::path& path,
                              std::span<const std::string> phrases) {
  return ReplaceFileByBuilding(path, [&](const std::filesystem::path& temporary) {
    return WriteDatabase(temporary, phrases);
  });
}

std::optional<std::string> NormalizeTwoWordPhrase(std::string_view candidate) {
  std::string out;
  bool pendingBlank = false;
  for (char c : candidate) {
    if (c == ' ') {
      pendingBlank = !out.empty();
      continue;
    }
    if (pendingBlank) out.push_back(' ');
    pendingBlank = false;
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
