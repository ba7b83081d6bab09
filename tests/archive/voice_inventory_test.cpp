// SPDX-License-Identifier: MIT
// The default voice's spelling rules: where the tone mark goes and which syllables the
// inventory holds.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "orthography.h"
#include "vietnamese_letters.h"

namespace voicegen {
namespace {

std::string Toned(const std::string& plain, Tone tone, bool old_style = false) {
  const std::u32string s = FromUtf8(plain);
  return ToUtf8(PlaceTone(s, RhymeStart(s), tone, old_style));
}

TEST(ToneMark, GoesWhereTheOrthographyPutsIt) {
  const struct {
    const char* plain;
    Tone tone;
    const char* modern;
    const char* old;
  } cases[] = {
      {"hoa", kHuyen, "hoà", "hòa"},
      {"khoe", kHoi, "khoẻ", "khỏe"},
      {"thuy", kHoi, "thuỷ", "thủy"},
      {"hoan", kSac, "hoán", "hoán"},
      {"ngươi", kHuyen, "người", "người"},
      {"người", kNgang, "người", "người"},
      {"tiêng", kSac, "tiếng", "tiếng"},
      {"gia", kHuyen, "già", "già"},
      {"gi", kHuyen, "gì", "gì"},
      {"giêng", kSac, "giếng", "giếng"},
      {"qua", kHoi, "quả", "quả"},
      {"quy", kSac, "quý", "quý"},
      {"khuyu", kHoi, "khuỷu", "khuỷu"},
      {"ngoai", kHuyen, "ngoài", "ngoài"},
      {"cua", kHoi, "của", "của"},
      {"mưa", kNga, "mữa", "mữa"},
      {"khuya", kNang, "khuỵa", "khuỵa"},
      {"huynh", kHuyen, "huỳnh", "huỳnh"},
      {"a", kSac, "á", "á"},
      {"ươu", kNang, "ượu", "ượu"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Toned(c.plain, c.tone), c.modern) << c.plain;
    EXPECT_EQ(Toned(c.plain, c.tone, true), c.old) << c.plain;
  }
}

TEST(ToneMark, VariantsOfAWrittenSyllable) {
  EXPECT_EQ(TonePlacementVariants("hoà"), (std::vector<std::string>{"hoà", "hòa"}));
  EXPECT_EQ(TonePlacementVariants("Thủy"), (std::vector<std::string>{"thuỷ", "thủy"}));
  EXPECT_EQ(TonePlacementVariants("toán"), (std::vector<std::string>{"toán"}));
  EXPECT_EQ(TonePlacementVariants("người"), (std::vector<std::string>{"người"}));
}

TEST(Orthography, SpellsOnsetsByTheFollowingVowel) {
  const auto all = OrthographicSyllables();
  auto has = [&](const char* s) { return std::binary_search(all.begin(), all.end(), s); };
  for (const char* s : {"kiếm",  "cá",  "ghế", "gà",   "nghĩ",  "ngủ",     "quốc", "quyển",
                        "giếng", "gìn", "yên", "uống", "khuỷu", "nghiêng", "thuở", "hoạch",
                        "quý",   "quí", "hoà", "hòa",  "tháp",  "học",     "ạch"})
    EXPECT_TRUE(has(s)) << s;
  for (const char* s :
       {"cí", "cé", "ge", "ngi", "coa", "kuy", "boa", "tháp̀", "thàp", "hỏc", "iên", "giy"})
    EXPECT_FALSE(has(s)) << s;
  EXPECT_GT(all.size(), 12000u);
}

TEST(Letters, LowerCaseAndUtf8) {
  EXPECT_EQ(ToUtf8(ToLower(FromUtf8("ĐƯỜNG Ă Ơ ẤY"))), "đường ă ơ ấy");
  EXPECT_EQ(ToneBase(U'ự'), U'ư');
  EXPECT_EQ(WithTone(U'ê', kNga), U'ễ');
  EXPECT_TRUE(IsLetter(U'Đ'));
  EXPECT_FALSE(IsLetter(U'1'));
}

} // namespace
} // namespace voicegen
