// SPDX-License-Identifier: MIT
// The default voice: opening it, finding a syllable, and fetching one (lookup + decode +
// conversion to the unit format), with libmpg123 decoding the same streams as the yardstick.
// Build the voice first (target vntts_voice); without it the benchmarks report an error.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "audio/archive/unit_archive.h"

#ifdef VNTTS_HAVE_MPG123
#include <mpg123.h>
#endif

namespace {

const std::string kVoice = std::string(VNTTS_INDEX_DIR) + "/main_dic.dat";

bool HaveVoice(benchmark::State& state) {
  if (std::filesystem::exists(kVoice)) return true;
  state.SkipWithError("no default voice: build the vntts_voice target");
  return false;
}

// A spread of real keys: every 33rd key of the voice.
std::vector<std::string> SampleKeys(const vntts::UnitArchive& archive) {
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < archive.Keys().size(); i += 33)
    keys.push_back(archive.Keys()[i]);
  return keys;
}

void BM_OpenDefaultArchive(benchmark::State& state) {
  if (!HaveVoice(state)) return;
  vntts::RecordedMessages messages;
  for (auto _ : state) {
    vntts::UnitArchive archive(kVoice, messages);
    benchmark::DoNotOptimize(archive.IsOpen());
  }
}
BENCHMARK(BM_OpenDefaultArchive)->Unit(benchmark::kMillisecond);

void BM_FindUnit(benchmark::State& state) {
  if (!HaveVoice(state)) return;
  vntts::RecordedMessages messages;
  const vntts::UnitArchive archive(kVoice, messages);
  const auto keys = SampleKeys(archive);
  std::size_t i = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(archive.FindUnit(keys[i++ % keys.size()]));
}
BENCHMARK(BM_FindUnit);

// Times every fetch on its own so that the median per syllable can be reported beside the mean.
void BM_GetUnit(benchmark::State& state) {
  if (!HaveVoice(state)) return;
  vntts::RecordedMessages messages;
  const vntts::UnitArchive archive(kVoice, messages);
  const auto keys = SampleKeys(archive);
  std::vector<double> times;
  std::vector<std::int16_t> pcm;
  std::size_t i = 0, samples = 0;
  for (auto _ : state) {
    const auto t0 = std::chrono::steady_clock::now();
    const bool ok = archive.GetUnit(keys[i++ % keys.size()], pcm);
    times.push_back(
        std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - t0).count());
    if (!ok) state.SkipWithError("a key of the voice did not decode");
    samples += pcm.size();
  }
  std::sort(times.begin(), times.end());
  state.counters["median_us"] = times[times.size() / 2];
  state.counters["p99_us"] = times[times.size() * 99 / 100];
  state.counters["ms_audio"] =
      static_cast<double>(samples) / 22.05 / static_cast<double>(times.size());
}
BENCHMARK(BM_GetUnit)->Unit(benchmark::kMicrosecond);

#ifdef VNTTS_HAVE_MPG123
// libmpg123 decoding the same streams from memory (no lookup, no copy out of the archive).
void BM_Mpg123DecodeUnit(benchmark::State& state) {
  if (!HaveVoice(state)) return;
  vntts::RecordedMessages messages;
  const vntts::UnitArchive archive(kVoice, messages);
  std::vector<std::span<const std::uint8_t>> streams;
  for (const auto& key : SampleKeys(archive))
    streams.push_back(archive.Stream(static_cast<std::size_t>(archive.FindUnit(key))));
  mpg123_handle* mh = mpg123_new(nullptr, nullptr);
  mpg123_param(mh, MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0.0);
  mpg123_format_none(mh);
  mpg123_format(mh, 22050, MPG123_MONO, MPG123_ENC_SIGNED_16);
  std::vector<unsigned char> out(1 << 20);
  std::vector<double> times;
  std::size_t i = 0, bytes = 0;
  for (auto _ : state) {
    const auto t0 = std::chrono::steady_clock::now();
    const auto stream = streams[i++ % streams.size()];
    mpg123_open_feed(mh);
    std::size_t done = 0;
    mpg123_decode(mh, stream.data(), stream.size(), out.data(), out.size(), &done);
    std::size_t more = 0;
    while (mpg123_decode(mh, nullptr, 0, out.data() + done, out.size() - done, &more) ==
               MPG123_OK ||
           more != 0) {
      done += more;
      if (more == 0) break;
    }
    mpg123_close(mh);
    bytes += done;
    times.push_back(
        std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - t0).count());
  }
  mpg123_delete(mh);
  std::sort(times.begin(), times.end());
  state.counters["median_us"] = times[times.size() / 2];
  state.counters["ms_audio"] =
      static_cast<double>(bytes) / 2 / 22.05 / static_cast<double>(times.size());
}
BENCHMARK(BM_Mpg123DecodeUnit)->Unit(benchmark::kMicrosecond);
#endif

} // namespace

BENCHMARK_MAIN();
