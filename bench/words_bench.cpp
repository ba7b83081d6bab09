// Throughput of the text front end as `vntts words` runs it: UTF-8 prose with numbers, dates,
// times, money and measures in, the spoken words out as UTF-8 lines.
#include <benchmark/benchmark.h>

#include <filesystem>
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

// The command's work on one text: convert, parse, print the words in UTF-8 blocks.
std::size_t RunWordsCommand(const std::string& utf8, const vntts::FrontEndStores& stores) {
  std::size_t out = 0;
  const std::string internal = vntts::Utf8ToInternal(utf8);
  vntts::SentenceParser parser(internal, stores, vntts::PhraseTexts::Skip);
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
void BM_WordsCommandWithStores(benchmark::State& state) {
  const std::filesystem::path folder = VNTTS_INDEX_DIR;
  if (!std::filesystem::is_regular_file(folder / "main_dic.dat")) {
    state.SkipWithError("no voice in the build's data folder");
    return;
  }
  vntts::DefinitionStore definitions;
  vntts::AutoCorrectTable autoCorrect;
  vntts::StderrMessages messages;
  vntts::ArchiveUnits units((folder / "main_dic.dat").string(), messages);
  vntts::WordRenderer renderer(units);
  vntts::FrontEndStores stores;
  if (definitions.LoadFolder(folder / "Define")) stores.definitions = &definitions;
  if (autoCorrect.Load(folder / "AutoCrt.crt")) stores.autoCorrect = &autoCorrect;
  stores.speakable = &renderer;
  const std::string& utf8 = Prose();
  std::size_t out = 0;
  for (auto _ : state)
    out += RunWordsCommand(utf8, stores);
  benchmark::DoNotOptimize(out);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * utf8.size()));
}
BENCHMARK(BM_WordsCommandWithStores)->Unit(benchmark::kMillisecond);

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
