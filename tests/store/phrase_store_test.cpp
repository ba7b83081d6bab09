// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <sqlite3.h>

#include "store/phrase_store.h"
#include "support/temp_folder.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

const auto In = [](std::string_view utf8) { return Utf8ToInternal(utf8); };

// Runs statements on a store with SQLite itself; returns the rows' first column.
std::vector<std::string> RunSql(const std::filesystem::path& path, const char* sql) {
  std::vector<std::string> column;
  sqlite3* db = nullptr;
  EXPECT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
  const auto add = [](void* out, int, char** values, char**) {
    static_cast<std::vector<std::string>*>(out)->push_back(values[0] ? values[0] : "NULL");
    return 0;
  };
  EXPECT_EQ(sqlite3_exec(db, sql, add, &column, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
  sqlite3_close(db);
  return column;
}

TEST(PhraseStore, SavedPhrasesAreFoundByteForByte) {
  test::TempFolder folder;
  const std::vector<std::string> phrases = {In("hà nội"), In("học sinh"), In("Việt Nam"),
                                            In("học sinh")};
  ASSERT_TRUE(PhraseStore::Save(folder / "data.dic", phrases));
  PhraseStore store;
  ASSERT_TRUE(store.Open(folder / "data.dic"));
  const PhraseLookup& lookup = store;
  const auto is_phrase = [&](const char* first, const char* second) {
    return lookup.IsPhrase(In(first), In(second));
  };
  EXPECT_TRUE(is_phrase("hà", "nội"));
  EXPECT_TRUE(is_phrase("học", "sinh"));
  EXPECT_TRUE(is_phrase("Việt", "Nam"));
  EXPECT_FALSE(is_phrase("việt", "nam")) << "case counts";
  EXPECT_FALSE(is_phrase("ha", "noi")) << "and so do the marks";
  EXPECT_FALSE(is_phrase("hà", ""));
  EXPECT_FALSE(is_phrase("", "nội"));
  EXPECT_FALSE(is_phrase("hà nội", ""));
  EXPECT_FALSE(is_phrase("nội", "hà"));
  EXPECT_EQ(store.AllPhrases(),
            (std::vector<std::string>{In("Việt Nam"), In("hà nội"), In("học sinh")}))
      << "sorted, duplicates dropped";
}

// Other programs read and write the same file: one table Express with a text column Value.
TEST(PhraseStore, SharesItsFileWithOtherPrograms) {
  test::TempFolder folder;
  ASSERT_TRUE(PhraseStore::Save(folder / "data.dic", std::vector<std::string>{"ha noi"}));
  EXPECT_EQ(RunSql(folder / "data.dic", "SELECT typeof(Value) || ':' || Value FROM Express"),
            std::vector<std::string>{"text:ha noi"});
  RunSql(folder / "other.dic", "CREATE TABLE Express(Value TEXT);"
                               "INSERT INTO Express VALUES('Sai Gon'),('Ha Noi');");
  PhraseStore store;
  ASSERT_TRUE(store.Open(folder / "other.dic"));
  EXPECT_TRUE(store.IsPhrase("Ha", "Noi"));
  EXPECT_FALSE(store.IsPhrase("ha", "noi"));
}

TEST(PhraseStore, BadFilesAreErrorsAndTheStoreSaysNo) {
  test::TempFolder folder;
  folder.Write("text.dic", "Ha Noi\r\nSai Gon\r\n");
  RunSql(folder / "other.dic", "CREATE TABLE Words(Value TEXT);");
  for (const auto& [file, error_mentions] :
       {std::pair{"missing.dic", "missing"}, {"text.dic", "Express"}, {"other.dic", "Express"}}) {
    PhraseStore store;
    const auto result = store.Open(folder / file);
    EXPECT_FALSE(result);
    EXPECT_NE(result.error.find(error_mentions), std::string::npos) << result.error;
    EXPECT_FALSE(store.IsOpen());
    EXPECT_FALSE(store.IsPhrase("Ha", "Noi"));
    EXPECT_TRUE(store.AllPhrases().empty());
  }
}

TEST(PhraseStore, SavingReplacesAndAnOpenStoreKeepsItsSnapshot) {
  test::TempFolder folder;
  const auto path = folder / "data.dic";
  ASSERT_TRUE(PhraseStore::Save(path, std::vector<std::string>{"mot hai"}));
  PhraseStore store;
  ASSERT_TRUE(store.Open(path));
  ASSERT_TRUE(PhraseStore::Save(path, std::vector<std::string>{"ba bon"}));
  EXPECT_TRUE(store.IsPhrase("mot", "hai"));
  store.ReloadIfChanged(); // the saved file replaced the one read
  EXPECT_FALSE(store.IsPhrase("mot", "hai"));
  EXPECT_TRUE(store.IsPhrase("ba", "bon"));
  // Lookups are answered from memory: the file is not needed for them.
  std::filesystem::remove(path);
  store.ReloadIfChanged();
  EXPECT_TRUE(store.IsPhrase("ba", "bon"));
  EXPECT_FALSE(PhraseStore::Save(folder / "no" / "data.dic", std::vector<std::string>{"a b"}));
}

TEST(PhraseExtraction, KeepsTwoWordPiecesBetweenBreaksCommasAndStops) {
  EXPECT_EQ(ExtractTwoWordPhrases("Ha Noi, Sai Gon. mot hai ba"),
            (std::vector<std::string>{"Ha Noi", "Sai Gon"}));
  EXPECT_EQ(NormalizeTwoWordPhrase("  Ha   Noi  "), "Ha Noi");
  EXPECT_EQ(NormalizeTwoWordPhrase("Noi"), std::nullopt);
  EXPECT_EQ(ExtractTwoWordPhrases("Ha Noi\r\nHa Noi\nmot\n,,..\n"),
            std::vector<std::string>{"Ha Noi"});
}

} // namespace
} // namespace vntts
