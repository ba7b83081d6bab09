// Decode speed of our MPEG audio decoder next to libmpg123 on the same streams, one thread,
// 16-bit output: a long 48 kHz stereo 320 kbit/s stream, a 44.1 kHz stereo 128 kbit/s stream
// made with LAME at start-up, and 2,000 short 22.05 kHz mono units like the voice's.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <iterator>
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

// Encodes with LAME into a temporary folder; empty when LAME is missing.
Bytes lame_encode(int rate, int channels, double seconds, std::uint32_t seed, const char* args) {
  const fs::path dir =
      fs::temp_directory_path() / ("vntts_mpeg_bench_" + std::to_string(::getpid()));
  fs::create_directories(dir);
  const std::string wav = (dir / "in.wav").string();
  const std::string mp3 = (dir / "out.mp3").string();
  write_wav(wav, rate, channels, seconds, seed);
  const std::string command =
      "lame --quiet " + std::string(args) + " '" + wav + "' '" + mp3 + "' >/dev/null 2>&1";
  Bytes out;
  if (std::system(command.c_str()) == 0) out = read_file(mp3);
  fs::remove_all(dir);
  return out;
}

const Bytes& long_stream() {
  static const Bytes b = read_file(std::string(VNTTS_SHARED_DIR) +
                                   "/testdata/mp3-compliance/performance/MEANDR_PHASE0.mp3");
  return b;
}

const Bytes& stream_44k() {
  static const Bytes b = lame_encode(44100, 2, 30.0, 7, "-b 128 -m j");
  return b;
}

const std::vector<Bytes>& units() {
  static const std::vector<Bytes> u = [] {
    std::vector<Bytes> v;
    for (std::uint32_t i = 0; i < 20; ++i) {
      Bytes b = lame_encode(22050, 1, 0.25 + 0.02 * i, 100 + i, "-b 32 -m m");
      if (!b.empty()) v.push_back(std::move(b));
    }
    return v;
  }();
  return u;
}

constexpr int kUnits = 2000;

std::size_t ours_decode(const Bytes& b) {
  vntts::UnitDecoder d;
  d.SetStream(b.data(), static_cast<std::uint32_t>(b.size()));
  const auto pcm = d.DecodeAll();
  benchmark::DoNotOptimize(pcm.get());
  return d.decoded_length();
}

void run_ours(benchmark::State& state, const Bytes& b) {
  if (b.empty()) {
    state.SkipWithError("stream not available");
    return;
  }
  std::size_t out = 0;
  for (auto _ : state)
    out += ours_decode(b);
  state.SetBytesProcessed(static_cast<std::int64_t>(out));
}

void BM_Ours_Long48kStereo320(benchmark::State& state) {
  run_ours(state, long_stream());
}
void BM_Ours_44kStereo128(benchmark::State& state) {
  run_ours(state, stream_44k());
}
void BM_Ours_Units22kMono(benchmark::State& state) {
  const auto& u = units();
  if (u.empty()) {
    state.SkipWithError("LAME not available");
    return;
  }
  std::size_t out = 0;
  for (auto _ : state)
    for (int i = 0; i < kUnits; ++i)
      out += ours_decode(u[static_cast<std::size_t>(i) % u.size()]);
  state.SetBytesProcessed(static_cast<std::int64_t>(out));
}

BENCHMARK(BM_Ours_Long48kStereo320)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ours_44kStereo128)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ours_Units22kMono)->Unit(benchmark::kMillisecond);

#if defined(VNTTS_HAVE_MPG123)
using vntts::mpeg::testing::mpg123_decode;
using vntts::mpeg::testing::mpg123_decode_with;
using vntts::mpeg::testing::mpg123_setup;
using vntts::mpeg::testing::Mpg123Output;

void run_mpg123(benchmark::State& state, const Bytes& b) {
  if (b.empty()) {
    state.SkipWithError("stream not available");
    return;
  }
  std::size_t out = 0;
  for (auto _ : state) {
    const Mpg123Output r = mpg123_decode(b.data(), b.size());
    out += r.samples.size() * 2;
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(out));
}

void BM_Mpg123_Long48kStereo320(benchmark::State& state) {
  run_mpg123(state, long_stream());
}
void BM_Mpg123_44kStereo128(benchmark::State& state) {
  run_mpg123(state, stream_44k());
}
// A new handle per unit, as our archive makes a new decoder per unit.
void BM_Mpg123_Units22kMono(benchmark::State& state) {
  const auto& u = units();
  if (u.empty()) {
    state.SkipWithError("LAME not available");
    return;
  }
  std::size_t out = 0;
  for (auto _ : state)
    for (int i = 0; i < kUnits; ++i) {
      const auto& b = u[static_cast<std::size_t>(i) % u.size()];
      out += mpg123_decode(b.data(), b.size()).samples.size() * 2;
    }
  state.SetBytesProcessed(static_cast<std::int64_t>(out));
}
// One handle reopened for every unit: libmpg123 at its cheapest.
void BM_Mpg123_Units22kMonoReusedHandle(benchmark::State& state) {
  const auto& u = units();
  if (u.empty()) {
    state.SkipWithError("LAME not available");
    return;
  }
  mpg123_init();
  mpg123_handle* mh = mpg123_new(nullptr, nullptr);
  mpg123_setup(mh);
  Mpg123Output r;
  std::size_t out = 0;
  for (auto _ : state)
    for (int i = 0; i < kUnits; ++i) {
      const auto& b = u[static_cast<std::size_t>(i) % u.size()];
      mpg123_decode_with(mh, b.data(), b.size(), r);
      out += r.samples.size() * 2;
    }
  mpg123_delete(mh);
  state.SetBytesProcessed(static_cast<std::int64_t>(out));
}

BENCHMARK(BM_Mpg123_Long48kStereo320)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Mpg123_44kStereo128)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Mpg123_Units22kMono)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Mpg123_Units22kMonoReusedHandle)->Unit(benchmark::kMillisecond);
#endif

} // namespace

BENCHMARK_MAIN();
