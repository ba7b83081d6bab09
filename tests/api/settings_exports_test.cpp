// The settings that are the engine's own values (defaults, ranges, rate), through the exports.
#include "library_fixture.h"

namespace vntts::test {
namespace {

class SettingsExports : public LibraryTest {};

TEST_F(SettingsExports, Defaults) {
  EXPECT_EQ(GetDefaultVolume(), 13107u);
  EXPECT_EQ(GetDefaultPitch(), 65536u);
  EXPECT_EQ(GetDefaultRateSpeech(), 5000u);
  EXPECT_EQ(GetRateSpeech(), 5000u);
}

TEST_F(SettingsExports, RangesWriteBothEndsAndReturnTheMinimumPointer) {
  struct Case {
    const char* name;
    uint32_t* (*get)(uint32_t*, uint32_t*);
    uint32_t minimum, maximum;
  };
  const Case cases[] = {{"volume", GetVolumeRange, 0, 65535},
                        {"rate", GetRateSpeechRange, 0, 5000}};
  for (const auto& c : cases) {
    uint32_t lo = 111, hi = 222;
    EXPECT_EQ(c.get(&lo, &hi), &lo) << c.name;
    EXPECT_EQ(lo, c.minimum) << c.name;
    EXPECT_EQ(hi, c.maximum) << c.name;
  }
}

TEST_F(SettingsExports, RateIsStoredUnclampedAndReadsBack) {
  const uint32_t rates[] = {5000, 0, 2500, 1, 6000, 0xFFFFFFFFu};
  for (uint32_t rate : rates) {
    EXPECT_EQ(SetRateSpeech(rate), 5000u) << rate;
    EXPECT_EQ(GetRateSpeech(), rate) << rate;
  }
}

} // namespace
} // namespace vntts::test
