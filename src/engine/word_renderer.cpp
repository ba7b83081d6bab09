// SPDX-License-Identifier: MIT
#include "engine/word_renderer.h"

#include <algorithm>
#include <cstring>

#include "audio/archive/key_case.h"
#include "engine/spelling_variants.h"

namespace vntts {

bool WordRenderer::HasWithVariants(std::string_view key) const {
  if (units_.Has(key)) return true;
  const auto variants = SpellingVariantList(key);
  return std::any_of(variants.begin(), variants.end(),
                     [&](const std::string& v) { return units_.Has(v); });
}

bool WordRenderer::Render(std::string_view word, std::vector<std::int16_t>& samples) const {
  samples.clear();
  const std::string key = LowerKey(word);
  if (key.empty()) return false;
  // The common case first: the archive holds the word as it is written.
  if (units_.Fetch(key, samples)) return true;
  UnitSource source;
  source.has_key = [this](std::string_view k) { return units_.Has(k); };
  source.fetch = [this](std::string_view k, std::vector<std::uint8_t>& bytes) {
    std::vector<std::int16_t> s;
    if (!units_.Fetch(k, s)) return false;
    bytes.resize(s.size() * sizeof(std::int16_t));
    if (!s.empty()) std::memcpy(bytes.data(), s.data(), bytes.size());
    return true;
  };
  std::vector<std::uint8_t> bytes;
  if (!RenderWithSpellingFallback(key, source, bytes)) return false;
  samples.resize(bytes.size() / sizeof(std::int16_t));
  if (!samples.empty())
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(std::int16_t));
  return !samples.empty();
}

void WordRenderer::Prepare(std::string_view word, std::vector<std::int16_t>& scratch) const {
  const std::string key = LowerKey(word);
  if (key.empty() || units_.Prepare(key, scratch)) return;
  Render(word, scratch);
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

bool WordRenderer::CanSpeak(std::string_view lower_case_word) const {
  const std::string key = LowerKey(lower_case_word);
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
