#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "dsp/device_conversion.h"

namespace vntts {
namespace {

TEST(UpsampleNeighbourMean, PutsTheRoundedDownMeanBetweenNeighbours) {
  struct Row {
    std::vector<std::int16_t> in, out;
  };
  const Row rows[] = {
      {{}, {}},
      {{7}, {7}},
      {{0, 10}, {0, 5, 10}},
      {{1, 2, 4}, {1, 1, 2, 3, 4}},
      {{-1, 0}, {-1, -1, 0}}, // rounded down, not toward zero
      {{-3, -4}, {-3, -4, -4}},
      {{32767, 32767, -32768}, {32767, 32767, 32767, -1, -32768}},
  };
  for (const auto& r : rows)
    EXPECT_EQ(UpsampleNeighbourMean(r.in), r.out);
}

TEST(DeviceRates, PassesAndPositionMapping) {
  EXPECT_EQ(NeighbourMeanPasses(22050), 0);
  EXPECT_EQ(NeighbourMeanPasses(44100), 1);
  EXPECT_EQ(NeighbourMeanPasses(88200), 2);
  EXPECT_EQ(NeighbourMeanPasses(11025), -1);
  EXPECT_EQ(NeighbourMeanPasses(48000), -1);
  EXPECT_EQ(MapFramePosition(1000, 22050), 1000u);
  EXPECT_EQ(MapFramePosition(1000, 44100), 2000u);
  EXPECT_EQ(MapFramePosition(1000, 88200), 4000u);
  EXPECT_EQ(MapFramePosition(1001, 11025), 500u);
  EXPECT_EQ(MapFramePosition(4000000000u, 44100), UINT32_MAX);
}

std::vector<std::int16_t> Speech() {
  return {1000, -1000, 0x1234, -2, 0, 0};
}

TEST(ConvertSentence, SixteenBitChannelsAreDuplicated) {
  const auto bytes = ConvertSentence(Speech(), 4, {2, 22050, 16});
  ASSERT_EQ(bytes.size(), 6u * 4);
  EXPECT_EQ(bytes[0], 0xE8); // 1000 little-endian, both channels
  EXPECT_EQ(bytes[1], 0x03);
  EXPECT_EQ(bytes[2], 0xE8);
  EXPECT_EQ(bytes[3], 0x03);
  EXPECT_EQ(bytes[8], 0x34);
  EXPECT_EQ(bytes[9], 0x12);
  EXPECT_EQ(bytes[20], 0); // the pause stays zero in 16-bit output
}

TEST(ConvertSentence, EightBitIsUnsignedAndRoundedWithTheSentencePauseAt0x7F) {
  const auto bytes = ConvertSentence(Speech(), 4, {1, 22050, 8});
  const std::vector<std::uint8_t> want = {0x84, 0x7C, 0x92, 0x80, 0x7F, 0x7F};
  EXPECT_EQ(bytes, want);
  // Nearest step, halves up, the ends clamped.
  const std::vector<std::int16_t> edges = {32767, -32768, 128, -129, 127, -128};
  EXPECT_EQ(ConvertSentence(edges, 6, {1, 22050, 8}),
            (std::vector<std::uint8_t>{0xFF, 0x00, 0x81, 0x7F, 0x80, 0x80}));
  // Silence inside the speech (a word gap) is the midpoint.
  const std::vector<std::int16_t> gap = {0, 0, 0};
  EXPECT_EQ(ConvertSentence(gap, 3, {1, 22050, 8}), (std::vector<std::uint8_t>{0x80, 0x80, 0x80}));
  EXPECT_EQ(ConvertSentence(gap, 1, {2, 22050, 8}),
            (std::vector<std::uint8_t>{0x80, 0x80, 0x7F, 0x7F, 0x7F, 0x7F}));
}

TEST(ConvertSentence, EightBitSpeechHasNoOffset) {
  std::vector<std::int16_t> tone(22050);
  for (std::size_t i = 0; i < tone.size(); ++i)
    tone[i] = static_cast<std::int16_t>(3000 * std::sin(2 * std::numbers::pi * 440 * i / 22050));
  const auto bytes = ConvertSentence(tone, tone.size(), {1, 22050, 8});
  double sum = 0;
  for (auto b : bytes)
    sum += b - 128.0;
  EXPECT_NEAR(sum / static_cast<double>(bytes.size()), 0.0, 0.02); // truncating gives -0.5
}

TEST(ConvertSentence, FourtyFourKiloHertzUsesTheNeighbourMean) {
  const std::vector<std::int16_t> in = {0, 100, 0};
  const auto bytes = ConvertSentence(in, 3, {1, 44100, 16});
  ASSERT_EQ(bytes.size(), 5u * 2);
  const std::int16_t want[] = {0, 50, 100, 50, 0};
  for (int i = 0; i < 5; ++i)
    EXPECT_EQ(static_cast<std::int16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8), want[i]) << i;
  // The 8-bit pause starts at the mapped frame.
  const std::vector<std::int16_t> sp = {0x4000, 0x4000, 0, 0};
  const auto eight = ConvertSentence(sp, 2, {1, 44100, 8});
  EXPECT_EQ(eight, (std::vector<std::uint8_t>{0xC0, 0xC0, 0xC0, 0xA0, 0x7F, 0x7F, 0x7F}));
}

double ToneLevel(const std::vector<std::uint8_t>& bytes) {
  double sum = 0;
  const std::size_t n = bytes.size() / 2;
  for (std::size_t i = 0; i < n; ++i) {
    const auto s = static_cast<std::int16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    sum += double(s) * s;
  }
  return std::sqrt(sum / double(n));
}

TEST(ConvertSentence, ElevenKiloHertzHalvesAndFiltersWhatWouldFoldBack) {
  auto tone = [](double hz) {
    std::vector<std::int16_t> v(22050);
    for (std::size_t i = 0; i < v.size(); ++i)
      v[i] = static_cast<std::int16_t>(10000 * std::sin(2 * std::numbers::pi * hz * i / 22050));
    return v;
  };
  const auto low = ConvertSentence(tone(500), 22050, {1, 11025, 16});
  EXPECT_EQ(low.size(), 11025u * 2);
  EXPECT_GT(ToneLevel(low), 6000.0) << "a tone well below 5512 Hz passes";
  const auto high = ConvertSentence(tone(9000), 22050, {1, 11025, 16});
  EXPECT_LT(ToneLevel(high), 0.5 * 7071) << "a tone above the new Nyquist is damped";
}

TEST(ConvertSentence, DegenerateLayoutsGiveNothing) {
  EXPECT_TRUE(ConvertSentence(Speech(), 4, {1, 22050, 4}).empty());
  EXPECT_TRUE(ConvertSentence(Speech(), 4, {0, 22050, 16}).empty());
  EXPECT_TRUE(ConvertSentence(Speech(), 4, {1, 0, 16}).empty());
  EXPECT_TRUE(ConvertSentence({}, 0, {2, 44100, 16}).empty());
}

} // namespace
} // namespace vntts
