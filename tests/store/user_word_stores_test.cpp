#include <gtest/gtest.h>

#include <algorithm>

#include "store/user_word_stores.h"

#include "temp_folder.h"
#include "text/char_classes.h"
#include "text/charset/charsets.h"
#include "text/classifier.h"
#include "text/syllable.h"
#include "text/unaccented.h"

namespace vntts {
namespace {

std::string In(std::string_view utf8) {
  return Utf8ToInternal(utf8);
}

const std::filesystem::path kBuiltDataFolder = VNTTS_BINARY_DIR "/bin/index";

// Stores a folder does not have are no problem; stores that are there but cannot be read (bad
// bytes, a folder that cannot be entered) are named, and nothing throws.
TEST(UserWordStores, MissingStoresAreQuietBrokenOnesAreNamed) {
  testing::TempFolder folder;
  UserWordStores stores;
  EXPECT_TRUE(stores.Load(folder.path()).empty());
  EXPECT_EQ(stores.auto_correct.FindReplacement("ko"), std::nullopt);
  EXPECT_FALSE(stores.phrases.IsPhrase("ha", "noi"));
  EXPECT_EQ(stores.definitions.FindDefinition("TP"), std::nullopt);

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

TEST(UserWordStores, ReloadPicksUpAChangedAutoCorrectFile) {
  testing::TempFolder folder;
  UserWordStores stores;
  stores.Load(folder.path());
  ASSERT_TRUE(AutoCorrectTable(std::vector<AutoCorrectPair>{{"ko", "khong"}})
                  .Save(stores.AutoCorrectPath()));
  ASSERT_TRUE(stores.ReloadAutoCorrect());
  EXPECT_EQ(stores.auto_correct.FindReplacement("ko"), "khong");
}

TEST(DefaultWordStores, TheBuiltDataFolderHoldsAllThreeStores) {
  UserWordStores stores;
  const auto problems = stores.Load(kBuiltDataFolder);
  ASSERT_TRUE(problems.empty()) << problems.front();

  struct Replacement {
    const char* token;
    const char* with;
  };
  for (const auto& r :
       {Replacement{"ko", "không"}, Replacement{"Ko", "Không"}, Replacement{"dc", "được"},
        Replacement{"đc", "được"}, Replacement{"Đc", "Được"}, Replacement{"tks", "cảm ơn"}})
    EXPECT_EQ(stores.auto_correct.FindReplacement(In(r.token)), In(r.with)) << r.token;
  EXPECT_EQ(stores.auto_correct.FindReplacement(In("không")), std::nullopt);

  EXPECT_GE(stores.phrases.size(), 3000u);
  struct Pair {
    const char* first;
    const char* second;
  };
  for (const auto& p : {Pair{"hà", "nội"}, Pair{"Hà", "Nội"}, Pair{"học", "sinh"},
                        Pair{"việt", "nam"}, Pair{"Việt", "Nam"}, Pair{"cảm", "ơn"}})
    EXPECT_TRUE(stores.phrases.IsPhrase(In(p.first), In(p.second))) << p.first << " " << p.second;
  EXPECT_FALSE(stores.phrases.IsPhrase(In("nội"), In("hà")));

  for (const auto& r :
       {Replacement{"UBND", "ủy ban nhân dân"}, Replacement{"tp.hcm", "thành phố Hồ Chí Minh"},
        Replacement{"Email", "i meo"}, Replacement{"YouTube", "diu túp"},
        Replacement{"GS.TS", "giáo sư tiến sĩ"}, Replacement{"TP.", "thành phố"},
        Replacement{"đhqg", "đại học quốc gia"}})
    EXPECT_EQ(stores.definitions.FindDefinition(In(r.token)), In(r.with)) << r.token;
}

// Short forms are found without regard to case, so a default definition whose short form is
// also a word ("TƯ" for trung ương against tư, "CA" for công an against ca) would replace that
// word wherever it is written: "tháng tư" would read "tháng trung ương". A form without marks
// is a word when it is a syllable as written (ca, ram, pin); one that needs marks to be one
// (ceo, byt, top) only stands for a word typed without them and may be defined.
TEST(DefaultWordStores, NoDefaultShortFormIsAlsoAWord) {
  UserWordStores stores;
  ASSERT_TRUE(stores.Load(kBuiltDataFolder).empty());
  for (const auto& d : stores.definitions.All()) {
    const std::string lower = LowerInternal(d.short_form);
    const bool plain =
        std::all_of(lower.begin(), lower.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    EXPECT_FALSE(IsAllLetters(lower) && LooksLikeSyllable(lower) &&
                 (!plain || IsUnmarkedSyllable(lower)))
        << InternalToUtf8(d.short_form) << " is also a word";
  }
  EXPECT_GT(stores.definitions.All().size(), 2500U); // abbreviations, loan words and brands
  EXPECT_EQ(stores.definitions.FindDefinition(In("tư")), std::nullopt);
}

} // namespace
} // namespace vntts
