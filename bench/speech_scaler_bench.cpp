// SPDX-License-Identifier: MIT
// Cost of changing the pace and the pitch of 10 s of voiced sound (mono 16-bit 22050 Hz),
// beside sox's own WSOLA `tempo` and `pitch` effects on the same samples (a process per run,
// so sox's figures include its start-up of a few milliseconds). The counter x_realtime is
// seconds of input handled per second of CPU.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string>
#include <unistd.h>
#include <vector>

#include "dsp/speech_scaler.h"

namespace {

constexpr int kRate = 22050;
constexpr int kSeconds = 10;

// Vowel-like sound whose pitch glides between 100 and 160 Hz, with a pause every second.
std::vector<std::int16_t> VoicedSound() {
  std::vector<std::int16_t> s(kRate * kSeconds);
  double phase = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    const double t = static_cast<double>(i) / kRate;
    phase += 2 * std::numbers::pi * (130 + 30 * std::sin(2 * std::numbers::pi * 0.7 * t)) / kRate;
    double v = 0;
    for (int h = 1; h < 30; ++h)
      v += std::sin(h * phase + h * h) / h;
    const bool pause = std::fmod(t, 1.0) > 0.8;
    s[i] = pause ? 0 : static_cast<std::int16_t>(5000 * v);
  }
  return s;
}

void Scale(benchmark::State& state, double speed, double pitch) {
  const auto in = VoicedSound();
  const vntts::SpeechScaler scaler(speed, pitch);
  for (auto _ : state)
    benchmark::DoNotOptimize(scaler.Process(in));
  state.counters["x_realtime"] =
      benchmark::Counter(static_cast<double>(kSeconds) * static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate);
}

void Sox(benchmark::State& state, const char* effect) {
  const auto in = VoicedSound();
  const std::string dir = "/tmp";
  const std::string raw = dir + "/vntts-scaler-bench-" + std::to_string(getpid()) + ".raw";
  if (FILE* f = std::fopen(raw.c_str(), "wb")) {
    std::fwrite(in.data(), 2, in.size(), f);
    std::fclose(f);
  }
  const std::string format = "-t raw -r 22050 -e signed -b 16 -c 1 ";
  const std::string command =
      "sox " + format + raw + " " + format + raw + ".out " + effect + " 2>/dev/null";
  for (auto _ : state) {
    if (std::system(command.c_str()) != 0) {
      state.SkipWithError("sox is not available");
      break;
    }
  }
  std::remove(raw.c_str());
  std::remove((raw + ".out").c_str());
  state.counters["x_realtime"] =
      benchmark::Counter(static_cast<double>(kSeconds) * static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate);
}

} // namespace

BENCHMARK_CAPTURE(Scale, speed_0_5, 0.5, 1.0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Scale, speed_2, 2.0, 1.0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Scale, speed_3, 3.0, 1.0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Scale, pitch_1_5, 1.0, 1.5)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Scale, speed_2_pitch_0_8, 2.0, 0.8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Sox, tempo_2, "tempo -s 2")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Sox, pitch_1_5, "pitch 702")->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
