// SPDX-License-Identifier: MIT
// Throughput of the text front end as `vntts words` runs it: UTF-8 prose with numbers, dates,
// times, money and measures in, the spoken words out as UTF-8 lines.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "core/messages.h"
#include "engine/archive_units.h"
#include "engine/word_renderer.h"
#include "store/auto_correct_table.h"
#include "store/definition_store.h"
#include "text/charset/charsets.h"
#include "text/sentence_parser.h"

namespace {

// About `bytes` of Vietnamese prose in UTF-8, the same text on every run.
std::string MakeProse(std::size_t bytes) {
  static const std::vector<std::string> kWords = {
      "người", "Việt", "Nam",  "hôm",   "nay",   "thành", "phố",  "Hà",    "Nội",  "có",
      "mưa",   "lớn",  "các",  "em",    "học",   "sinh",  "được", "nghỉ",  "học",  "theo",
      "quyết", "định", "của",  "sở",    "giáo",  "dục",   "và",   "đào",   "tạo",  "giá",
      "xăng",  "tăng", "thêm", "trong", "kỳ",    "điều",  "hành", "chiều", "tuần", "trước",
      "đường", "phố",  "ngập", "nước",  "nhiều", "nơi",   "xe",   "máy",   "chết", "máy",
      "dân",   "cư",   "khu",  "vực",   "này",   "cho",   "biết", "họ",    "rất",  "lo"};
  static const std::vector<std::string> kNumbers = {
      "12",       "1.000", "3,5",          "2/9/1945", "14:30",         "7h15",  "50.000đ",
      "$100",     "5km",   "2,5kg",        "30m2",     "5-10",          "50%",   "1.200.000",
      "ngày 2/9", "105",   "21",           "0,5",      "tháng 12/2024", "100ml", "5,67%",
      "3/4",      "1005",  "Tel: 0912-345"};
  std::mt19937 random(2024);
  std::string text;
  text.reserve(bytes + 256);
  int inSentence = 0;
  while (text.size() < bytes) {
    if (random() % 9 == 0)
      text += kNumbers[random() % kNumbers.size()];
    else
      text += kWords[random() % kWords.size()];
    ++inSentence;
    if (inSentence > 6 && random() % 8 == 0) {
      text += random() % 4 == 0 ? ", " : ".\n";
      inSentence = 0;
    } else {
      text += ' ';
    }
  }
  return text;
}

const std::string& Prose() {
  static const std::string prose = MakeProse(10 << 20);
  return prose;
}

// About `bytes` of text over the whole Vietnamese dictionary (hunspell-vi's 6,600 words), drawn
// with Zipf's law as running text uses words, one token in twelve a number below 100,000: far
// more distinct words and numbers than Prose(), so the caches of the path hit far less often.
// Empty when the dictionary is not installed.
std::string MakeLargeVocabularyText(std::size_t bytes) {
  std::ifstream dictionary("/usr/share/hunspell/vi_VN.dic");
  std::vector<std::string> words;
  std::string line;
  std::getline(dictionary, line); // the word count
  while (std::getline(dictionary, line))
    if (!line.empty()) words.push_back(line.substr(0, line.find('/')));
  if (words.empty()) return {};
  std::mt19937 random(1);
  std::shuffle(words.begin(), words.end(), random);
  std::vector<double> weights(words.size());
  for (std::size_t i = 0; i < weights.size(); ++i)
    weights[i] = 1.0 / static_cast<double>(i + 1);
  std::discrete_distribution<std::size_t> pick(weights.begin(), weights.end());
  std::string text;
  text.reserve(bytes + 256);
  int inSentence = 0;
  while (text.size() < bytes) {
    if (random() % 12 == 0)
      text += std::to_string(random() % 100000);
    else
      text += words[pick(random)];
    const bool end = ++inSentence > 12 && random() % 8 == 0;
    text += end ? ". " : " ";
    if (end) inSentence = 0;
  }
  return text;
}

const std::string& LargeVocabularyText() {
  static const std::string text = MakeLargeVocabularyText(10 << 20);
  return text;
}

// The command's work on one text: convert, parse, print the words in UTF-8 blocks.
std::size_t RunWordsCommand(const std::string& utf8, const vntts::FrontEndStores& stores) {
  std::size_t out = 0;
  const std::string internal = vntts::Utf8ToInternal(utf8);
  vntts::SentenceParser parser(internal, stores, vntts::PhraseTexts::kSkip);
  vntts::Sentence sentence;
  std::string block;
  vntts::InternalToUtf8Stream toUtf8;
  while (parser.Next(sentence)) {
    bool first = true;
    for (const auto& w : sentence.words) {
      if (!first) block += ' ';
      first = false;
      block += w.word;
    }
    block += '\n';
    if (block.size() >= (1 << 18)) {
      out += toUtf8.Convert(block).size();
      block.clear();
    }
  }
  return out + toUtf8.Convert(block).size();
}

void BM_WordsCommand(benchmark::State& state) {
  const std::string& utf8 = Prose();
  std::size_t out = 0;
  for (auto _ : state)
    out += RunWordsCommand(utf8, {});
  benchmark::DoNotOptimize(out);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * utf8.size()));
}
BENCHMARK(BM_WordsCommand)->Unit(benchmark::kMillisecond);

// As `vntts words` runs by default: with the definitions and auto-correct table of the build's
// data folder, and the default voice deciding which words are said and which spelled.
void RunWithStores(benchmark::State& state, const std::string& utf8) {
  const std::filesystem::path folder = VNTTS_INDEX_DIR;
  if (!std::filesystem::is_regular_file(folder / "main_dic.dat")) {
    state.SkipWithError("no voice in the build's data folder");
    return;
  }
  if (utf8.empty()) {
    state.SkipWithError("no text (is hunspell-vi installed?)");
    return;
  }
  vntts::DefinitionStore definitions;
  vntts::AutoCorrectTable autoCorrect;
  vntts::StderrMessages messages;
  vntts::ArchiveUnits units((folder / "main_dic.dat").string(), messages);
  vntts::WordRenderer renderer(units);
  vntts::FrontEndStores stores;
  if (definitions.LoadFolder(folder / "Define")) stores.definitions = &definitions;
  if (autoCorrect.Load(folder / "AutoCrt.crt")) stores.auto_correct = &autoCorrect;
  stores.speakable = &renderer;
  std::size_t out = 0;
  for (auto _ : state)
    out += RunWordsCommand(utf8, stores);
  benchmark::DoNotOptimize(out);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * utf8.size()));
}

void BM_WordsCommandWithStores(benchmark::State& state) {
  RunWithStores(state, Prose());
}
BENCHMARK(BM_WordsCommandWithStores)->Unit(benchmark::kMillisecond);

void BM_WordsCommandLargeVocabulary(benchmark::State& state) {
  RunWithStores(state, LargeVocabularyText());
}
BENCHMARK(BM_WordsCommandLargeVocabulary)->Unit(benchmark::kMillisecond);

void BM_SentenceParserInternal(benchmark::State& state) {
  const std::string internal = vntts::Utf8ToInternal(Prose());
  std::size_t words = 0;
  for (auto _ : state) {
    vntts::SentenceParser parser(internal);
    vntts::Sentence sentence;
    while (parser.Next(sentence))
      words += sentence.words.size();
  }
  benchmark::DoNotOptimize(words);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * internal.size()));
}
BENCHMARK(BM_SentenceParserInternal)->Unit(benchmark::kMillisecond);

void BM_Utf8ToInternal(benchmark::State& state) {
  const std::string& utf8 = Prose();
  for (auto _ : state)
    benchmark::DoNotOptimize(vntts::Utf8ToInternal(utf8));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * utf8.size()));
}
BENCHMARK(BM_Utf8ToInternal)->Unit(benchmark::kMillisecond);

void BM_InternalToUtf8(benchmark::State& state) {
  const std::string internal = vntts::Utf8ToInternal(Prose());
  for (auto _ : state)
    benchmark::DoNotOptimize(vntts::InternalToUtf8(internal));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * internal.size()));
}
BENCHMARK(BM_InternalToUtf8)->Unit(benchmark::kMillisecond);

} // namespace
BENCHMARK_MAIN();
