// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstring>

#include "archive_files.h"
#include "audio/archive/archive_writer.h"
#include "audio/archive/unit_archive.h"
#include "dsp/resample.h"
#include "reference_codecs.h"

namespace vntts {
namespace {

#ifdef VNTTS_HAVE_REFERENCE_CODECS

struct Recording {
  const char* file;
  const char* key;
  int rate;
  int channels;
  int kbps;
  double seconds;
  bool id3v1;
};

// Units of the formats a voice folder may hold: the unit format itself, other MPEG-2 rates,
// MPEG-1 stereo, and a file carrying an ID3v1 tag.
constexpr Recording kRecordings[] = {
    {"ba.mp3", "ba", 22050, 1, 32, 0.40, false},    {"mot.mp3", "mot", 22050, 1, 64, 0.25, true},
    {"hai.mp3", "hai", 16000, 1, 32, 0.30, false},  {"bon.mp3", "bon", 24000, 1, 48, 0.30, false},
    {"nam.mp3", "nam", 44100, 2, 128, 0.35, false}, {"sau.mp3", "sau", 48000, 1, 96, 0.20, false},
};

TEST(ArchiveRoundTrip, EveryKeyDecodesLikeLibmpg123) {
  test::TempFolder dir;
  std::filesystem::create_directories(dir / "voice");
  std::vector<std::vector<std::uint8_t>> streams;
  for (const auto& r : kRecordings) {
    auto mp3 = testing::LameEncode(testing::Glide(r.rate, r.channels, r.seconds, 180), r.rate,
                                   r.channels, r.kbps);
    ASSERT_FALSE(mp3.empty()) << r.file;
    streams.push_back(mp3);
    if (r.id3v1) {
      std::vector<std::uint8_t> tag(128, 0);
      tag[0] = 'T', tag[1] = 'A', tag[2] = 'G';
      mp3.insert(mp3.end(), tag.begin(), tag.end());
    }
    testing::WriteBytes((dir / "voice" / r.file).string(), mp3);
  }

  RecordedMessages messages;
  const std::string data = (dir / "main_dic.dat").string();
  const auto written = WriteArchive(ListRecordings(dir / "voice", 0), data, messages);
  ASSERT_TRUE(written.ok);
  ASSERT_EQ(written.units, std::size(kRecordings));

  UnitArchive archive(data, messages);
  ASSERT_TRUE(archive.IsOpen());
  for (std::size_t k = 0; k < std::size(kRecordings); ++k) {
    const auto& r = kRecordings[k];
    SCOPED_TRACE(r.file);
    const auto reference = testing::mpg123_decode(streams[k].data(), streams[k].size());
    ASSERT_EQ(reference.rate, r.rate);
    const auto expected = ConvertToUnitFormat(reference.samples, static_cast<int>(reference.rate),
                                              reference.channels);
    std::vector<std::int16_t> got;
    ASSERT_TRUE(archive.GetUnit(r.key, got));
    ASSERT_EQ(got.size(), expected.size());
    int worst = 0;
    double squares = 0;
    for (std::size_t i = 0; i < got.size(); ++i) {
      const int d = std::abs(static_cast<int>(got[i]) - expected[i]);
      worst = std::max(worst, d);
      squares += static_cast<double>(d) * d;
    }
    // A compliant decoder stays within a few 16-bit steps of the reference everywhere; the
    // resampler, whose taps add up to more than one in magnitude, can widen a difference of a
    // step or two between the decoders when the unit is converted.
    const bool converted = r.rate != 22050 || r.channels != 1;
    EXPECT_LE(worst, converted ? 8 : 4);
    EXPECT_LT(std::sqrt(squares / static_cast<double>(got.size())), 1.0);

    // The caller's-buffer form hands out the same bytes, cut to the buffer when it is short.
    std::vector<std::byte> buffer(got.size() * 2 + 10);
    std::uint32_t length = 0;
    ASSERT_TRUE(archive.GetUnit(r.key, buffer, length));
    EXPECT_EQ(length, got.size() * 2);
    EXPECT_EQ(std::memcmp(buffer.data(), got.data(), length), 0);
    std::vector<std::byte> small(101);
    ASSERT_TRUE(archive.GetUnit(r.key, small, length));
    EXPECT_EQ(length, 100u);
  }
}

#endif

} // namespace
} // namespace vntts
