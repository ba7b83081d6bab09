// SPDX-License-Identifier: MIT
// The sound report: speaks a fixed news paragraph and thirty fixed sentences with the default
// voice and with eSpeak NG's Vietnamese voice, and prints what a speech engineer would measure
// on both: pace, the silence at joins inside phrases, the silence each unit carries, where word
// events fall against the sound (in every output format), bandwidth, loudness and offsets.
//
//   sound_report [--voice DIR] [--wav DIR]
//
// The voice is read from --voice, else $VNTTS_DATA_DIR, else the build's bin/index. With --wav
// the spoken texts are written there as WAV files (for listening and spectrograms).
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "audio/wave_writing.h"
#include "core/messages.h"
#include "engine_speech.h"
#include "espeak_speech.h"
#include "report_texts.h"
#include "signal_measures.h"
#include "unit_figures.h"

namespace fs = std::filesystem;
using namespace sound_report;

namespace {

struct Options {
  fs::path voice;
  fs::path wav;
};

bool ParseOptions(int argc, char** argv, Options& o) {
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    if (i + 1 >= argc) return false;
    if (a == "--voice")
      o.voice = argv[++i];
    else if (a == "--wav")
      o.wav = argv[++i];
    else
      return false;
  }
  if (o.voice.empty()) {
    if (const char* env = std::getenv("VNTTS_DATA_DIR"); env && *env)
      o.voice = env;
    else
      o.voice = fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "bin" / "index";
  }
  return true;
}

// One engine's speech of the report's texts.
struct Spoken {
  Speech news;
  std::vector<Speech> sentences;
};

template <typename Speak> std::optional<Spoken> SpeakAll(Speak&& speak) {
  Spoken s;
  auto news = speak(kNewsParagraph);
  if (!news) return std::nullopt;
  s.news = std::move(*news);
  for (auto sentence : kSentences) {
    auto spoken = speak(sentence);
    if (!spoken) return std::nullopt;
    s.sentences.push_back(std::move(*spoken));
  }
  return s;
}

std::vector<float> Joined(const std::vector<Speech>& all) {
  std::vector<float> out;
  for (const auto& s : all)
    out.insert(out.end(), s.samples.begin(), s.samples.end());
  return out;
}

void WriteWav(const fs::path& path, const std::vector<float>& samples, double rate) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(samples.size() * 2);
  for (float v : samples) {
    const auto s =
        static_cast<std::int16_t>(std::lround(std::clamp(v * 32768.0f, -32768.f, 32767.f)));
    bytes.push_back(static_cast<std::uint8_t>(s & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>((s >> 8) & 0xFF));
  }
  vntts::StderrMessages messages;
  vntts::WriteWaveFile(path.string(),
                       vntts::WaveFormat::Pcm(1, static_cast<std::uint32_t>(rate), 16), bytes, {},
                       messages);
}

// ---- Figures of one engine -------------------------------------------------------------------

struct Figures {
  Rhythm news;
  Summary joins;
  std::size_t joins_over_40 = 0;
  double above_8k = 0, from_8k_to_10k = 0, above_10k = 0;
  Summary sentence_level;
  double worst_sentence_dc = 0;
};

Figures Measure(const Spoken& s) {
  Figures f;
  f.news = MeasureRhythm(s.news);
  std::vector<double> joins = JoinSilencesMs(s.news);
  std::vector<double> levels;
  for (const auto& sentence : s.sentences) {
    const auto j = JoinSilencesMs(sentence);
    joins.insert(joins.end(), j.begin(), j.end());
    const Run span = SoundSpan(sentence.samples, sentence.rate);
    const auto spoken = std::span(sentence.samples).subspan(span.begin, span.size());
    levels.push_back(Dbfs(RmsOf(spoken)));
    f.worst_sentence_dc = std::max(f.worst_sentence_dc, std::abs(Mean(spoken)) * 32768.0);
  }
  for (double j : joins)
    f.joins_over_40 += j > 40 ? 1 : 0;
  f.joins = Summarise(joins);
  f.sentence_level = Summarise(levels);
  std::vector<Speech> all = s.sentences;
  all.push_back(s.news);
  const auto joined = Joined(all);
  f.above_8k = BandShareDb(joined, 22050, 8000, 11025);
  f.from_8k_to_10k = BandShareDb(joined, 22050, 8000, 10000);
  f.above_10k = BandShareDb(joined, 22050, 10000, 11025);
  return f;
}

// ---- Printing -----------------------------------------------------------------------------

std::string Fixed(double v, int decimals = 1) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.*f", decimals, v);
  return buf;
}

std::string Spread(const Summary& s, int decimals = 0) {
  return Fixed(s.min, decimals) + " / " + Fixed(s.median, decimals) + " / " +
         Fixed(s.p90, decimals) + " / " + Fixed(s.max, decimals);
}

void Row(const std::string& what, const std::string& ours, const std::string& espeak,
         const std::string& goal) {
  std::printf("| %s | %s | %s | %s |\n", what.c_str(), ours.c_str(), espeak.c_str(), goal.c_str());
}

void PrintComparison(const Figures& o, const std::optional<Figures>& e) {
  auto other = [&](auto get) { return e ? get(*e) : std::string("n/a"); };
  std::printf("| | vntts | espeak-ng -v vi | goal |\n|---|---|---|---|\n");
  auto within = [](const Figures& f) { return Fixed(f.news.syllables / f.news.phrase_seconds, 2); };
  auto overall = [](const Figures& f) {
    return Fixed(f.news.syllables / f.news.spoken_seconds, 2);
  };
  Row("news: syllables per second within phrases", within(o), other(within), ">= 5.0");
  Row("news: syllables per second overall", overall(o), other(overall), "reported");
  auto joins = [](const Figures& f) { return Spread(f.joins); };
  Row("join silence inside phrases, ms (min / median / p90 / max)", joins(o), other(joins),
      "median <= 20, max <= 40");
  auto over = [](const Figures& f) {
    return std::to_string(f.joins_over_40) + " of " + std::to_string(f.joins.count);
  };
  Row("joins over 40 ms", over(o), other(over), "0");
  auto band = [](const Figures& f) {
    return Fixed(f.above_8k) + " / " + Fixed(f.from_8k_to_10k) + " / " + Fixed(f.above_10k);
  };
  Row("energy above 8 kHz / 8-10 kHz / above 10 kHz, dB of all", band(o), other(band),
      "energy up to 10 kHz");
  auto level = [](const Figures& f) {
    return Fixed(f.sentence_level.median) + " (" + Fixed(f.sentence_level.min) + " .. " +
           Fixed(f.sentence_level.max) + ")";
  };
  Row("loudness per sentence, dBFS RMS: median (min .. max)", level(o), other(level), "-18 +/- 1");
  auto dc = [](const Figures& f) { return Fixed(f.worst_sentence_dc); };
  Row("largest offset of a sentence from zero, LSB", dc(o), other(dc), "reported");
}

void PrintUnits(const UnitFigures& u) {
  const Summary lead = Summarise(u.lead_ms), tail = Summarise(u.tail_ms);
  const Summary dc = Summarise(u.dc_lsb), level = Summarise(u.level_db);
  const Summary length = Summarise(u.seconds);
  auto count = [](const std::vector<double>& v, auto outside) {
    return static_cast<std::size_t>(std::count_if(v.begin(), v.end(), outside));
  };
  const std::size_t lead_over = count(u.lead_ms, [](double v) { return v > 10; });
  const std::size_t dc_over = count(u.dc_lsb, [](double v) { return v >= 5; });
  const double median_level = level.median;
  const std::size_t level_out =
      count(u.level_db, [&](double v) { return std::abs(v - median_level) > 1; });
  std::printf("\nUnits: %zu, length s (min / median / p90 / max) %s\n", lead.count,
              Spread(length, 3).c_str());
  std::printf("| unit figure | min / median / p90 / max | goal |\n|---|---|---|\n");
  std::printf("| leading silence, ms | %s (%zu over 10 ms) | <= 10 for every unit |\n",
              Spread(lead).c_str(), lead_over);
  std::printf("| trailing silence, ms | %s | reported |\n", Spread(tail).c_str());
  std::printf("| offset from zero, LSB | %s (%zu at 5 or more) | < 5 |\n", Spread(dc, 1).c_str(),
              dc_over);
  std::printf("| gated loudness, dB from the median (%.1f dBFS) | %+.2f / 0 / %+.2f / %+.2f (%zu "
              "beyond 1 dB) | within 1 dB |\n",
              level.median, level.min - level.median, level.p90 - level.median,
              level.max - level.median, level_out);
  std::string examples;
  for (const auto& e : u.cut_examples)
    examples += (examples.empty() ? ": " : ", ") + e;
  std::printf("| cut tails (sound stops above -60 dBFS) | %zu%s | 0 |\n", u.cut_tails,
              examples.c_str());
}

void PrintEventOffsets(EngineSpeaker& engine) {
  std::printf("\n| output format | word event - sound onset, ms (min / median / max) | words "
              "| without an onset | goal |\n|---|---|---|---|---|\n");
  const char* layouts[] = {"mono 8-bit", "stereo 8-bit", "mono 16-bit", "stereo 16-bit"};
  for (std::uint32_t base : {8u, 20u, 32u}) {
    for (std::uint32_t k = 0; k < 4; ++k) {
      std::vector<double> offsets;
      std::size_t without = 0, dropped = 0;
      double rate = 0;
      for (auto sentence : kSentences) {
        const Speech s = engine.Speak(sentence, base + k);
        rate = s.rate;
        const auto e = MeasureEventOffsets(s);
        offsets.insert(offsets.end(), e.offsets_ms.begin(), e.offsets_ms.end());
        without += e.without_onset;
        dropped += s.dropped_words;
      }
      const Summary sum = Summarise(offsets);
      std::printf("| %.0f Hz %s | %s / %s / %s | %zu | %zu%s | within +/-5 |\n", rate, layouts[k],
                  Fixed(sum.min).c_str(), Fixed(sum.median).c_str(), Fixed(sum.max).c_str(),
                  sum.count, without,
                  dropped ? (" (" + std::to_string(dropped) + " dropped)").c_str() : "");
    }
  }
}

void PrintEightBit(EngineSpeaker& engine) {
  double dc = 0, pause = 0;
  std::size_t samples = 0;
  for (auto sentence : kSentences) {
    const Speech s = engine.Speak(sentence, 20);
    const Run span = SoundSpan(s.samples, s.rate);
    for (std::size_t i = span.begin; i < span.end; ++i)
      dc += s.samples[i];
    samples += span.size();
    if (!s.samples.empty()) pause = s.samples.back();
  }
  const double mean = samples ? dc / static_cast<double>(samples) : 0;
  std::printf("\n8-bit output (22050 Hz mono): offset of the speech from the midpoint %.1f dBFS "
              "(%.3f steps); pause byte 0x%02X\n",
              Dbfs(std::abs(mean)), mean * 128,
              static_cast<unsigned>(std::lround(pause * 128 + 128)));
}

} // namespace

int main(int argc, char** argv) {
  Options options;
  if (!ParseOptions(argc, argv, options)) {
    std::fprintf(stderr, "usage: sound_report [--voice DIR] [--wav DIR]\n");
    return 2;
  }
  EngineSpeaker engine(options.voice);
  if (!engine.HasVoice()) {
    std::fprintf(stderr, "sound_report: no voice in %s\n", options.voice.c_str());
    return 1;
  }
  const auto ours = SpeakAll([&](std::string_view t) { return std::optional(engine.Speak(t)); });
  const auto espeak = SpeakAll([](std::string_view t) { return SpeakWithEspeak(t); });
  if (!espeak) std::fprintf(stderr, "sound_report: eSpeak NG could not be started\n");

  std::printf("Voice: %s\n\n", options.voice.c_str());
  PrintComparison(Measure(*ours), espeak ? std::optional(Measure(*espeak)) : std::nullopt);
  if (const auto units = MeasureUnits(options.voice)) PrintUnits(*units);
  PrintEventOffsets(engine);
  PrintEightBit(engine);

  if (!options.wav.empty()) {
    fs::create_directories(options.wav);
    WriteWav(options.wav / "vntts_news.wav", ours->news.samples, 22050);
    WriteWav(options.wav / "vntts_sentences.wav", Joined(ours->sentences), 22050);
    if (espeak) {
      WriteWav(options.wav / "espeak_news.wav", espeak->news.samples, 22050);
      WriteWav(options.wav / "espeak_sentences.wav", Joined(espeak->sentences), 22050);
    }
  }
  return 0;
}
