// SPDX-License-Identifier: MIT
// The ISO compliance streams against their references, with the full-accuracy criterion:
// RMS of the difference below 2^-15/sqrt(12) of full scale (0.289 LSB at 16 bits) and no
// sample off by more than 2^-14 (2 LSB). Layer I/II outputs are measured against the 24-bit
// references. Streams whose references are not normative only have to decode.
#include <gtest/gtest.h>

#include <cstdio>

#include "audio/mpeg/unit_decoder.h"
#include "mpeg_test_support.h"

namespace vntts::mpeg::testing {
namespace {

enum class Length {
  Equal,        // output = reference
  OneFrameMore, // reference lacks the last frame
  Shorter,      // reference carries filter ring-out and zero padding
};

struct IsoCase {
  const char* name;
  bool ref24; // a 24-bit reference exists as well
  Length length;
  int samples_per_frame_all_channels; // for OneFrameMore
};

constexpr IsoCase kIsoCases[] = {
    {"l1-fl1", true, Length::Shorter, 0},
    {"l1-fl2", true, Length::Shorter, 0},
    {"l1-fl3", true, Length::Shorter, 0},
    {"l1-fl4", true, Length::Shorter, 0},
    {"l1-fl5", true, Length::Shorter, 0},
    {"l1-fl6", true, Length::Shorter, 0},
    {"l1-fl7", true, Length::Shorter, 0},
    {"l1-fl8", true, Length::Shorter, 0},
    {"l2-fl10", true, Length::Shorter, 0},
    {"l2-fl11", true, Length::Shorter, 0},
    {"l2-fl12", true, Length::Shorter, 0},
    {"l2-fl13", true, Length::Shorter, 0},
    {"l2-fl14", true, Length::Shorter, 0},
    {"l2-fl15", true, Length::Shorter, 0},
    {"l2-fl16", true, Length::Shorter, 0},
    {"l2-test32", false, Length::Equal, 0},
    {"l3-compl", false, Length::Equal, 0},
    {"l3-he_32khz", false, Length::OneFrameMore, 1152},
    {"l3-he_44khz", false, Length::OneFrameMore, 1152},
    {"l3-he_48khz", false, Length::OneFrameMore, 1152},
    {"l3-he_free", false, Length::OneFrameMore, 2304},
    {"l3-he_mode", true, Length::Equal, 0},
    {"l3-hecommon", false, Length::OneFrameMore, 2304},
    {"l3-si", false, Length::OneFrameMore, 1152},
    {"l3-si_block", false, Length::OneFrameMore, 1152},
    {"l3-si_huff", false, Length::OneFrameMore, 1152},
    {"l3-sin1k0db", false, Length::Equal, 0},
    {"M2L3_bitrate_16_all", false, Length::Equal, 0},
    {"M2L3_bitrate_22_all", false, Length::Equal, 0},
    {"M2L3_bitrate_24_all", false, Length::Equal, 0},
    {"M2L3_compl24", false, Length::Equal, 0},
    {"M2L3_noise", false, Length::Equal, 0},
};

// Every stream through every instruction set this machine runs: the plain C++ kernels as
// well as the vector ones the library picks.
class IsoStream : public ::testing::TestWithParam<std::tuple<IsoCase, InstructionSet>> {};

TEST_P(IsoStream, MeetsFullAccuracy) {
  const auto& [c, set] = GetParam();
  if (!Runs(set)) GTEST_SKIP() << Name(set) << " does not run here";
  const std::string bit = compliance_dir() + c.name + ".bit";
  if (!file_exists(bit)) GTEST_SKIP() << "compliance streams not found at " << compliance_dir();
  const CoreOutput out = decode_core(read_file(bit), set);
  // The 16-bit output against the 16-bit reference (the 24-bit one rounded to nearest).
  const auto ref = as_s16(read_file(compliance_dir() + c.name + ".pcm"));
  const std::size_t ref_size = ref.size();
  const Difference d = compare(out.s16, ref);
  std::printf("%-8s %-22s frames %4d dropped %d  out %8zu ref %8zu  s16: rms %.4f max %.0f LSB",
              Name(set), c.name, out.frames, out.dropped, out.s16.size(), ref_size, d.rms, d.max);
  if (c.ref24) {
    // The formal class at full precision: the decoder's own output before rounding against
    // the 24-bit reference (rounding alone costs 1/sqrt(12) LSB, the limit itself).
    const auto ref24 = read_wav24(compliance_dir() + "ref24/" + c.name + ".wav");
    const Difference f = compare(out.f32, ref24);
    std::printf("  24-bit: rms %.5f max %.3f LSB", f.rms, f.max);
    EXPECT_LT(f.rms, 0.2887) << c.name;
    EXPECT_LE(f.max, 2.0) << c.name;
  }
  std::printf("\n");
  switch (c.length) {
  case Length::Equal:
    EXPECT_EQ(out.s16.size(), ref_size);
    break;
  case Length::OneFrameMore:
    EXPECT_EQ(out.s16.size(), ref_size + c.samples_per_frame_all_channels);
    break;
  case Length::Shorter:
    EXPECT_LT(out.s16.size(), ref_size);
    EXPECT_GT(out.s16.size(), ref_size / 4);
    break;
  }
  EXPECT_LT(d.rms, 0.2887) << c.name;
  EXPECT_LE(d.max, 2.0) << c.name;
  // Most Layer I/II streams carry a CRC; every frame of a conformant stream must pass it.
  EXPECT_EQ(out.crc_errors, 0u) << c.name;
}

INSTANTIATE_TEST_SUITE_P(Compliance, IsoStream,
                         ::testing::Combine(::testing::ValuesIn(kIsoCases),
                                            ::testing::Values(InstructionSet::kPortable,
                                                              InstructionSet::kSse2,
                                                              InstructionSet::kAvx2)),
                         [](const auto& param_info) {
                           std::string n = std::get<0>(param_info.param).name;
                           for (auto& ch : n)
                             if (!isalnum(static_cast<unsigned char>(ch))) ch = '_';
                           return n + "_" + Name(std::get<1>(param_info.param));
                         });

// Streams whose references record one other decoder's behaviour (or are broken on purpose):
// they must decode without fault; how close they come is printed, not asserted.
constexpr const char* kNonNormative[] = {
    "ILL2_center2",
    "ILL2_dual",
    "ILL2_dynx22",
    "ILL2_dynx31",
    "ILL2_dynx32",
    "ILL2_ext_switching",
    "ILL2_layer1",
    "ILL2_layer3",
    "ILL2_mono",
    "ILL2_multilingual",
    "ILL2_overalloc1",
    "ILL2_overalloc2",
    "ILL2_prediction",
    "ILL2_samples",
    "ILL2_scf63",
    "ILL2_tca21",
    "ILL2_tca30",
    "ILL2_tca30_PC",
    "ILL2_tca31_PC",
    "ILL2_tca31_mtx0",
    "ILL2_tca31_mtx2",
    "ILL2_tca32_PC",
    "ILL2_wrongcrc",
    "ILL4_ext_id1",
    "ILL4_sync",
    "ILL4_wrong_length1",
    "ILL4_wrong_length2",
    "ILL4_wrongcrc",
    "l2-nonstandard-fl1_fl2_ff",
    "l2-nonstandard-free_format",
    "l2-nonstandard-test32-size",
    "l3-nonstandard-apetag",
    "l3-nonstandard-big-iscf",
    "l3-nonstandard-compl-sideinfo-bigvalues",
    "l3-nonstandard-compl-sideinfo-blocktype",
    "l3-nonstandard-compl-sideinfo-size",
    "l3-nonstandard-he_44_48khz",
    "l3-nonstandard-id3v1-apetag",
    "l3-nonstandard-id3v1",
    "l3-nonstandard-id3v2-only",
    "l3-nonstandard-id3v2",
    "l3-nonstandard-sideinfo-size",
    "l3-nonstandard-sin1k0db_lame_vbrtag",
    "l3-nonstandard-small",
    "l3-nonstandard-vbrtag-corrupted",
    "l3-nonstandard-vbrtag-empty",
    "l3-nonstandard-vbrtag-noframes",
    "l3-nonstandard-vbrtag-only",
    "l3-nonstandard-vbrtag-oob-read",
    "l3-test45",
    "l3-test46",
};

TEST(NonNormativeStreams, DecodeWithoutFaultAndReport) {
  if (!file_exists(compliance_dir() + "l3-test45.bit"))
    GTEST_SKIP() << "compliance streams not found";
  for (const char* name : kNonNormative) {
    const auto data = read_file(compliance_dir() + name + ".bit");
    // Through the object the archive uses (tag frames skipped, one channel layout).
    UnitDecoder decoder;
    decoder.SetStream(data.data(), static_cast<std::uint32_t>(data.size()));
    const auto block = decoder.DecodeAll();
    CoreOutput out;
    out.s16 = pcm_samples(block.get(), decoder.decoded_length());
    const std::string pcm = compliance_dir() + name + ".pcm";
    if (file_exists(pcm)) {
      const auto ref = as_s16(read_file(pcm));
      const Difference d = compare(out.s16, ref);
      std::printf("%-40s out %8zu ref %8zu  rms %9.3f max %6.0f\n", name, out.s16.size(),
                  ref.size(), d.rms, d.max);
    } else {
      std::printf("%-40s out %8zu (no reference)\n", name, out.s16.size());
    }
  }
  // A check word that does not match its frame is counted (the frame still plays).
  auto flipped = read_file(compliance_dir() + "l1-fl6.bit");
  flipped[5] ^= 1;
  EXPECT_EQ(decode_core(flipped).crc_errors, 1u);
}

// MPEG-2 intensity stereo (l3-test45: intensity only, l3-test46: with mid/side). No
// decoder's output is normative here and the decoders at hand disagree (libmpg123 and FFmpeg
// differ from the references and from each other on many frames). Ours matches the recorded
// references within 2 LSB on every frame but four runs of six (docs/decoder.md);
// a wrong intensity weight or side shows on far more frames than that.
TEST(NonNormativeStreams, LsfIntensityStereoMatchesItsReferenceOnAlmostEveryFrame) {
  if (!file_exists(compliance_dir() + "l3-test45.bit"))
    GTEST_SKIP() << "compliance streams not found";
  for (const char* name : {"l3-test45", "l3-test46"}) {
    SCOPED_TRACE(name);
    const auto ours = decode_core(read_file(compliance_dir() + name + ".bit"));
    const auto ref = as_s16(read_file(compliance_dir() + name + ".pcm"));
    ASSERT_EQ(ours.s16.size(), ref.size());
    constexpr std::size_t kFrame = 576 * 2;
    std::size_t differing = 0;
    for (std::size_t at = 0; at < ref.size(); at += kFrame) {
      const std::size_t n = std::min(kFrame, ref.size() - at);
      const std::vector<std::int16_t> a(ours.s16.begin() + at, ours.s16.begin() + at + n);
      const std::vector<std::int16_t> b(ref.begin() + at, ref.begin() + at + n);
      if (compare(a, b).max > 2) ++differing;
    }
    std::printf("%s: %zu of %zu frames differ from the reference\n", name, differing,
                ref.size() / kFrame);
    EXPECT_LE(differing, 24u);
  }
}

} // namespace
} // namespace vntts::mpeg::testing
