#include <gtest/gtest.h>

#include <sqlite3.h>
#include <thread>

#include "store/phrase_store.h"
#include "temp_folder.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

std::string In(std::string_view utf8) {
  return Utf8ToInternal(utf8);
}

void RunSql(const std::filesystem::path& path, const char* sql) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
  sqlite3_close(db);
}

TEST(PhraseStore, SavedPhrasesAreFoundByteForByte) {
  testing::TempFolder folder;
  const std::vector<std::string> phrases = {In("hà nội"), In("học sinh"), In("Việt Nam"),
                                            In("học sinh")};
  ASSERT_TRUE(PhraseStore::Save(folder / "data.dic", phrases));
  PhraseStore store;
  ASSERT_TRUE(store.Open(folder / "data.dic"));
  const PhraseLookup& lookup = store;
  struct Case {
    const char* first;
    const char* second;
    bool phrase;
  };
  const Case cases[] = {
      {"hà", "nội", true},   {"học", "sinh", true},
      {"Việt", "Nam", true}, {"việt", "nam", false}, // case counts
      {"ha", "noi", false},                          // and so do the marks
      {"hà", "", false},     {"", "nội", false},
      {"nội", "hà", false},  {"hà nội", "", false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(lookup.IsPhrase(In(c.first), In(c.second)), c.phrase) << c.first << "|" << c.second;
  EXPECT_EQ(store.size(), 3u) << "duplicates dropped";
  EXPECT_EQ(store.AllPhrases(),
            (std::vector<std::string>{In("Việt Nam"), In("hà nội"), In("học sinh")}));
}

TEST(PhraseStore, TheTableIsExpressWithATextColumnValue) {
  testing::TempFolder folder;
  ASSERT_TRUE(PhraseStore::Save(folder / "data.dic", std::vector<std::string>{"ha noi"}));
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open((folder / "data.dic").c_str(), &db), SQLITE_OK);
  sqlite3_stmt* st = nullptr;
  ASSERT_EQ(sqlite3_prepare_v2(db, "SELECT typeof(Value), Value FROM Express", -1, &st, nullptr),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_step(st), SQLITE_ROW);
  EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)), "text");
  EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(st, 1)), "ha noi");
  sqlite3_finalize(st);
  sqlite3_close(db);
}

TEST(PhraseStore, ReadsAStoreMadeByAnotherProgram) {
  testing::TempFolder folder;
  RunSql(folder / "other.dic", "CREATE TABLE Express(Value TEXT);"
                               "INSERT INTO Express VALUES('Sai Gon'),('Ha Noi');");
  PhraseStore store;
  ASSERT_TRUE(store.Open(folder / "other.dic"));
  EXPECT_TRUE(store.IsPhrase("Ha", "Noi"));
  EXPECT_FALSE(store.IsPhrase("ha", "noi"));
}

TEST(PhraseStore, BadFilesAreErrorsAndTheStoreSaysNo) {
  testing::TempFolder folder;
  folder.Write("text.dic", "Ha Noi\r\nSai Gon\r\n");
  RunSql(folder / "other.dic", "CREATE TABLE Words(Value TEXT);");
  struct Case {
    const char* file;
    const char* errorMentions;
  };
  const Case cases[] = {
      {"missing.dic", "missing"}, {"text.dic", "Express"}, {"other.dic", "Express"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    PhraseStore store;
    const auto result = store.Open(folder / c.file);
    EXPECT_FALSE(result);
    EXPECT_NE(result.error.find(c.errorMentions), std::string::npos) << result.error;
    EXPECT_FALSE(store.IsOpen());
    EXPECT_FALSE(store.IsPhrase("Ha", "Noi"));
    EXPECT_TRUE(store.AllPhrases().empty());
  }
}

TEST(PhraseStore, SavingReplacesAndAnOpenStoreKeepsItsSnapshot) {
  testing::TempFolder folder;
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
  ASSERT_TRUE(PhraseStore::Save(path, std::vector<std::string>{"ba bon"}));
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"data.dic"});
  EXPECT_FALSE(PhraseStore::Save(folder / "no" / "data.dic", std::vector<std::string>{"a b"}));
}

TEST(PhraseStore, LookupsFromSeveralThreads) {
  testing::TempFolder folder;
  std::vector<std::string> phrases;
  for (int i = 0; i < 500; ++i)
    phrases.push_back("w" + std::to_string(i) + " x");
  ASSERT_TRUE(PhraseStore::Save(folder / "data.dic", phrases));
  PhraseStore store;
  ASSERT_TRUE(store.Open(folder / "data.dic"));
  std::vector<std::thread> threads;
  std::atomic<int> found{0};
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&] {
      for (int i = 0; i < 1000; ++i)
        found += store.IsPhrase("w" + std::to_string(i), "x") ? 1 : 0;
    });
  for (auto& t : threads)
    t.join();
  EXPECT_EQ(found.load(), 4 * 500);
}

TEST(PhraseExtraction, KeepsTwoWordPiecesBetweenBreaksCommasAndStops) {
  EXPECT_EQ(ExtractTwoWordPhrases("Ha Noi, Sai Gon. mot hai ba"),
            (std::vector<std::string>{"Ha Noi", "Sai Gon"}));
  EXPECT_EQ(NormalizeTwoWordPhrase("  Ha   Noi  "), "Ha Noi");
  EXPECT_EQ(NormalizeTwoWordPhrase("Noi"), std::nullopt);
  EXPECT_EQ(NormalizeTwoWordPhrase("   "), std::nullopt);
  EXPECT_EQ(ExtractTwoWordPhrases("Ha Noi\r\nHa Noi\nmot\n,,..\n"),
            std::vector<std::string>{"Ha Noi"});
  EXPECT_TRUE(ExtractTwoWordPhrases("").empty());
}

} // namespace
} // namespace vntts
