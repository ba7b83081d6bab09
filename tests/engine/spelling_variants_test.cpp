// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "dsp/crossfade.h"
#include "engine/spelling_variants.h"
#include "support/tsv_table.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

std::string In(std::string_view utf8) {
  return Utf8ToInternal(utf8);
}
std::string Out(std::string_view internal) {
  return InternalToUtf8(internal);
}

// The Vietnamese spelling dictionary from hunspell-vi lists the syllables of the language; our
// rules should accept nearly all of its lower-case entries.
TEST(SpellingVariants, AcceptsTheHunspellSyllableList) {
  const std::filesystem::path dic = "/usr/share/hunspell/vi_VN.dic";
  std::ifstream in(dic);
  if (!in) GTEST_SKIP() << "hunspell-vi is not installed";
  std::string line;
  std::getline(in, line); // entry count
  std::size_t checked = 0;
  std::vector<std::string> rejected;
  while (std::getline(in, line)) {
    line = line.substr(0, line.find('/'));
    const std::string internal = In(line);
    if (line.empty() || InternalToUtf8(internal) != line) continue;
    bool lower = true;
    for (unsigned char c : line)
      lower = lower && !(c >= 'A' && c <= 'Z');
    if (!lower) continue;
    ++checked;
    if (!IsVietnameseSyllable(internal)) rejected.push_back(line);
  }
  ASSERT_GT(checked, 5000u);
  std::string sample;
  for (std::size_t i = 0; i < rejected.size() && i < 40; ++i)
    sample += rejected[i] + " ";
  // What remains are loan words (email, web, ping) and entries written without their tone.
  EXPECT_LT(rejected.size() * 100, checked) << rejected.size() << " rejected: " << sample;
}

// Two syllables of the longest kind still split (a longer word is not tried cut by cut: the
// bad-arguments test of GetBufOfWord times that).
TEST(SpellingVariants, TheLongestTwoSyllablesStillSplit) {
  const HasUnitKey none = [](std::string_view) { return false; };
  EXPECT_EQ(SplitIntoSyllables(In("nghiêngnghiêng"), none).size(), 2u);
}

// Every word the shipped word stores make the voice say must be a syllable it can say: a
// misspelt phrase or expansion would never be found or would be read letter by letter.
std::vector<std::string> WordsOfSource(const std::filesystem::path& file, bool rightOfTab) {
  std::ifstream in(file);
  std::vector<std::string> words;
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line.front() == '#') continue;
    if (rightOfTab) line = line.substr(line.find('\t') + 1);
    for (char& c : line)
      if (c == ',' || c == '.' || c == '(' || c == ')') c = ' ';
    std::istringstream split(line);
    for (std::string word; split >> word;)
      words.push_back(word);
  }
  return words;
}

TEST(DefaultWordStores, EveryWordTheyMakeTheVoiceSayIsASyllable) {
  const std::filesystem::path sources = VNTTS_SOURCE_DIR "/resources/word_stores";
  std::vector<std::pair<std::filesystem::path, bool>> files = {
      {sources / "phrases.txt", false},
      {sources / "autocorrect.txt", true},
  };
  for (const auto& entry : std::filesystem::directory_iterator(sources / "define"))
    files.emplace_back(entry.path(), true);
  for (const auto& [file, rightOfTab] : files) {
    SCOPED_TRACE(file.string());
    const auto words = WordsOfSource(file, rightOfTab);
    EXPECT_GT(words.size(), 50u);
    std::string bad;
    for (const auto& word : words)
      if (!IsVietnameseSyllable(In(word))) bad += word + " ";
    EXPECT_EQ(bad, "");
  }
}

// An archive in memory: the n-th key's recording is 100 frames at the level 1000 n.
class FakeArchive {
public:
  explicit FakeArchive(std::initializer_list<const char*> keys) {
    for (const char* key : keys)
      keys_.push_back(In(key));
  }
  UnitSource Source() {
    return {[this](std::string_view key) { return Level(key) != 0; },
            [this](std::string_view key, std::vector<std::uint8_t>& bytes) {
              fetched.push_back(Out(key));
              const auto level = static_cast<std::uint16_t>(Level(key));
              bytes.clear();
              for (int i = 0; i < 100; ++i)
                bytes.insert(bytes.end(), {std::uint8_t(level & 0xFF), std::uint8_t(level >> 8)});
              return true;
            }};
  }
  std::int16_t Level(std::string_view key) const {
    const auto it = std::find(keys_.begin(), keys_.end(), key);
    return static_cast<std::int16_t>(it == keys_.end() ? 0 : 1000 * (it - keys_.begin() + 1));
  }
  std::vector<std::string> fetched;

private:
  std::vector<std::string> keys_;
};

// The cases of tests/data/spelling_cases.tsv: the other spellings of a syllable, whether a word
// has a syllable's shape, how a run of two splits, and which recording a word is found under.
class SpellingCase : public ::testing::TestWithParam<test::TsvRow> {};

std::string Joined(const std::vector<std::string>& internal_words) {
  std::string joined;
  for (const auto& w : internal_words)
    joined += (joined.empty() ? "" : " ") + Out(w);
  return joined;
}

TEST_P(SpellingCase, AsTheTableSays) {
  const test::TsvRow& row = GetParam();
  const std::string word = In(row[1]);
  SCOPED_TRACE(row.at(0) + " " + row[1] + " " + row[3]);
  if (row[0] == "variants") {
    const auto variants = MakeSpellingVariants(word);
    EXPECT_EQ(Out(variants.tone_placement), row[2]);
    EXPECT_EQ(Out(variants.iy_swap), row[3]);
    std::vector<std::string> in_order; // the list tries the tone placement first
    for (const auto& v : {variants.tone_placement, variants.iy_swap})
      if (!v.empty()) in_order.push_back(v);
    EXPECT_EQ(SpellingVariantList(word), in_order);
  } else if (row[0] == "swap") {
    EXPECT_EQ(Out(SwapIAndY(word)), row[2]);
    EXPECT_EQ(SwapIAndY(SwapIAndY(word)), word);
  } else if (row[0] == "syllable") {
    EXPECT_EQ(IsVietnameseSyllable(word), row[2] == "1");
  } else if (row[0] == "split") {
    std::set<std::string> held;
    std::istringstream keys(row[3]);
    for (std::string key; keys >> key;)
      held.insert(In(key));
    const HasUnitKey has = [&](std::string_view key) { return held.contains(std::string(key)); };
    EXPECT_EQ(Joined(SplitIntoSyllables(word, held.empty() ? HasUnitKey{} : has)), row[2]);
  } else if (row[0] == "fallback") {
    FakeArchive archive({"hòa", "kỹ", "quý", "tui", "xin", "chào", "ti", "vy", "bình"});
    std::vector<std::uint8_t> bytes;
    EXPECT_EQ(RenderWithSpellingFallback(word, archive.Source(), bytes), !row[2].empty());
    std::string fetched;
    for (const auto& f : archive.fetched)
      fetched += (fetched.empty() ? "" : " ") + f;
    EXPECT_EQ(fetched, row[2]);
    EXPECT_EQ(bytes.empty(), row[2].empty());
  } else {
    FAIL() << "unknown kind on line " << row.line;
  }
}

INSTANTIATE_TEST_SUITE_P(Table, SpellingCase, ::testing::ValuesIn(test::ReadTsv("spelling_cases")),
                         [](const ::testing::TestParamInfo<test::TsvRow>& param_info) {
                           return param_info.param[0] + "_" + std::to_string(param_info.param.line);
                         });

TEST(SpellingFallback, JoinsTheTwoHalvesWithACrossfade) {
  FakeArchive archive({"xin", "chào"});
  std::vector<std::uint8_t> bytes;
  ASSERT_TRUE(RenderWithSpellingFallback(In("xinchào"), archive.Source(), bytes));
  const std::size_t overlap = std::min<std::size_t>(100, kWordJoinCrossfadeFrames);
  ASSERT_EQ(bytes.size(), 2 * (200 - overlap));
  std::int16_t first = 0, last = 0;
  std::memcpy(&first, bytes.data(), 2);
  std::memcpy(&last, bytes.data() + bytes.size() - 2, 2);
  EXPECT_EQ(first, 1000);
  EXPECT_EQ(last, 2000);
}

} // namespace
} // namespace vntts
