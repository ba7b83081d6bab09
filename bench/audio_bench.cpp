// SPDX-License-Identifier: MIT
// CPU spent by this process while the wave device plays 10 s of speech-format audio through
// each backend. The goal is below 2% of one core; the counter cpu_percent is
// (process CPU time) / (wall time) x 100, all threads included (libpulse's loop too). The
// sound server's own work is not counted. Run beside a server: scripts/with-pulseaudio.
#include <benchmark/benchmark.h>

#include <cmath>
#include <ctime>

#include "audio/wave_device.h"

namespace {

double process_cpu_seconds() {
  timespec ts{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
  return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
}
double wall_seconds() {
  timespec ts{};
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
}

void PlayTenSeconds(benchmark::State& state, const char* backend, bool with_events) {
  vntts::RecordedMessages messages;
  vntts::WaveDevice device(messages, vntts::make_system_audio(backend));
  device.SetFormat(vntts::WaveFormat::Pcm(1, 22050, 16));
  std::vector<std::uint8_t> bytes(22050 * 2 * 10);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto v = static_cast<std::int16_t>(8000 * std::sin(static_cast<double>(i) * 0.05));
    bytes[i] = static_cast<std::uint8_t>(v);
    bytes[i + 1] = static_cast<std::uint8_t>(static_cast<std::uint16_t>(v) >> 8);
  }
  device.AssignSamples(bytes);
  std::size_t fired = 0;
  if (with_events) {
    // A word boundary every 300 ms, as in ordinary speech.
    for (std::uint32_t p = 0; p < 220500; p += 6615)
      device.AddEvent({3, p, 0, 0, {}});
    device.SetNotify([&](const vntts::EventRecord&) { ++fired; });
  }
  double cpu = 0, wall = 0;
  for (auto _ : state) {
    const double c0 = process_cpu_seconds(), w0 = wall_seconds();
    if (device.Play() != 0 || !messages.entries.empty()) {
      state.SkipWithError("the backend is not reachable here");
      return;
    }
    const double c1 = process_cpu_seconds(), w1 = wall_seconds();
    cpu += c1 - c0;
    wall += w1 - w0;
    state.SetIterationTime(w1 - w0);
  }
  state.counters["cpu_percent"] = 100.0 * cpu / wall;
  state.counters["cpu_ms"] = 1000.0 * cpu / static_cast<double>(state.iterations());
  if (with_events) state.counters["events"] = static_cast<double>(fired);
}

} // namespace

BENCHMARK_CAPTURE(PlayTenSeconds, pulse, "pulse", false)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(PlayTenSeconds, pulse_events, "pulse", true)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(PlayTenSeconds, alsa, "alsa", false)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(PlayTenSeconds, alsa_events, "alsa", true)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(PlayTenSeconds, null, "null", false)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);
BENCHMARK_CAPTURE(PlayTenSeconds, null_events, "null", true)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);

BENCHMARK_MAIN();
