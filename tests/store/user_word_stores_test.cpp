// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "store/user_word_stores.h"

#include "support/temp_folder.h"
#include "support/tsv_table.h"
#include "text/char_classes.h"
#include "text/charset/charsets.h"
#include "text/classifier.h"
#include "text/syllable.h"
#include "text/unaccented.h"

namespace vntts {
namespace {

const auto In = [](std::string_view utf8) { return Utf8ToInternal(utf8); };

const std::filesystem::path kBuiltDataFolder = VNTTS_BINARY_DIR "/bin/index";

// Stores a folder does not have are no problem; stores that are there but cannot be read (bad
// bytes, a folder that cannot be entered) are named, and nothing throws.
TEST(UserWordStores, MissingStoresAreQuietBrokenOnesAreNamed) {
  test::TempFolder folder;
  UserWordStores stores;
  EXPECT_TRUE(stores.Load(folder.path()).empty());
  EXPECT_EQ(stores.auto_correct.FindReplacement("ko"), std::nullopt);
  EXPECT_FALSE(stores.phrases.IsPhrase("ha", "noi"));
  EXPECT_EQ(stores.definitions.FindDefinition("TP"), std::nullopt);
  ASSERT_TRUE(AutoCorrectTable(std::vector<AutoCorrectPair>{{"ko", "khong"}})
                  .Save(stores.AutoCorrectPath()));
  ASSERT_TRUE(stores.ReloadAutoCorrect());
  EXPECT_EQ(stores.auto_correct.FindReplacement("ko"), "khong");

  folder.Write("AutoCrt.crt", "not a table");
  folder.Write("data.dic", "not a database");
  std::filesystem::create_directory_symlink("Define", folder / "Define"); // a loop
  std::vector<std::string> problems;
  ASSERT_NO_THROW(problems = stores.Load(folder.path()));
  ASSERT_EQ(problems.size(), 3u);
  EXPECT_NE(problems[0].find("AutoCrt.crt"), std::string::npos);
  EXPECT_NE(problems[1].find("data.dic"), std::string::npos);
  EXPECT_NE(problems[2].find("Define"), std::string::npos);
}

class DefaultWordStores : public ::testing::TestWithParam<test::TsvRow> {
protected:
  static const UserWordStores& Built() {
    static UserWordStores stores;
    [[maybe_unused]] static const bool loaded = [] {
      const auto problems = stores.Load(kBuiltDataFolder);
      EXPECT_TRUE(problems.empty()) << problems.front();
      return true;
    }();
    return stores;
  }
};

TEST_P(DefaultWordStores, Answers) {
  const auto& row = GetParam();
  const std::string token = In(row.at(1));
  const std::optional<std::string> want =
      row.at(2) == "-" ? std::nullopt : std::optional(In(row.at(2)));
  if (row[0] == "auto_correct") {
    EXPECT_EQ(Built().auto_correct.FindReplacement(token), want);
  } else if (row[0] == "definition") {
    EXPECT_EQ(Built().definitions.FindDefinition(token), want);
  } else {
    const auto space = token.find(' ');
    EXPECT_EQ(Built().phrases.IsPhrase(token.substr(0, space), token.substr(space + 1)),
              row[2] == "yes");
  }
}

INSTANTIATE_TEST_SUITE_P(Table, DefaultWordStores,
                         ::testing::ValuesIn(test::ReadTsv("default_word_stores")),
                         [](const auto& row) { return "line_" + std::to_string(row.param.line); });

// Short forms are found without regard to case, so a default definition whose short form is
// also a word ("TƯ" for trung ương against tư, "CA" for công an against ca) would replace that
// word wherever it is written: "tháng tư" would read "tháng trung ương". A form without marks
// is a word when it is a syllable as written (ca, ram, pin); one that needs marks to be one
// (ceo, byt, top) only stands for a word typed without them and may be defined.
TEST_F(DefaultWordStores, NoShortFormIsAlsoAWord) {
  for (const auto& d : Built().definitions.All()) {
    const std::string lower = LowerInternal(d.short_form);
    const bool plain =
        std::all_of(lower.begin(), lower.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    EXPECT_FALSE(IsAllLetters(lower) && LooksLikeSyllable(lower) &&
                 (!plain || IsUnmarkedSyllable(lower)))
        << InternalToUtf8(d.short_form) << " is also a word";
  }
  // Abbreviations, loan words and brands; several thousand two-word phrases.
  EXPECT_GT(Built().definitions.All().size(), 2500U);
  EXPECT_GE(Built().phrases.size(), 3000u);
}

} // namespace
} // namespace vntts
