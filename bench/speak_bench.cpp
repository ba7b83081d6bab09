// SPDX-License-Identifier: MIT
// The speak path with the default voice, side by side with eSpeak NG in one run:
//   FirstSample     SpeakVNUTF8 of a 10-word sentence to the first sample handed to the sink
//                   (UTF-8 conversion, producer, consumer and the wave device all included).
//   SaveToWave      SaveVNToWaveFile of a 5,000-word text; reports the process's peak memory.
//   EspeakNgToWave  `espeak-ng -v vi -w` on the same text (skipped when it is not installed).
//   ProcessCpu      CPU time (user + system) of whole processes on both texts:
//                   `vntts say -f TEXT -w OUT.wav` against `espeak-ng -v vi -w OUT.wav -f TEXT`.
//   SyllablesPerSecond  the news paragraph spoken into a file at a given rate: syllables over
//                   seconds of sound.
// The voice is read from $VNTTS_DATA_DIR, else from the build's bin/index.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "audio/archive/unit_archive.h"
#include "audio/audio_system.h"
#include "core/data_folder.h"
#include "core/messages.h"
#include "engine/speech_engine.h"
#include "instant_sink.h"
#include "sound_report/report_texts.h"
#include "text/charset/charsets.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::array<std::string_view, 96> kSyllables = {
    "và",     "của",  "có",   "là",   "không", "những", "một",   "người", "được",  "trong",
    "cho",    "các",  "với",  "đã",   "này",   "để",    "khi",   "đến",   "nhiều", "từ",
    "thì",    "ra",   "lại",  "năm",  "như",   "nói",   "sẽ",    "vào",   "đi",    "làm",
    "ông",    "bà",   "anh",  "chị",  "em",    "tôi",   "chúng", "ta",    "họ",    "mình",
    "nước",   "việt", "nam",  "hà",   "nội",   "thành", "phố",   "đường", "nhà",   "cửa",
    "trường", "học",  "sinh", "viên", "thầy",  "cô",    "giáo",  "bài",   "tiếng", "sách",
    "báo",    "tin",  "tức",  "thời", "gian",  "ngày",  "tháng", "sáng",  "chiều", "tối",
    "mưa",    "nắng", "gió",  "biển", "sông",  "núi",   "rừng",  "cây",   "hoa",   "trời",
    "ăn",     "uống", "ngủ",  "đọc",  "viết",  "hiểu",  "biết",  "muốn",  "đẹp",   "tốt",
    "mới",    "lớn",  "nhỏ",  "xa",   "gần",   "trên",
};

// Sentences of 8 to 20 words ending in a full stop, with a comma now and then.
std::string MakeText(std::size_t words) {
  std::mt19937 random(2026);
  std::string text;
  std::size_t in_sentence = 0, sentence_length = 10;
  for (std::size_t i = 0; i < words; ++i) {
    std::string w(kSyllables[random() % kSyllables.size()]);
    text += w;
    if (++in_sentence == sentence_length) {
      text += ". ";
      in_sentence = 0;
      sentence_length = 8 + random() % 13;
    } else {
      text += (random() % 9 == 0) ? ", " : " ";
    }
  }
  return text;
}

std::filesystem::path VoiceFolder() {
  if (const char* env = std::getenv("VNTTS_DATA_DIR"); env && *env) return env;
  return std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / "bin" /
         "index";
}

// A sink that plays nothing and takes everything at once, noting when the first bytes came.
class TimingSink final : public vntts::bench::InstantSink {
public:
  explicit TimingSink(std::atomic<Clock::rep>* first) : first_(first) {}
  std::string_view Backend() const override { return "timing"; }
  vntts::DeviceResult Open(const vntts::WaveFormat&) override { return 0; }
  vntts::DeviceResult Write(std::span<const std::uint8_t> bytes) override {
    Clock::rep expected = 0;
    if (!bytes.empty())
      first_->compare_exchange_strong(expected, Clock::now().time_since_epoch().count());
    written_ += bytes.size();
    return 0;
  }
  bool Drained() override { return true; }
  vntts::DeviceResult Position(std::uint64_t& frames) override {
    frames = written_; // at least every frame: all events are due
    return 0;
  }

private:
  std::atomic<Clock::rep>* first_;
  std::uint64_t written_ = 0;
};

class TimingAudio final : public vntts::AudioSystem {
public:
  std::atomic<Clock::rep> first{0};
  std::unique_ptr<vntts::AudioSink> MakeSink() override {
    return std::make_unique<TimingSink>(&first);
  }
  std::unique_ptr<vntts::AudioSource> MakeSource() override { return nullptr; }
  vntts::DeviceCapabilities OutputCapabilities() override { return {}; }
  vntts::DeviceCapabilities InputCapabilities() override { return {}; }
};

class QuietMessages final : public vntts::Messages {
public:
  void Report(std::string_view, std::string_view, vntts::MessageIcon) override {}
};

std::size_t PeakResidentKiB() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line))
    if (line.rfind("VmHWM:", 0) == 0) return std::strtoul(line.c_str() + 6, nullptr, 10);
  return 0;
}

// cold: a fresh engine for every call, so every word of the sentence is decoded first; warm:
// one engine, the words already in its cache of decoded units.
void FirstSample(benchmark::State& state, bool cold) {
  QuietMessages messages;
  const std::string sentence = "Hôm nay trời đẹp chúng tôi đi học trường mới."; // 10 words
  TimingAudio* timing = nullptr;
  auto make = [&] {
    auto audio = std::make_unique<TimingAudio>();
    timing = audio.get();
    vntts::EngineOverrides overrides;
    overrides.audio = std::move(audio);
    return std::make_unique<vntts::SpeechEngine>(messages, vntts::DataFolder(VoiceFolder()),
                                                 std::move(overrides));
  };
  auto engine = make();
  std::vector<std::uint8_t> probe(VN_WORD_BUFFER_BYTES);
  std::uint32_t n = 0;
  if (!engine->RenderWord(vntts::Utf8ToInternal("trời"), probe.data(), &n)) {
    state.SkipWithError("no voice in the data folder (set VNTTS_DATA_DIR)");
    return;
  }
  for (auto _ : state) {
    if (cold) engine = make();
    timing->first = 0;
    const auto start = Clock::now();
    engine->SetNotify(nullptr, 0);
    engine->Speak(vntts::Utf8ToInternal(sentence));
    while (timing->first.load() == 0)
      std::this_thread::yield();
    const auto first = Clock::time_point(Clock::duration(timing->first.load()));
    state.SetIterationTime(std::chrono::duration<double>(first - start).count());
    engine->Stop();
    engine->WaitUntilDone();
  }
}
BENCHMARK_CAPTURE(FirstSample, cold, true)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);
BENCHMARK_CAPTURE(FirstSample, warm, false)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(50);

const std::string& LongText() {
  static const std::string text = MakeText(5000);
  return text;
}

// Words drawn evenly from every syllable the voice holds: nearly every word is new, so the
// cache of decoded units barely helps and the decoder sets the pace.
const std::string& WideText() {
  static const std::string text = [] {
    QuietMessages messages;
    vntts::DataFolder folder(VoiceFolder());
    vntts::UnitArchive archive(folder.FilePath("main_dic.dat"), messages);
    std::vector<std::string> keys;
    for (const auto& k : archive.Keys())
      if (k.size() > 1 && k.find_first_of(" .,;:!?0123456789") == std::string::npos)
        keys.push_back(vntts::InternalToUtf8(k));
    std::string out;
    if (keys.empty()) return out;
    std::mt19937 random(7);
    for (int i = 1; i <= 5000; ++i)
      out += keys[random() % keys.size()] + (i % 12 == 0 ? ". " : " ");
    return out;
  }();
  return text;
}

// Real, varied prose: every sentence of the reading tables (news, notices, shops, technical
// text; about 4,300 words with numbers, dates and loan words), as a host would read a document.
const std::string& NewsText() {
  static const std::string text = [] {
    std::string out;
    const std::filesystem::path tables =
        std::filesystem::path(VNTTS_SOURCE_DIR) / "tests" / "data" / "readings";
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(tables))
      if (entry.path().extension() == ".tsv") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
      std::ifstream in(file);
      for (std::string line; std::getline(in, line);)
        if (!line.empty() && line[0] != '#') out += line.substr(0, line.find('\t')) + "\n";
    }
    return out;
  }();
  return text;
}

void SaveToWave(benchmark::State& state, const std::string& (*text)()) {
  QuietMessages messages;
  const auto out = std::filesystem::temp_directory_path() /
                   ("vntts_speak_bench_" + std::to_string(::getpid()) + ".wav");
  const std::string& utf8 = text();
  double seconds_of_sound = 0;
  for (auto _ : state) {
    // A fresh engine each time: nothing decoded before the text starts.
    state.PauseTiming();
    std::filesystem::remove(out);
    vntts::EngineOverrides overrides;
    overrides.audio = vntts::make_system_audio("null");
    auto engine = std::make_unique<vntts::SpeechEngine>(messages, vntts::DataFolder(VoiceFolder()),
                                                        std::move(overrides));
    state.ResumeTiming();
    // What SaveVNToWaveFile does: UTF-8 to internal text, then speak into the file.
    engine->SpeakToFile(vntts::Utf8ToInternal(utf8), out.string());
    engine->WaitUntilDone();
    state.PauseTiming();
    engine.reset();
    seconds_of_sound = static_cast<double>(std::filesystem::file_size(out)) / (22050.0 * 4);
    state.ResumeTiming();
  }
  std::filesystem::remove(out);
  state.counters["words"] = 5000;
  state.counters["sound_s"] = seconds_of_sound;
  state.counters["peak_rss_MiB"] = static_cast<double>(PeakResidentKiB()) / 1024.0;
}
BENCHMARK_CAPTURE(SaveToWave, common_words, &LongText)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK_CAPTURE(SaveToWave, every_syllable, &WideText)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

void EspeakNgToWave(benchmark::State& state, const std::string& (*source)()) {
  if (std::system("command -v espeak-ng >/dev/null 2>&1") != 0) {
    state.SkipWithError("espeak-ng is not installed");
    return;
  }
  const auto dir = std::filesystem::temp_directory_path();
  const auto text = dir / ("vntts_speak_bench_" + std::to_string(::getpid()) + ".txt");
  const auto out = dir / ("vntts_speak_bench_espeak_" + std::to_string(::getpid()) + ".wav");
  std::ofstream(text) << source();
  const std::string command =
      "espeak-ng -v vi -w '" + out.string() + "' -f '" + text.string() + "' 2>/dev/null";
  for (auto _ : state)
    if (std::system(command.c_str()) != 0) state.SkipWithError("espeak-ng failed");
  std::filesystem::remove(text);
  std::filesystem::remove(out);
  state.counters["words"] = 5000;
}
BENCHMARK_CAPTURE(EspeakNgToWave, common_words, &LongText)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK_CAPTURE(EspeakNgToWave, every_syllable, &WideText)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

// The CPU time a whole process takes (user + system, from its exit status), or -1 when it could
// not run or failed.
double ProcessCpuSeconds(const std::vector<std::string>& argv) {
  std::vector<char*> args;
  for (const auto& a : argv)
    args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t pid = 0;
  const int spawned = posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) return -1;
  int status = 0;
  rusage usage{};
  if (wait4(pid, &status, 0, &usage) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
    return -1;
  auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Both programs on the same text, one after the other in every iteration, so that both see the
// same load; the iteration time is this library's CPU time and the counters give both.
void ProcessCpu(benchmark::State& state, const std::string& (*source)()) {
  if (std::system("command -v espeak-ng >/dev/null 2>&1") != 0) {
    state.SkipWithError("espeak-ng is not installed");
    return;
  }
  const auto dir = std::filesystem::temp_directory_path();
  const std::string tag = std::to_string(::getpid());
  const auto text = dir / ("vntts_cpu_bench_" + tag + ".txt");
  const auto ours = dir / ("vntts_cpu_bench_" + tag + ".wav");
  const auto theirs = dir / ("vntts_cpu_bench_espeak_" + tag + ".wav");
  std::ofstream(text) << source();
  const auto vntts =
      std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / "bin" / "vntts";
  double total_ours = 0, total_theirs = 0;
  for (auto _ : state) {
    std::filesystem::remove(ours);
    const double a =
        ProcessCpuSeconds({vntts.string(), "say", "-f", text.string(), "-w", ours.string()});
    const double b =
        ProcessCpuSeconds({"espeak-ng", "-v", "vi", "-w", theirs.string(), "-f", text.string()});
    if (a < 0 || b < 0) {
      state.SkipWithError("a program failed");
      break;
    }
    state.SetIterationTime(a);
    total_ours += a;
    total_theirs += b;
  }
  for (const auto& f : {text, ours, theirs})
    std::filesystem::remove(f);
  const auto n = static_cast<double>(state.iterations());
  state.counters["vntts_cpu_s"] = total_ours / n;
  state.counters["espeak_cpu_s"] = total_theirs / n;
  state.counters["ratio"] = total_theirs > 0 ? total_ours / total_theirs : 0;
}
BENCHMARK_CAPTURE(ProcessCpu, common_words, &LongText)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);
BENCHMARK_CAPTURE(ProcessCpu, news_prose, &NewsText)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);
BENCHMARK_CAPTURE(ProcessCpu, every_syllable, &WideText)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);

// How fast the slowness of a rate lets speech go, over one news paragraph spoken afresh.
void SyllablesPerSecond(benchmark::State& state) {
  QuietMessages messages;
  const auto rate = static_cast<std::uint32_t>(state.range(0));
  const auto out = std::filesystem::temp_directory_path() /
                   ("vntts_rate_bench_" + std::to_string(::getpid()) + ".wav");
  const std::string_view text = sound_report::kNewsParagraph;
  const double syllables =
      1 + static_cast<double>(std::count(text.begin(), text.end(), ' ')); // one blank each
  vntts::EngineOverrides overrides;
  overrides.audio = vntts::make_system_audio("null");
  vntts::SpeechEngine engine(messages, vntts::DataFolder(VoiceFolder()), std::move(overrides));
  double seconds_of_sound = 0;
  for (auto _ : state) {
    std::filesystem::remove(out);
    engine.SetRateSpeech(rate);
    engine.SpeakToFile(vntts::Utf8ToInternal(text), out.string());
    engine.WaitUntilDone();
    seconds_of_sound = static_cast<double>(std::filesystem::file_size(out) - 44) / (22050.0 * 4);
  }
  std::filesystem::remove(out);
  state.counters["syllables"] = syllables;
  state.counters["sound_s"] = seconds_of_sound;
  state.counters["syllables_per_s"] = syllables / seconds_of_sound;
}
BENCHMARK(SyllablesPerSecond)
    ->Arg(0)
    ->Arg(2500)
    ->Arg(4000)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

} // namespace

BENCHMARK_MAIN();
