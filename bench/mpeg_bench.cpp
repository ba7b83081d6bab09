// SPDX-License-Identifier: MIT
// Decode speed of our MPEG audio decoder next to libmpg123 on the same streams held in memory,
// one thread, 16-bit output, for every layer: Layer I (an ISO stream repeated to 29 s of
// 32 kHz stereo at 384 kbit/s), Layer II (30 s of 44.1 kHz stereo at 192 kbit/s from ffmpeg),
// Layer III (a 100 s 48 kHz stereo 320 kbit/s stream and 30 s of 44.1 kHz joint stereo at
// 128 kbit/s from LAME), and 2,000 short 22.05 kHz mono units like the voice's.
//
// libmpg123 runs at its cheapest: one handle, reopened for each stream, decoding straight into
// one output block that is kept from run to run. Ours runs as the library does: a decoder per
// stream and a new PCM block from every DecodeAll.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "audio/mpeg/unit_decoder.h"
#include "mpeg_test_support.h"
#if defined(VNTTS_HAVE_MPG123)
#include "mpg123_reference.h"
#endif

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

using vntts::mpeg::testing::read_file;

// A mono or stereo WAV of tones, a sweep and noise bursts, `seconds` long.
void write_wav(const std::string& path, int rate, int channels, double seconds,
               std::uint32_t seed) {
  const int frames = static_cast<int>(seconds * rate);
  std::vector<std::int16_t> s(static_cast<std::size_t>(frames) * channels);
  std::uint32_t noise = seed;
  const double f0 = 110 + seed % 200;
  for (int i = 0; i < frames; ++i) {
    const double t = static_cast<double>(i) / rate;
    noise = noise * 1664525u + 1013904223u;
    const double n = ((noise >> 9) / 8388608.0 - 1.0) * 0.05;
    double v = 0.2 * std::sin(2 * M_PI * f0 * t) + 0.1 * std::sin(2 * M_PI * 3.01 * f0 * t) +
               0.05 * std::sin(2 * M_PI * (200 + 2000 * t / seconds) * t) + n;
    v *= 0.6 + 0.4 * std::sin(2 * M_PI * 3 * t);
    for (int c = 0; c < channels; ++c)
      s[static_cast<std::size_t>(i) * channels + c] = static_cast<std::int16_t>(
          32767 * std::clamp(c ? 0.8 * v + 0.1 * std::sin(2 * M_PI * 660 * t) : v, -1.0, 1.0));
  }
  vntts::mpeg::testing::write_s16_wave(path, rate, channels, s);
}

// Encodes the signal with a command (%s: input WAV, output file) into a temporary folder;
// empty when the encoder is missing.
Bytes encode(int rate, int channels, double seconds, std::uint32_t seed, const char* command) {
  const fs::path dir =
      fs::temp_directory_path() / ("vntts_mpeg_bench_" + std::to_string(::getpid()));
  fs::create_directories(dir);
  const std::string wav = (dir / "in.wav").string();
  const std::string out = (dir / "out.mpa").string();
  write_wav(wav, rate, channels, seconds, seed);
  char line[512];
  std::snprintf(line, sizeof line, command, wav.c_str(), out.c_str());
  Bytes bytes;
  if (std::system((std::string(line) + " >/dev/null 2>&1").c_str()) == 0) bytes = read_file(out);
  fs::remove_all(dir);
  return bytes;
}

const Bytes& layer1_stream() {
  static const Bytes b = [] {
    const Bytes one = read_file(vntts::mpeg::testing::compliance_dir() + "l1-fl1.bit");
    Bytes all;
    for (int i = 0; i < 50; ++i)
      all.insert(all.end(), one.begin(), one.end());
    return all;
  }();
  return b;
}

const Bytes& layer2_stream() {
  static const Bytes b = encode(
      44100, 2, 30.0, 11, "ffmpeg -nostdin -v error -y -i '%s' -c:a mp2 -b:a 192k -f mp2 '%s'");
  return b;
}

const Bytes& long_stream() {
  static const Bytes b =
      read_file(vntts::mpeg::testing::compliance_dir() + "performance/MEANDR_PHASE0.mp3");
  return b;
}

const Bytes& stream_44k() {
  static const Bytes b = encode(44100, 2, 30.0, 7, "lame --quiet -b 128 -m j '%s' '%s'");
  return b;
}

const std::vector<Bytes>& units() {
  static const std::vector<Bytes> u = [] {
    std::vector<Bytes> v;
    for (std::uint32_t i = 0; i < 20; ++i) {
      Bytes b = encode(22050, 1, 0.25 + 0.02 * i, 100 + i, "lame --quiet -b 32 -m m '%s' '%s'");
      if (!b.empty()) v.push_back(std::move(b));
    }
    return v;
  }();
  return u;
}

constexpr int kUnits = 2000;

// On a shared machine the quickest of several runs is the one least disturbed by others.
double fastest(const std::vector<double>& v) {
  return v.empty() ? 0.0 : *std::min_element(v.begin(), v.end());
}

std::size_t ours_decode_with(const Bytes& b, vntts::mpeg::InstructionSet set) {
  vntts::UnitDecoder d;
  d.SetInstructionSet(set);
  d.SetStream(b.data(), static_cast<std::uint32_t>(b.size()));
  const auto pcm = d.DecodeAll();
  benchmark::DoNotOptimize(pcm.get());
  return d.decoded_length();
}

std::size_t ours_decode(const Bytes& b) {
  return ours_decode_with(b, vntts::mpeg::BestInstructionSet());
}

// One untimed decode first, so that what is measured is decoding, not the first touch of the
// output memory (libmpg123's block, our allocator's pages).
template <typename Decode> void run(benchmark::State& state, const Bytes& b, Decode decode) {
  if (b.empty()) {
    state.SkipWithError("stream not available");
    return;
  }
  decode(b);
  std::size_t out = 0;
  for (auto _ : state)
    out += decode(b);
  state.SetBytesProcessed(static_cast<std::int64_t>(out));
}

template <typename Decode> void run_units(benchmark::State& state, Decode decode) {
  const auto& u = units();
  if (u.empty()) {
    state.SkipWithError("LAME not available");
    return;
  }
  for (const auto& unit : u)
    decode(unit);
  std::size_t out = 0;
  for (auto _ : state)
    for (int i = 0; i < kUnits; ++i)
      out += decode(u[static_cast<std::size_t>(i) % u.size()]);
  state.SetBytesProcessed(static_cast<std::int64_t>(out));
}

void BM_Ours_L1_32kStereo384(benchmark::State& state) {
  run(state, layer1_stream(), ours_decode);
}
void BM_Ours_L2_44kStereo192(benchmark::State& state) {
  run(state, layer2_stream(), ours_decode);
}
void BM_Ours_L3_48kStereo320(benchmark::State& state) {
  run(state, long_stream(), ours_decode);
}
void BM_Ours_L3_44kJoint128(benchmark::State& state) {
  run(state, stream_44k(), ours_decode);
}
void BM_Ours_L3_Units22kMono(benchmark::State& state) {
  run_units(state, ours_decode);
}
// The narrower instruction sets that other processors get, on one stream.
void BM_OursSse2_L3_44kJoint128(benchmark::State& state) {
  run(state, stream_44k(),
      [](const Bytes& b) { return ours_decode_with(b, vntts::mpeg::InstructionSet::kSse2); });
}
void BM_OursPortable_L3_44kJoint128(benchmark::State& state) {
  run(state, stream_44k(),
      [](const Bytes& b) { return ours_decode_with(b, vntts::mpeg::InstructionSet::kPortable); });
}

BENCHMARK(BM_Ours_L1_32kStereo384)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
BENCHMARK(BM_Ours_L2_44kStereo192)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
BENCHMARK(BM_Ours_L3_48kStereo320)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
BENCHMARK(BM_Ours_L3_44kJoint128)->Unit(benchmark::kMillisecond)->ComputeStatistics("min", fastest);
BENCHMARK(BM_Ours_L3_Units22kMono)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
BENCHMARK(BM_OursSse2_L3_44kJoint128)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
BENCHMARK(BM_OursPortable_L3_44kJoint128)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);

#if defined(VNTTS_HAVE_MPG123)
// One handle and one output block for the whole benchmark.
class Reference {
public:
  Reference() {
    mpg123_init();
    mh_ = mpg123_new(nullptr, nullptr);
    vntts::mpeg::testing::mpg123_setup(mh_);
  }
  ~Reference() { mpg123_delete(mh_); }
  std::size_t operator()(const Bytes& b) {
    return vntts::mpeg::testing::mpg123_decode_into(mh_, b.data(), b.size(), block_);
  }

private:
  mpg123_handle* mh_ = nullptr;
  std::vector<std::int16_t> block_;
};

void BM_Mpg123_L1_32kStereo384(benchmark::State& state) {
  run(state, layer1_stream(), Reference());
}
void BM_Mpg123_L2_44kStereo192(benchmark::State& state) {
  run(state, layer2_stream(), Reference());
}
void BM_Mpg123_L3_48kStereo320(benchmark::State& state) {
  run(state, long_stream(), Reference());
}
void BM_Mpg123_L3_44kJoint128(benchmark::State& state) {
  run(state, stream_44k(), Reference());
}
void BM_Mpg123_L3_Units22kMono(benchmark::State& state) {
  run_units(state, Reference());
}

BENCHMARK(BM_Mpg123_L1_32kStereo384)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
BENCHMARK(BM_Mpg123_L2_44kStereo192)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
BENCHMARK(BM_Mpg123_L3_48kStereo320)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
BENCHMARK(BM_Mpg123_L3_44kJoint128)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
BENCHMARK(BM_Mpg123_L3_Units22kMono)
    ->Unit(benchmark::kMillisecond)
    ->ComputeStatistics("min", fastest);
#endif

} // namespace

BENCHMARK_MAIN();
