#include <gtest/gtest.h>

#include "store/definition_store.h"
#include "temp_folder.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

std::string In(std::string_view utf8) {
  return Utf8ToInternal(utf8);
}

TEST(DefinitionLines, CutAtTheFirstTabAndSkipLinesWithoutOne) {
  const auto parsed = ParseDefinitionLines("TP\tthanh pho\r\n"
                                           "no tab here\n"
                                           "\n"
                                           "a\tb\tc\n"
                                           "last\twithout newline");
  EXPECT_EQ(parsed, (std::vector<Definition>{
                        {"TP", "thanh pho"}, {"a", "b\tc"}, {"last", "without newline"}}));
  EXPECT_TRUE(ParseDefinitionLines("").empty());
  EXPECT_EQ(FormatDefinitionLines(parsed), "TP\tthanh pho\na\tb\tc\nlast\twithout newline\n");
}

TEST(DefinitionStore, LoadsEveryFileAndLooksUpWithoutRegardToCase) {
  testing::TempFolder folder;
  folder.Write("b.def", In("UBND\tủy ban nhân dân\nTP\tthành phố (b)\n"));
  folder.Write("a.def", In("TP\tthành phố\nĐHQG\tđại học quốc gia\nTP.HỒ\tthành phố hồ\n"));
  DefinitionStore store;
  ASSERT_TRUE(store.LoadFolder(folder.path()));
  const DefinitionLookup& lookup = store;
  EXPECT_EQ(lookup.FindDefinition("tp"), In("thành phố")) << "first file by name wins";
  EXPECT_EQ(lookup.FindDefinition("Ubnd"), In("ủy ban nhân dân"));
  EXPECT_EQ(lookup.FindDefinition(In("đhqg")), In("đại học quốc gia"));
  EXPECT_EQ(lookup.FindDefinition(In("tp.hồ")), In("thành phố hồ")) << "mark bytes fold too";
  EXPECT_EQ(lookup.FindDefinition("HN"), std::nullopt);
  EXPECT_EQ(store.size(), 5u);
}

TEST(DefinitionStore, AddAndRemoveRewriteTheFilesAndKeepForeignLines) {
  testing::TempFolder folder;
  folder.Write("common.def", "# comment without a tab\nKO\tkhong\nHN\tha noi\n");
  DefinitionStore store;
  ASSERT_TRUE(store.LoadFolder(folder.path()));
  ASSERT_TRUE(store.Remove("ko"));
  EXPECT_EQ(folder.Read("common.def"), "# comment without a tab\nHN\tha noi\n");
  EXPECT_FALSE(store.Contains("KO"));
  ASSERT_TRUE(store.Add("ko", "khong"));
  EXPECT_EQ(folder.Read("user.def"), "ko\tkhong\n");
  EXPECT_EQ(store.FindDefinition("KO"), "khong");
  ASSERT_TRUE(store.Add("vs", "voi"));
  EXPECT_EQ(folder.Read("user.def"), "ko\tkhong\nvs\tvoi\n");

  DefinitionStore reloaded;
  ASSERT_TRUE(reloaded.LoadFolder(folder.path()));
  EXPECT_EQ(reloaded.All(), store.All());

  const auto nothing = store.Remove("zz");
  EXPECT_FALSE(nothing);
  EXPECT_TRUE(nothing.error.empty());
  EXPECT_FALSE(store.Add("", "x"));
  EXPECT_FALSE(store.Add("a\tb", "x"));
  EXPECT_FALSE(store.Add("a", "two\nlines"));
}

TEST(DefinitionStore, LookupsFollowRemovalsAndAdditions) {
  testing::TempFolder folder;
  folder.Write("a.def", "X\tfirst x\nTP\tfrom a\n");
  folder.Write("b.def", "tp\tfrom b\nY\tonly y\n");
  DefinitionStore store;
  ASSERT_TRUE(store.LoadFolder(folder.path()));
  ASSERT_TRUE(store.Remove("x")); // every entry after it moves up
  EXPECT_EQ(store.FindDefinition("X"), std::nullopt);
  EXPECT_EQ(store.FindDefinition("tP"), "from a");
  EXPECT_EQ(store.FindDefinition("y"), "only y");
  ASSERT_TRUE(store.Add("TP", "added"));
  EXPECT_EQ(store.FindDefinition("tp"), "from a") << "an added pair does not shadow the first";
  ASSERT_TRUE(store.Add("x", "second x"));
  EXPECT_EQ(store.FindDefinition("x"), "second x");
  ASSERT_TRUE(store.Remove("tp"));
  EXPECT_EQ(store.FindDefinition("TP"), std::nullopt);
  EXPECT_EQ(store.FindDefinition("Y"), "only y");
}

TEST(DefinitionStore, MissingFolderIsAnErrorAndAddCreatesIt) {
  testing::TempFolder folder;
  DefinitionStore store;
  const auto result = store.LoadFolder(folder / "Define");
  EXPECT_FALSE(result);
  EXPECT_NE(result.error.find("Define"), std::string::npos);
  EXPECT_EQ(store.size(), 0u);
  ASSERT_TRUE(store.Add("tp", "thanh pho"));
  EXPECT_TRUE(std::filesystem::exists(folder / "Define" / "user.def"));
}

TEST(DefinitionStore, SkipsFoldersAndLeftoverTemporaries) {
  testing::TempFolder folder;
  folder.Write("common.def", "TP\tthanh pho\n");
  folder.Write("common.def.tmp-AbC123", "TP\thalf writ");
  std::filesystem::create_directory(folder / "sub");
  DefinitionStore store;
  ASSERT_TRUE(store.LoadFolder(folder.path()));
  EXPECT_EQ(store.FindDefinition("TP"), "thanh pho");
  EXPECT_EQ(store.size(), 1u);
}

TEST(DefinitionStore, ListingStartsWithTheTwoDotEntries) {
  testing::TempFolder folder;
  folder.Write("b.def", "");
  folder.Write("a.def", "");
  EXPECT_EQ(ListFolderEntries(folder.path()),
            (std::vector<std::string>{".", "..", "a.def", "b.def"}));
  EXPECT_TRUE(ListFolderEntries(folder / "missing").empty());
}

} // namespace
} // namespace vntts
