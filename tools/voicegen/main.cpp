// SPDX-License-Identifier: MIT
// Builds the default voice: speaks every syllable of the inventory with eSpeak NG, shapes and
// encodes each one, and collects the recordings into main_dic.dat/.idx/.arr with the project's
// own archive writer, exactly as a folder of real recordings would be.
//
//   vntts_voicegen --out DIR [--dic FILE] [--jobs N] [--keep-units] [--list]
#include <espeak-ng/speak_lib.h>

#include <atomic>
#include <charconv>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "audio/archive/archive_writer.h"
#include "audio/archive/recording_list.h"
#include "inventory.h"
#include "unit_encoding.h"
#include "unit_shaping.h"

namespace fs = std::filesystem;

namespace {

struct Options {
  fs::path out;
  std::string dic = "/usr/share/hunspell/vi_VN.dic";
  unsigned jobs = 0;
  bool keep_units = false;
  bool list_only = false;
};

struct Job {
  std::string key;
  std::vector<std::int16_t> pcm;
};

// Synthesised syllables wait here for the encoding threads; the bound keeps memory flat.
class JobQueue {
public:
  void Push(Job job) {
    std::unique_lock lock(mutex_);
    space_.wait(lock, [&] { return jobs_.size() < kBound; });
    jobs_.push_back(std::move(job));
    ready_.notify_one();
  }
  void Close() {
    std::lock_guard lock(mutex_);
    closed_ = true;
    ready_.notify_all();
  }
  bool Pop(Job& job) {
    std::unique_lock lock(mutex_);
    ready_.wait(lock, [&] { return !jobs_.empty() || closed_; });
    if (jobs_.empty()) return false;
    job = std::move(jobs_.front());
    jobs_.pop_front();
    space_.notify_one();
    return true;
  }

private:
  static constexpr std::size_t kBound = 256;
  std::mutex mutex_;
  std::condition_variable ready_, space_;
  std::deque<Job> jobs_;
  bool closed_ = false;
};

// eSpeak NG's words a minute. Each syllable is spoken alone, as a whole utterance, so it comes
// out longer than in running speech; this pace gives units of about 0.17 s and, with the
// designed joins, fluent reading of about 5.5 syllables a second at the default rate.
constexpr int kWordsPerMinute = 270;

struct Stats {
  std::atomic<std::size_t> units{0}, empty{0}, limited{0}, stops{0}, failed{0};
  std::atomic<std::size_t> retried{0}, missed{0}; // of the decoded checks
  std::atomic<std::uint64_t> samples{0};
  std::mutex mutex;
  double min_rms = 1e9, max_rms = 0;
};

// eSpeak NG keeps global state, so all synthesis happens on one thread; the callback appends to
// the buffer handed through user_data.
int CollectSamples(short* wav, int count, espeak_EVENT* events) {
  if (wav && count > 0 && events) {
    auto* out = static_cast<std::vector<std::int16_t>*>(events->user_data);
    out->insert(out->end(), wav, wav + count);
  }
  return 0;
}

bool ParseOptions(int argc, char** argv, Options& o) {
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    auto value = [&](std::string& v) {
      if (i + 1 >= argc) return false;
      v = argv[++i];
      return true;
    };
    std::string v;
    if (a == "--out" && value(v))
      o.out = v;
    else if (a == "--dic" && value(o.dic))
      continue;
    else if (a == "--jobs" && value(v))
      std::from_chars(v.data(), v.data() + v.size(), o.jobs);
    else if (a == "--keep-units")
      o.keep_units = true;
    else if (a == "--list")
      o.list_only = true;
    else
      return false;
  }
  return o.list_only || !o.out.empty();
}

void EncodeJobs(JobQueue& queue, const fs::path& units, Stats& stats) {
  Job job;
  while (queue.Pop(job)) {
    const auto shaped = voicegen::ShapeUnit(job.pcm);
    if (shaped.empty) {
      ++stats.empty;
      std::fprintf(stderr, "voicegen: no sound for \"%s\"\n", job.key.c_str());
      continue;
    }
    const auto encoded = voicegen::EncodeChecked(shaped);
    if (encoded.error) {
      if (stats.failed++ < 10) // one cause usually fails them all
        std::fprintf(stderr, "voicegen: \"%s\": %s\n", job.key.c_str(), encoded.error);
      continue;
    }
    std::ofstream file(units / (job.key + ".mp3"), std::ios::binary);
    file.write(reinterpret_cast<const char*>(encoded.mp3.data()),
               static_cast<std::streamsize>(encoded.mp3.size()));
    if (!file) {
      ++stats.failed;
      std::fprintf(stderr, "voicegen: cannot write \"%s\"\n", job.key.c_str());
      continue;
    }
    ++stats.units;
    if (shaped.peak_limited) ++stats.limited;
    if (shaped.final_stop) ++stats.stops;
    if (encoded.attempts > 1) ++stats.retried;
    if (!encoded.passed) ++stats.missed;
    stats.samples += encoded.samples;
    std::lock_guard lock(stats.mutex);
    stats.min_rms = std::min(stats.min_rms, shaped.rms);
    stats.max_rms = std::max(stats.max_rms, shaped.rms);
  }
}

} // namespace

int main(int argc, char** argv) {
  Options options;
  if (!ParseOptions(argc, argv, options)) {
    std::fprintf(stderr, "usage: vntts_voicegen --out DIR [--dic FILE] [--jobs N] [--keep-units]"
                         " [--list]\n");
    return 2;
  }
  const auto inventory = voicegen::BuildInventory({options.dic});
  if (options.list_only) {
    for (const auto& [key, text] : inventory)
      std::printf("%s\t%s\n", key.c_str(), text.c_str());
    return 0;
  }

  const fs::path units = options.out / "units";
  std::error_code ec;
  fs::remove_all(units, ec);
  fs::create_directories(units, ec);
  if (ec) {
    std::fprintf(stderr, "voicegen: cannot create %s: %s\n", units.c_str(), ec.message().c_str());
    return 1;
  }

  const int rate = espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr, 0);
  if (rate != 22050 || espeak_SetVoiceByName("vi") != EE_OK) {
    std::fprintf(stderr, "voicegen: eSpeak NG with its Vietnamese voice is needed (rate %d)\n",
                 rate);
    return 1;
  }
  espeak_SetSynthCallback(CollectSamples);
  espeak_SetParameter(espeakRATE, kWordsPerMinute, 0);

  JobQueue queue;
  Stats stats;
  const unsigned jobs =
      options.jobs ? options.jobs : std::max(1u, std::thread::hardware_concurrency());
  std::vector<std::thread> workers;
  for (unsigned i = 0; i < jobs; ++i)
    workers.emplace_back(EncodeJobs, std::ref(queue), std::cref(units), std::ref(stats));
  for (const auto& [key, text] : inventory) {
    Job job{key, {}};
    espeak_Synth(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8, nullptr,
                 &job.pcm);
    queue.Push(std::move(job));
  }
  queue.Close();
  for (auto& w : workers)
    w.join();
  espeak_Terminate();

  vntts::StderrMessages messages;
  std::vector<vntts::SkippedRecording> skipped;
  const auto list = vntts::SortListByKey(vntts::ListRecordings(units, 0), skipped);
  vntts::ArchiveWriteOptions write_options;
  write_options.report_completion = false;
  const auto result =
      vntts::WriteArchive(list, (options.out / "main_dic.dat").string(), messages, write_options);
  for (const auto& s : skipped)
    std::fprintf(stderr, "voicegen: left out %s: %s\n", s.name.c_str(), s.reason.c_str());
  if (!result.ok) return 1;

  std::ofstream listing(options.out / "inventory.txt");
  for (const auto& [key, text] : inventory)
    listing << key << '\t' << text << '\n';
  if (!options.keep_units) fs::remove_all(units, ec);

  std::printf("voice: %zu units (%zu in the inventory), %.1f MB data, %.0f s of speech, "
              "RMS %.0f..%.0f, %zu peak-limited, %zu ending in a stop, %zu silent, %zu failed; "
              "decoded checks: %zu encoded again, %zu still missing\n",
              result.units, inventory.size(), static_cast<double>(result.data_bytes) / 1e6,
              static_cast<double>(stats.samples) / 22050.0, stats.min_rms, stats.max_rms,
              stats.limited.load(), stats.stops.load(), stats.empty.load(), stats.failed.load(),
              stats.retried.load(), stats.missed.load());
  return stats.failed == 0 ? 0 : 1;
}
