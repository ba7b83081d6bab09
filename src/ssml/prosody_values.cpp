// SPDX-License-Identifier: MIT
#include "ssml/prosody_values.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <span>
#include <string>

#include "ssml/speech_markup.h"

namespace vntts {
namespace {

struct Named {
  std::string_view name;
  double value;
};

constexpr Named kRates[] = {{"x-slow", 0.5}, {"slow", 0.75},  {"medium", 1.0},
                            {"fast", 1.5},   {"x-fast", 2.0}, {"default", 1.0}};
constexpr Named kPitches[] = {{"x-low", 0.7}, {"low", 0.85},   {"medium", 1.0},
                              {"high", 1.2},  {"x-high", 1.4}, {"default", 1.0}};
// Decibels; "silent" is handled apart.
constexpr Named kVolumes[] = {{"x-soft", -12}, {"soft", -6},  {"medium", -3},
                              {"loud", 0},     {"x-loud", 3}, {"default", 0}};
constexpr Named kStrengths[] = {{"none", 0},     {"x-weak", 100}, {"weak", 250},
                                {"medium", 400}, {"strong", 700}, {"x-strong", 1200}};
constexpr double kReferencePitchHz = 120.0;

std::string_view Trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t' || s.front() == '\n'))
    s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\n'))
    s.remove_suffix(1);
  return s;
}

std::optional<double> Lookup(std::span<const Named> table, std::string_view value) {
  for (const auto& n : table)
    if (n.name == value) return n.value;
  return std::nullopt;
}

// A decimal number with an optional sign followed by exactly `unit`; a sign makes it relative.
struct Quantity {
  double number = 0;
  bool relative = false;
};

std::optional<Quantity> ReadQuantity(std::string_view value, std::string_view unit) {
  if (value.size() <= unit.size() || !value.ends_with(unit)) return std::nullopt;
  value.remove_suffix(unit.size());
  Quantity q;
  q.relative = value.front() == '+' || value.front() == '-';
  const bool negative = value.front() == '-';
  if (q.relative) value.remove_prefix(1);
  if (value.empty() || value.front() == '+' || value.front() == '-') return std::nullopt;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), q.number);
  if (error != std::errc{} || end != value.data() + value.size() || !std::isfinite(q.number))
    return std::nullopt;
  if (negative) q.number = -q.number;
  return q;
}

std::optional<double> Positive(double factor) {
  if (!(factor > 0) || !std::isfinite(factor)) return std::nullopt;
  return factor;
}

} // namespace

std::optional<double> ReadRate(std::string_view value) {
  value = Trim(value);
  if (auto named = Lookup(kRates, value)) return named;
  if (auto pct = ReadQuantity(value, "%"))
    return Positive(pct->relative ? 1.0 + pct->number / 100 : pct->number / 100);
  if (auto bare = ReadQuantity(value, ""); bare && !bare->relative) return Positive(bare->number);
  return std::nullopt;
}

std::optional<double> ReadPitch(std::string_view value) {
  value = Trim(value);
  if (auto named = Lookup(kPitches, value)) return named;
  if (auto pct = ReadQuantity(value, "%"))
    return Positive(pct->relative ? 1.0 + pct->number / 100 : pct->number / 100);
  if (auto st = ReadQuantity(value, "st"); st && st->relative)
    return Positive(std::pow(2.0, st->number / 12));
  if (auto hz = ReadQuantity(value, "Hz"))
    return Positive(hz->relative ? 1.0 + hz->number / kReferencePitchHz
                                 : hz->number / kReferencePitchHz);
  return std::nullopt;
}

std::optional<double> ReadVolume(std::string_view value) {
  value = Trim(value);
  if (value == "silent") return 0.0;
  if (auto db = Lookup(kVolumes, value)) return std::pow(10.0, *db / 20);
  if (auto db = ReadQuantity(value, "dB"); db && db->relative)
    return std::pow(10.0, std::min(db->number, 40.0) / 20);
  if (auto n = ReadQuantity(value, "")) {
    const double level = n->relative ? 100 + n->number : n->number;
    return std::clamp(level, 0.0, 100.0) / 100;
  }
  return std::nullopt;
}

std::optional<std::uint32_t> ReadBreakTime(std::string_view value) {
  value = Trim(value);
  std::optional<double> ms;
  if (auto q = ReadQuantity(value, "ms"))
    ms = q->number;
  else if (auto s = ReadQuantity(value, "s"))
    ms = s->number * 1000;
  if (!ms || *ms < 0) return std::nullopt;
  return static_cast<std::uint32_t>(std::lround(std::min(*ms, double{kMaxBreakMs})));
}

std::optional<std::uint32_t> ReadBreakStrength(std::string_view value) {
  if (auto ms = Lookup(kStrengths, Trim(value))) return static_cast<std::uint32_t>(*ms);
  return std::nullopt;
}

} // namespace vntts
