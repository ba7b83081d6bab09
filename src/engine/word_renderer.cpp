#include "engine/word_renderer.h"

#include <algorithm>
#include <cstring>

#include "audio/archive/key_case.h"
#include "dsp/crossfade.h"
#include "engine/spelling_variants.h"

namespace vntts {

bool WordRenderer::FetchWithVariants(std::string_view key,
                                     std::vector<std::int16_t>& samples) const {
  if (units_.Fetch(key, samples)) return true;
  for (const std::string& variant : SpellingVariantList(key))
    if (units_.Fetch(variant, samples)) return true;
  return false;
}

bool WordRenderer::HasWithVariants(std::string_view key) const {
  if (units_.Has(key)) return true;
  const auto variants = SpellingVariantList(key);
  return std::any_of(variants.begin(), variants.end(),
                     [&](const std::string& v) { return units_.Has(v); });
}

// One half of a two-syllable word: as written (with its variants), then once with i and y
// swapped.
bool WordRenderer::FetchPart(std::string_view part, std::vector<std::int16_t>& samples) const {
  if (FetchWithVariants(part, samples)) return true;
  const std::string swapped = SwapIAndY(part);
  return swapped != part && FetchWithVariants(swapped, samples);
}

bool WordRenderer::Render(std::string_view word, std::vector<std::int16_t>& samples) const {
  samples.clear();
  const std::string key = LowerKey(word);
  if (key.empty()) return false;
  if (FetchWithVariants(key, samples)) return true;
  const auto parts =
      SplitIntoSyllables(key, [this](std::string_view k) { return HasWithVariants(k); });
  if (parts.size() == 1) {
    const std::string swapped = SwapIAndY(key);
    return swapped != key && FetchWithVariants(swapped, samples);
  }
  if (parts.size() != 2) return false;
  std::vector<std::int16_t> first, second;
  if (!FetchPart(parts[0], first) || !FetchPart(parts[1], second)) return false;
  samples = CrossfadeJoin(first, second);
  return !samples.empty();
}

int WordRenderer::RenderInto(std::string_view word, std::span<std::uint8_t> buffer,
                             std::uint32_t& bytes) const {
  bytes = 0;
  std::vector<std::int16_t> samples;
  if (!Render(word, samples)) return 0;
  const std::size_t count = std::min(samples.size(), buffer.size() / sizeof(std::int16_t));
  if (count) std::memcpy(buffer.data(), samples.data(), count * sizeof(std::int16_t));
  bytes = static_cast<std::uint32_t>(count * sizeof(std::int16_t));
  return 1;
}

bool WordRenderer::CanSpeak(std::string_view lowerCaseWord) const {
  const std::string key = LowerKey(lowerCaseWord);
  if (key.empty()) return false;
  if (HasWithVariants(key)) return true;
  const auto parts =
      SplitIntoSyllables(key, [this](std::string_view k) { return HasWithVariants(k); });
  auto has_part = [this](std::string_view p) {
    if (HasWithVariants(p)) return true;
    const std::string s = SwapIAndY(p);
    return s != p && HasWithVariants(s);
  };
  if (parts.size() == 1) return has_part(key);
  return parts.size() == 2 && has_part(parts[0]) && has_part(parts[1]);
}

} // namespace vntts
