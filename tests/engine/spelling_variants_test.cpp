#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "dsp/crossfade.h"
#include "engine/spelling_variants.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

std::string In(std::string_view utf8) {
  return Utf8ToInternal(utf8);
}
std::string Out(std::string_view internal) {
  return InternalToUtf8(internal);
}

struct VariantCase {
  const char* word;
  const char* tonePlacement;
  const char* iySwap;
};

TEST(SpellingVariants, ToneMarkPlacementAndIYSwapTable) {
  const VariantCase cases[] = {
      // oa, oe, uy open: the two habits trade places
      {"hoà", "hòa", ""},
      {"hòa", "hoà", ""},
      {"hoả", "hỏa", ""},
      {"thuỷ", "thủy", ""},
      {"thủy", "thuỷ", ""},
      {"khoẻ", "khỏe", ""},
      {"thuý", "thúy", ""},
      {"HOÀ", "HÒA", ""},
      // a misplaced mark goes where a habit puts it
      {"ngòai", "ngoài", ""},
      {"gìa", "già", ""},
      {"qúy", "quý", "quí"},
      {"múôn", "muốn", ""},
      // a lone final i/y: either letter
      {"kỹ", "", "kĩ"},
      {"kĩ", "", "kỹ"},
      {"quí", "", "quý"},
      {"quý", "", "quí"},
      {"lý", "", "lí"},
      {"Mỹ", "", "Mĩ"},
      {"sỹ", "", "sĩ"},
      {"hy", "", "hi"},
      // nothing to vary
      {"hoàn", "", ""},
      {"tay", "", ""},
      {"tai", "", ""},
      {"quạ", "", ""},
      {"người", "", ""},
      {"gì", "", ""},
      {"nghĩ", "", ""},
      {"mía", "", ""},
      {"", "", ""},
      {"ab$", "", ""},
      {"bcd", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.word);
    const auto variants = MakeSpellingVariants(In(c.word));
    EXPECT_EQ(Out(variants.tonePlacement), c.tonePlacement);
    EXPECT_EQ(Out(variants.iySwap), c.iySwap);
  }
}

TEST(SpellingVariants, ListHoldsTheApplicableVariantsInTryOrder) {
  EXPECT_EQ(SpellingVariantList(In("hoà")), std::vector<std::string>{In("hòa")});
  EXPECT_EQ(SpellingVariantList(In("kỹ")), std::vector<std::string>{In("kĩ")});
  EXPECT_TRUE(SpellingVariantList(In("nhà")).empty());
  EXPECT_TRUE(SpellingVariantList("\xFF\x01").empty());
}

TEST(SpellingVariants, SwapIAndYKeepsToneAndCase) {
  const std::pair<const char*, const char*> cases[] = {
      {"kỹ", "kĩ"}, {"quí", "quý"}, {"ị", "ỵ"},     {"ỵ", "ị"},   {"Ý", "Í"},
      {"ỉ", "ỷ"},   {"ì", "ỳ"},     {"tiy", "tyi"}, {"Ỳ", "Ì"},   {"tay", "tai"},
      {"ba", "ba"}, {"", ""},       {"1y!", "1i!"}, {"ĨỸ", "ỸĨ"},
  };
  for (const auto& [from, to] : cases) {
    SCOPED_TRACE(from);
    EXPECT_EQ(Out(SwapIAndY(In(from))), to);
    EXPECT_EQ(Out(SwapIAndY(SwapIAndY(In(from)))), from);
  }
}

TEST(SpellingVariants, SyllableShapeTable) {
  const char* valid[] = {"nghiêng", "người", "quốc", "giường", "gì",  "khuỷu", "oanh",
                         "ếch",     "xoong", "thuở", "quýt",   "yêu", "giếng", "kỹ",
                         "được",    "việt",  "nam",  "Hà",     "NỘI", "khuya", "ngoặc"};
  for (const char* word : valid)
    EXPECT_TRUE(IsVietnameseSyllable(In(word))) << word;
  const char* invalid[] = {"ko",  "ka",    "ngi", "ge",   "ac", "hàt", "email", "tivi", "",
                           "xyz", "hello", "iên", "tyên", "w",  "ok",  "12",    "a-b"};
  for (const char* word : invalid)
    EXPECT_FALSE(IsVietnameseSyllable(In(word))) << word;
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

TEST(SpellingVariants, SplitsTwoSyllablesRunTogether) {
  const HasUnitKey none;
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"xinchào", {"xin", "chào"}},
      {"thanhniên", {"thanh", "niên"}},
      {"tivi", {"ti", "vi"}},
      {"việtnam", {"việt", "nam"}},
      {"bana", {"ba", "na"}},
      {"khônggian", {"không", "gian"}},
      {"người", {"người"}},
      {"ko", {}},
      {"email", {}},
      {"", {}},
      {"xinchàoanh", {}},
  };
  for (const auto& [word, parts] : cases) {
    SCOPED_TRACE(word);
    std::vector<std::string> got;
    for (const auto& part : SplitIntoSyllables(In(word), none))
      got.push_back(Out(part));
    EXPECT_EQ(got, parts);
  }
}

TEST(SpellingVariants, SplitPrefersPartsTheArchiveHolds) {
  const std::set<std::string> keys = {In("ban"), In("a"), In("hòa"), In("bình")};
  const HasUnitKey hasKey = [&](std::string_view key) { return keys.contains(std::string(key)); };
  EXPECT_EQ(SplitIntoSyllables(In("bana"), hasKey), (std::vector<std::string>{In("ban"), In("a")}));
  // hoà is known through its other tone placement
  EXPECT_EQ(SplitIntoSyllables(In("hoàbình"), hasKey),
            (std::vector<std::string>{In("hoà"), In("bình")}));
}

// Two syllables of the longest kind still split (a longer word is not tried cut by cut: the
// bad-arguments test of GetBufOfWord times that).
TEST(SpellingVariants, TheLongestTwoSyllablesStillSplit) {
  const HasUnitKey none = [](std::string_view) { return false; };
  EXPECT_EQ(SplitIntoSyllables(In("nghiêngnghiêng"), none).size(), 2u);
}

} // namespace
} // namespace vntts

namespace vntts {
namespace {

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

} // namespace
} // namespace vntts

namespace vntts {
namespace {

// An archive in memory: each key's recording is 100 frames of a value of its own.
class FakeArchive {
public:
  explicit FakeArchive(std::initializer_list<const char*> keys) {
    std::int16_t value = 1000;
    for (const char* key : keys) {
      const std::vector<std::int16_t> samples(100, value);
      std::vector<std::uint8_t> bytes(200);
      std::memcpy(bytes.data(), samples.data(), bytes.size());
      units_[In(key)] = {bytes, value};
      value = static_cast<std::int16_t>(value + 1000);
    }
  }
  UnitSource Source() {
    return {[this](std::string_view key) { return units_.contains(std::string(key)); },
            [this](std::string_view key, std::vector<std::uint8_t>& bytes) {
              fetched.push_back(Out(key));
              bytes = units_.at(std::string(key)).first;
              return true;
            }};
  }
  std::int16_t ValueOf(const char* key) const { return units_.at(In(key)).second; }
  std::vector<std::string> fetched;

private:
  std::map<std::string, std::pair<std::vector<std::uint8_t>, std::int16_t>> units_;
};

std::int16_t SampleAt(const std::vector<std::uint8_t>& bytes, std::size_t frame) {
  std::int16_t s = 0;
  std::memcpy(&s, bytes.data() + 2 * frame, 2);
  return s;
}

TEST(SpellingFallback, FindsTheRecordingUnderTheSpellingTheArchiveUses) {
  struct Case {
    const char* word;
    std::vector<std::string> fetched; // empty: nothing renders
  };
  const Case cases[] = {
      {"hòa", {"hòa"}},             // as written
      {"hoà", {"hòa"}},             // the other tone placement
      {"kĩ", {"kỹ"}},               // i/y
      {"quí", {"quý"}},             // i/y after qu
      {"tuy", {"tui"}},             // one syllable: every i and y swapped
      {"xinchào", {"xin", "chào"}}, // two run together
      {"hoàbình", {"hòa", "bình"}}, // parts through their variants
      {"tivi", {"ti", "vy"}},       // a part through its i/y swap
      {"ko", {}},                   // not Vietnamese: left to the auto-correct table
      {"nhà", {}},                  // a syllable the archive lacks in every spelling
      {"", {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.word);
    FakeArchive archive({"hòa", "kỹ", "quý", "tui", "xin", "chào", "ti", "vy", "bình"});
    std::vector<std::uint8_t> bytes;
    const bool rendered = RenderWithSpellingFallback(In(c.word), archive.Source(), bytes);
    EXPECT_EQ(rendered, !c.fetched.empty());
    EXPECT_EQ(archive.fetched, c.fetched);
    EXPECT_EQ(bytes.empty(), c.fetched.empty());
  }
}

TEST(SpellingFallback, JoinsTheTwoHalvesWithACrossfade) {
  FakeArchive archive({"xin", "chào"});
  std::vector<std::uint8_t> bytes;
  ASSERT_TRUE(RenderWithSpellingFallback(In("xinchào"), archive.Source(), bytes));
  const std::size_t overlap = std::min<std::size_t>(100, kWordJoinCrossfadeFrames);
  ASSERT_EQ(bytes.size(), 2 * (200 - overlap));
  EXPECT_EQ(SampleAt(bytes, 0), archive.ValueOf("xin"));
  EXPECT_EQ(SampleAt(bytes, bytes.size() / 2 - 1), archive.ValueOf("chào"));
}

} // namespace
} // namespace vntts
