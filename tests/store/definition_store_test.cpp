// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "store/definition_store.h"
#include "support/temp_folder.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

const auto In = [](std::string_view utf8) { return Utf8ToInternal(utf8); };

TEST(DefinitionLines, CutAtTheFirstTabAndSkipLinesWithoutOne) {
  const auto parsed = ParseDefinitionLines("TP\tthanh pho\r\n"
                                           "no tab here\n"
                                           "\n"
                                           "a\tb\tc\n"
                                           "last\twithout newline");
  EXPECT_EQ(parsed, (std::vector<Definition>{
                        {"TP", "thanh pho"}, {"a", "b\tc"}, {"last", "without newline"}}));
  EXPECT_EQ(FormatDefinitionLines(parsed), "TP\tthanh pho\na\tb\tc\nlast\twithout newline\n");
}

// Every file of the folder in name order (the listing starts with the two dot entries, as
// the definitions window shows it); sub-folders and the temporaries of a save are skipped.
TEST(DefinitionStore, LoadsEveryFileAndLooksUpWithoutRegardToCase) {
  test::TempFolder folder;
  folder.Write("b.def", In("UBND\tủy ban nhân dân\nTP\tthành phố (b)\n"));
  folder.Write("a.def", In("TP\tthành phố\nĐHQG\tđại học quốc gia\nTP.HỒ\tthành phố hồ\n"));
  folder.Write("a.def.tmp-AbC123", "X\thalf writ");
  std::filesystem::create_directory(folder / "sub");
  EXPECT_EQ(ListFolderEntries(folder.path()),
            (std::vector<std::string>{".", "..", "a.def", "a.def.tmp-AbC123", "b.def", "sub"}));
  EXPECT_TRUE(ListFolderEntries(folder / "missing").empty());
  DefinitionStore store;
  ASSERT_TRUE(store.LoadFolder(folder.path()));
  const DefinitionLookup& lookup = store;
  EXPECT_EQ(lookup.FindDefinition("tp"), In("thành phố")) << "first file by name wins";
  EXPECT_EQ(lookup.FindDefinition("Ubnd"), In("ủy ban nhân dân"));
  EXPECT_EQ(lookup.FindDefinition(In("đhqg")), In("đại học quốc gia"));
  EXPECT_EQ(lookup.FindDefinition(In("tp.hồ")), In("thành phố hồ")) << "mark bytes fold too";
  EXPECT_EQ(lookup.FindDefinition("X"), std::nullopt);
  EXPECT_EQ(store.size(), 5u);
}

TEST(DefinitionStore, AddAndRemoveRewriteTheFilesAndKeepForeignLines) {
  test::TempFolder folder;
  DefinitionStore store;
  EXPECT_NE(store.LoadFolder(folder / "Define").error.find("Define"), std::string::npos);
  ASSERT_TRUE(store.Add("tp", "thanh pho")) << "adding creates the missing folder";
  EXPECT_EQ(folder.Read("Define/user.def"), "tp\tthanh pho\n");

  folder.Write("common.def", "# comment without a tab\nKO\tkhong\nHN\tha noi\n");
  folder.Write("other.def", "hn\tfrom other\nY\tonly y\n");
  ASSERT_TRUE(store.LoadFolder(folder.path()));
  ASSERT_TRUE(store.Remove("ko")); // every entry after it moves up in the index
  EXPECT_EQ(folder.Read("common.def"), "# comment without a tab\nHN\tha noi\n");
  EXPECT_FALSE(store.Contains("KO"));
  EXPECT_EQ(store.FindDefinition("y"), "only y");
  ASSERT_TRUE(store.Add("ko", "khong"));
  ASSERT_TRUE(store.Add("HN", "added"));
  EXPECT_EQ(store.FindDefinition("hn"), "ha noi") << "an added pair does not shadow the first";
  EXPECT_EQ(folder.Read("user.def"), "ko\tkhong\nHN\tadded\n");
  ASSERT_TRUE(store.Remove("hn"));
  EXPECT_EQ(store.FindDefinition("HN"), std::nullopt) << "every pair of the form goes";
  EXPECT_EQ(store.FindDefinition("Y"), "only y");
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

} // namespace
} // namespace vntts
