// SPDX-License-Identifier: MIT
// Cost of the word-store lookups the producer makes for every word, and of the spelling
// fallback for a word the archive lacks. Reads the default stores the build made.
#include <benchmark/benchmark.h>

#include <set>

#include "engine/spelling_variants.h"
#include "store/user_word_stores.h"
#include "text/charset/charsets.h"

namespace {

const std::filesystem::path kDataFolder = VNTTS_INDEX_DIR;

vntts::UserWordStores& Stores() {
  static vntts::UserWordStores stores;
  static const bool loaded = [] {
    const char* folder = std::getenv("VNTTS_DATA_DIR");
    return stores.Load(folder != nullptr ? std::filesystem::path(folder) : kDataFolder).empty();
  }();
  (void)loaded;
  return stores;
}

void BM_PhraseLookupHit(benchmark::State& state) {
  auto& stores = Stores();
  const std::string first = vntts::Utf8ToInternal("học");
  const std::string second = vntts::Utf8ToInternal("sinh");
  if (!stores.phrases.IsPhrase(first, second))
    state.SkipWithError("default data.dic not found; set VNTTS_DATA_DIR");
  for (auto _ : state)
    benchmark::DoNotOptimize(stores.phrases.IsPhrase(first, second));
}
BENCHMARK(BM_PhraseLookupHit);

void BM_PhraseLookupMiss(benchmark::State& state) {
  auto& stores = Stores();
  const std::string first = vntts::Utf8ToInternal("sinh");
  const std::string second = vntts::Utf8ToInternal("học");
  for (auto _ : state)
    benchmark::DoNotOptimize(stores.phrases.IsPhrase(first, second));
}
BENCHMARK(BM_PhraseLookupMiss);

void BM_AutoCorrectLookup(benchmark::State& state) {
  auto& stores = Stores();
  for (auto _ : state)
    benchmark::DoNotOptimize(stores.auto_correct.FindReplacement("ko"));
}
BENCHMARK(BM_AutoCorrectLookup);

void BM_DefinitionLookup(benchmark::State& state) {
  auto& stores = Stores();
  for (auto _ : state)
    benchmark::DoNotOptimize(stores.definitions.FindDefinition("tp.hcm"));
}
BENCHMARK(BM_DefinitionLookup);

void BM_SpellingVariants(benchmark::State& state) {
  const std::string word = vntts::Utf8ToInternal("thuỷ");
  for (auto _ : state)
    benchmark::DoNotOptimize(vntts::SpellingVariantList(word));
}
BENCHMARK(BM_SpellingVariants);

void BM_SplitRunTogether(benchmark::State& state) {
  const std::set<std::string> keys = {vntts::Utf8ToInternal("thanh"),
                                      vntts::Utf8ToInternal("niên")};
  const vntts::HasUnitKey hasKey = [&](std::string_view k) {
    return keys.contains(std::string(k));
  };
  const std::string word = vntts::Utf8ToInternal("thanhniên");
  for (auto _ : state)
    benchmark::DoNotOptimize(vntts::SplitIntoSyllables(word, hasKey));
}
BENCHMARK(BM_SplitRunTogether);

} // namespace

BENCHMARK_MAIN();
