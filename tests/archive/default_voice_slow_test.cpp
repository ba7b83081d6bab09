// SPDX-License-Identifier: MIT
// Checks of the default voice in the build's data folder; skipped when the build made none
// (VNTTS_BUILD_VOICE off or the voice libraries missing).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "audio/archive/unit_archive.h"
#include "reference_codecs.h"
#include "text/charset/charsets.h"

namespace vntts {
namespace {

const std::string kVoice = std::string(VNTTS_INDEX_DIR) + "/main_dic.dat";

class DefaultVoice : public ::testing::Test {
protected:
  void SetUp() override {
    if (!std::filesystem::exists(kVoice)) GTEST_SKIP() << "no default voice at " << kVoice;
    archive_ = std::make_unique<UnitArchive>(kVoice, messages_);
    ASSERT_TRUE(archive_->IsOpen());
  }

  RecordedMessages messages_;
  std::unique_ptr<UnitArchive> archive_;
};

// Syllable tokens of UTF-8 text: runs of letters (ASCII letters and every non-ASCII
// character, which in this text are all Vietnamese letters).
std::vector<std::string> SyllableTokens(const std::string& text) {
  std::vector<std::string> tokens;
  std::string current;
  for (char ch : text) {
    const auto c = static_cast<unsigned char>(ch);
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80) {
      current.push_back(ch);
    } else if (!current.empty()) {
      tokens.push_back(std::move(current));
      current.clear();
    }
  }
  if (!current.empty()) tokens.push_back(current);
  return tokens;
}

TEST_F(DefaultVoice, CoversTheTestCorpus) {
  const auto folder = std::filesystem::path(VNTTS_SOURCE_DIR) / "tests/archive/corpus";
  std::size_t tokens = 0, found = 0;
  std::map<std::string, int> missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream in(entry.path());
    std::stringstream text;
    text << in.rdbuf();
    for (const auto& token : SyllableTokens(text.str())) {
      ++tokens;
      if (archive_->FindUnit(Utf8ToInternal(token)) >= 0)
        ++found;
      else
        ++missing[token];
    }
  }
  for (const auto& [token, count] : missing)
    std::printf("no unit: %s (%d)\n", token.c_str(), count);
  const double coverage = tokens ? static_cast<double>(found) / static_cast<double>(tokens) : 0;
  std::printf("corpus: %zu syllable tokens, %zu with a unit (%.3f%%), voice: %zu units\n", tokens,
              found, 100 * coverage, archive_->Keys().size());
  EXPECT_GE(tokens, 3000u);
  EXPECT_GE(coverage, 0.999);
}

TEST_F(DefaultVoice, HasBothTonePlacementsAndSpelledLetters) {
  for (const char* word :
       {"hoà", "hòa", "thuỷ", "thủy",  "quí", "quý", "khoẻ", "khỏe",  "b",   "đ",
        "f",   "w",   "z",    "nghìn", "tỉ",  "lẻ",  "mốt",  "suyệt", "héc", "tư"})
    EXPECT_GE(archive_->FindUnit(Utf8ToInternal(word)), 0) << word;
}

// RMS over the 5 ms blocks within 30 dB of the loudest one, so that the closure of a final stop
// or the pause inside a spelled letter's name does not count as quietness.
double GatedRms(const std::vector<std::int16_t>& pcm) {
  constexpr std::size_t kBlock = 110;
  std::vector<double> energy((pcm.size() + kBlock - 1) / kBlock, 0.0);
  for (std::size_t i = 0; i < pcm.size(); ++i)
    energy[i / kBlock] += static_cast<double>(pcm[i]) * pcm[i];
  const double gate = *std::max_element(energy.begin(), energy.end()) / 1000;
  double sum = 0, count = 0;
  for (std::size_t b = 0; b < energy.size(); ++b)
    if (energy[b] >= gate) {
      sum += energy[b];
      count += static_cast<double>(std::min(kBlock, pcm.size() - b * kBlock));
    }
  return std::sqrt(sum / count);
}

// Level in dBFS of samples [begin, end).
double LevelDbfs(const std::vector<std::int16_t>& pcm, std::size_t begin, std::size_t end) {
  double sum = 0;
  for (std::size_t i = begin; i < end; ++i)
    sum += static_cast<double>(pcm[i]) * pcm[i];
  const double rms = std::sqrt(sum / static_cast<double>(std::max<std::size_t>(end - begin, 1)));
  return rms > 0 ? 20 * std::log10(rms / 32768) : -200;
}

// Units start and end with their sound and share one loudness: in every sampled unit the first
// millisecond above -60 dBFS comes within 10 ms, the sound fades under -60 dBFS before the unit
// ends and is followed by at most 35 ms of silence (so that no join inside a phrase passes
// 40 ms), the mean lies within 5 steps of zero, and the gated RMS within 1 dB of the median,
// which is the generator's -16.8 dBFS.
TEST_F(DefaultVoice, UnitsStartAndEndWithTheirSoundAndShareOneLoudness) {
  constexpr std::size_t kMs = 22;
  const auto& keys = archive_->Keys();
  std::vector<double> rms;
  for (std::size_t i = 0; i < keys.size(); i += 37) {
    std::vector<std::int16_t> pcm;
    ASSERT_TRUE(archive_->GetUnit(keys[i], pcm)) << i;
    ASSERT_GT(pcm.size(), 40 * kMs) << i;
    std::size_t lead = 0;
    while (LevelDbfs(pcm, lead, lead + kMs) < -60)
      lead += kMs;
    std::size_t end = pcm.size();
    while (pcm[end - 1] == 0)
      --end;
    std::size_t sound_end = end;
    while (LevelDbfs(pcm, sound_end - kMs, sound_end) < -60)
      sound_end -= kMs;
    double sum = 0;
    for (auto v : pcm)
      sum += v;
    EXPECT_LE(lead, 10 * kMs) << i;
    EXPECT_LT(LevelDbfs(pcm, end - kMs, end), -60) << i << ": the sound is cut, not faded";
    EXPECT_LE(pcm.size() - sound_end, 35 * kMs) << i;
    EXPECT_LT(std::abs(sum / static_cast<double>(pcm.size())), 5.0) << i;
    rms.push_back(GatedRms(pcm));
  }
  auto sorted = rms;
  std::sort(sorted.begin(), sorted.end());
  const double median = sorted[sorted.size() / 2];
  const double low_db = 20 * std::log10(sorted.front() / median);
  const double high_db = 20 * std::log10(sorted.back() / median);
  std::printf("%zu units: RMS median %.0f, spread %+.2f..%+.2f dB\n", rms.size(), median, low_db,
              high_db);
  EXPECT_GE(low_db, -1.0);
  EXPECT_LE(high_db, 1.0);
  EXPECT_NEAR(20 * std::log10(median / 4760), 0, 1.0);
}

#ifdef VNTTS_HAVE_REFERENCE_CODECS
// The voice's own streams (no bit reservoir, first frame cut) decode as libmpg123 decodes them.
TEST_F(DefaultVoice, UnitsDecodeLikeLibmpg123) {
  const auto& keys = archive_->Keys();
  int worst = 0;
  std::size_t compared = 0;
  for (std::size_t i = 0; i < keys.size(); i += 97) {
    const auto stream = archive_->Stream(i);
    const auto reference = testing::mpg123_decode(stream.data(), stream.size());
    std::vector<std::int16_t> ours;
    ASSERT_TRUE(archive_->GetUnit(keys[i], ours));
    ASSERT_EQ(reference.rate, 22050);
    ASSERT_EQ(ours.size(), reference.samples.size()) << i;
    for (std::size_t k = 0; k < ours.size(); ++k)
      worst = std::max(worst, std::abs(ours[k] - reference.samples[k]));
    ++compared;
  }
  std::printf("%zu units compared with libmpg123, largest difference %d\n", compared, worst);
  EXPECT_LE(worst, 4);
}
#endif

} // namespace
} // namespace vntts
