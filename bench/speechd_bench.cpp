// SPDX-License-Identifier: MIT
// sd_vntts as speech-dispatcher drives it, over its pipes: the time from the end of a SPEAK
// message to the first audio the module hands to the server (goal: under 30 ms for a short
// sentence), and from STOP to the STOP event. Beside it, the time espeak-ng takes to write its
// first byte of sound for the same sentence (a process per run, start-up included).
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <signal.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kSentence = "Xin chào, hôm nay trời đẹp quá.";

// The module, started as speech-dispatcher starts it, with the voice of this build.
class Module {
public:
  Module() {
    int to_module[2], from_module[2];
    if (pipe(to_module) != 0 || pipe(from_module) != 0) return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, to_module[0], 0);
    posix_spawn_file_actions_adddup2(&actions, from_module[1], 1);
    posix_spawn_file_actions_addclose(&actions, to_module[1]);
    posix_spawn_file_actions_addclose(&actions, from_module[0]);
    setenv("VNTTS_DATA_DIR", VNTTS_BINARY_DIR "/bin/index", 0);
    char* argv[] = {const_cast<char*>(VNTTS_MODULE_PATH), nullptr};
    if (posix_spawn(&pid_, VNTTS_MODULE_PATH, &actions, nullptr, argv, environ) != 0) pid_ = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(to_module[0]);
    close(from_module[1]);
    in_ = to_module[1];
    out_ = fdopen(from_module[0], "r");
  }
  ~Module() {
    if (pid_ > 0) {
      Send("QUIT\n");
      waitpid(pid_, nullptr, 0);
    }
    if (out_) std::fclose(out_);
    if (in_ >= 0) close(in_);
  }

  bool Start() {
    if (pid_ <= 0 || !out_) return false;
    Send("INIT\n");
    if (!Until("299 OK")) return false;
    Send("AUDIO\naudio_output_method=server\n.\n");
    return Until("203 OK");
  }

  void Send(const std::string& text) {
    if (write(in_, text.data(), text.size()) < 0) return;
  }

  // Reads lines until one starts with `prefix`; false at the end of output.
  bool Until(const char* prefix) {
    std::string line;
    int c;
    while ((c = std::fgetc(out_)) != EOF) {
      if (c != '\n') {
        line += static_cast<char>(c);
        continue;
      }
      if (line.rfind(prefix, 0) == 0) return true;
      line.clear();
    }
    return false;
  }

private:
  pid_t pid_ = -1;
  int in_ = -1;
  FILE* out_ = nullptr;
};

void FirstAudio(benchmark::State& state) {
  Module module;
  if (!module.Start()) {
    state.SkipWithError("sd_vntts did not start (voice missing?)");
    return;
  }
  const std::string speak = std::string("SPEAK\n<speak>") + kSentence + "</speak>\n.\n";
  for (auto _ : state) {
    module.Send(speak);
    const auto t0 = Clock::now();
    if (!module.Until("705-")) {
      state.SkipWithError("no audio");
      return;
    }
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - t0).count());
    module.Until("702 END");
  }
}

void StopToEvent(benchmark::State& state) {
  Module module;
  if (!module.Start()) {
    state.SkipWithError("sd_vntts did not start (voice missing?)");
    return;
  }
  std::string text = "SPEAK\n<speak>";
  for (int i = 0; i < 40; ++i)
    text += std::string(kSentence) + " ";
  text += "</speak>\n.\n";
  for (auto _ : state) {
    module.Send(text);
    module.Until("705-");
    module.Send("STOP\n");
    const auto t0 = Clock::now();
    module.Until("703 STOP");
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - t0).count());
  }
}

void EspeakFirstByte(benchmark::State& state) {
  for (auto _ : state) {
    const auto t0 = Clock::now();
    FILE* p = popen(
        (std::string("espeak-ng -v vi --stdout '") + kSentence + "' 2>/dev/null").c_str(), "r");
    if (!p || std::fgetc(p) == EOF) {
      if (p) pclose(p);
      state.SkipWithError("espeak-ng is not available");
      return;
    }
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - t0).count());
    char sink[4096];
    while (std::fread(sink, 1, sizeof sink, p) > 0) {
    }
    pclose(p);
  }
}

} // namespace

BENCHMARK(FirstAudio)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(30);
BENCHMARK(StopToEvent)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(EspeakFirstByte)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

BENCHMARK_MAIN();
