// SPDX-License-Identifier: MIT
#include "engine/spelling_variants.h"

#include "dsp/crossfade.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <optional>
#include <tuple>

namespace vntts {
namespace {

// A Vietnamese letter as the internal encoding writes it: a base byte, then for most vowels one
// mark byte that carries the hat or breve together with the tone. i, ỵ, ơ, ư and đ have bytes
// of their own.
enum class Mark : std::uint8_t { kNone, kCircumflex, kBreve, kHorn, kStroke };
enum class Tone : std::uint8_t { kLevel, kAcute, kGrave, kHook, kTilde, kDot };

struct Letter {
  char base = 0; // lower-case ASCII
  Mark mark = Mark::kNone;
  Tone tone = Tone::kLevel;
  bool upper = false;
  std::size_t byte_begin = 0; // where the letter stands in the source text
  std::size_t byte_end = 0;
};

constexpr std::size_t kToneCount = 6;
// Mark bytes (lower case) after a, e, o, u, y, ơ, ư; index = tone; Level has none.
constexpr std::array<std::uint8_t, kToneCount> kToneMark = {0x00, 0xF9, 0xF8, 0xFB, 0xF5, 0xEF};
constexpr std::array<std::uint8_t, kToneCount> kCircumflexMark = {0xE2, 0xE1, 0xE0,
                                                                  0xE5, 0xE3, 0xE4};
constexpr std::array<std::uint8_t, kToneCount> kBreveMark = {0xEA, 0xE9, 0xE8, 0xFA, 0xFC, 0xEB};
constexpr std::array<std::uint8_t, kToneCount> kIWithTone = {0x69, 0xED, 0xEC, 0xE6, 0xF3, 0xF2};
constexpr std::uint8_t kYDot = 0xEE;
constexpr std::uint8_t kOHorn = 0xF4;
constexpr std::uint8_t kUHorn = 0xF6;
constexpr std::uint8_t kDStroke = 0xF1;
constexpr std::uint8_t kCaseOffset = 0x20;
// The longest syllable has seven letters: nghiêng.
constexpr std::size_t kMostSyllableLetters = 7;

constexpr bool IsUpperByte(std::uint8_t b) {
  return (b >= 'A' && b <= 'Z') || (b >= 0xC0 && b <= 0xDE && b != 0xD7);
}
constexpr std::uint8_t LowerByte(std::uint8_t b) {
  return IsUpperByte(b) ? static_cast<std::uint8_t>(b + kCaseOffset) : b;
}
constexpr std::uint8_t UpperByte(std::uint8_t b) {
  const bool lower = (b >= 'a' && b <= 'z') || (b >= 0xE0 && b <= 0xFE && b != 0xF7);
  return lower ? static_cast<std::uint8_t>(b - kCaseOffset) : b;
}

std::optional<Tone> FindTone(const std::array<std::uint8_t, kToneCount>& row, std::uint8_t b,
                             bool allow_level) {
  for (std::size_t t = allow_level ? 0 : 1; t < kToneCount; ++t)
    if (row[t] == b) return static_cast<Tone>(t);
  return std::nullopt;
}

constexpr bool IsPlainVowelBase(char c) {
  return c == 'a' || c == 'e' || c == 'o' || c == 'u' || c == 'y';
}

// Reads one letter at pos; nullopt when the bytes there are not a Vietnamese letter.
std::optional<Letter> DecodeLetter(std::string_view text, std::size_t pos) {
  const auto raw = static_cast<std::uint8_t>(text[pos]);
  const std::uint8_t b = LowerByte(raw);
  Letter letter;
  letter.upper = IsUpperByte(raw);
  letter.byte_begin = pos;
  std::size_t next = pos + 1;
  const auto peek = [&]() -> std::optional<std::uint8_t> {
    if (next >= text.size()) return std::nullopt;
    return LowerByte(static_cast<std::uint8_t>(text[next]));
  };
  const auto take_tone_mark = [&]() {
    if (auto m = peek())
      if (auto tone = FindTone(kToneMark, *m, false)) {
        letter.tone = *tone;
        ++next;
      }
  };

  if (b >= 'a' && b <= 'z') {
    letter.base = static_cast<char>(b);
    if (auto m = peek()) {
      if (letter.base != 'u' && letter.base != 'y' && letter.base != 'i' &&
          IsPlainVowelBase(letter.base)) {
        if (auto tone = FindTone(kCircumflexMark, *m, true)) {
          letter.mark = Mark::kCircumflex;
          letter.tone = *tone;
          ++next;
        } else if (letter.base == 'a') {
          if (auto breve = FindTone(kBreveMark, *m, true)) {
            letter.mark = Mark::kBreve;
            letter.tone = *breve;
            ++next;
          }
        }
      }
      // A plain vowel (and, leniently, an i) takes a following tone mark.
      if (letter.mark == Mark::kNone && (IsPlainVowelBase(letter.base) || letter.base == 'i'))
        take_tone_mark();
    }
  } else if (b == kOHorn || b == kUHorn) {
    letter.base = b == kOHorn ? 'o' : 'u';
    letter.mark = Mark::kHorn;
    take_tone_mark();
  } else if (b == kDStroke) {
    letter.base = 'd';
    letter.mark = Mark::kStroke;
  } else if (b == kYDot) {
    letter.base = 'y';
    letter.tone = Tone::kDot;
  } else if (auto tone = FindTone(kIWithTone, b, false)) {
    letter.base = 'i';
    letter.tone = *tone;
  } else {
    return std::nullopt;
  }
  letter.byte_end = next;
  return letter;
}

std::optional<std::vector<Letter>> DecodeLetters(std::string_view text) {
  std::vector<Letter> letters;
  std::size_t pos = 0;
  while (pos < text.size()) {
    auto letter = DecodeLetter(text, pos);
    if (!letter) return std::nullopt;
    pos = letter->byte_end;
    letters.push_back(*letter);
  }
  return letters;
}

void AppendEncoded(std::string& out, const Letter& letter) {
  const auto tone = static_cast<std::size_t>(letter.tone);
  std::array<std::uint8_t, 2> bytes{};
  std::size_t count = 1;
  if (letter.base == 'd' && letter.mark == Mark::kStroke) {
    bytes[0] = kDStroke;
  } else if (letter.mark == Mark::kHorn) {
    bytes[0] = letter.base == 'o' ? kOHorn : kUHorn;
    if (letter.tone != Tone::kLevel) bytes[count++] = kToneMark[tone];
  } else if (letter.base == 'i') {
    bytes[0] = kIWithTone[tone];
  } else if (letter.base == 'y' && letter.tone == Tone::kDot) {
    bytes[0] = kYDot;
  } else if (letter.mark == Mark::kCircumflex) {
    bytes[0] = static_cast<std::uint8_t>(letter.base);
    bytes[count++] = kCircumflexMark[tone];
  } else if (letter.mark == Mark::kBreve) {
    bytes[0] = static_cast<std::uint8_t>(letter.base);
    bytes[count++] = kBreveMark[tone];
  } else {
    bytes[0] = static_cast<std::uint8_t>(letter.base);
    if (letter.tone != Tone::kLevel) bytes[count++] = kToneMark[tone];
  }
  for (std::size_t i = 0; i < count; ++i)
    out.push_back(static_cast<char>(letter.upper ? UpperByte(bytes[i]) : bytes[i]));
}

std::string Encode(const std::vector<Letter>& letters) {
  std::string out;
  for (const auto& letter : letters)
    AppendEncoded(out, letter);
  return out;
}

constexpr bool IsVowel(const Letter& l) {
  return l.base == 'a' || l.base == 'e' || l.base == 'i' || l.base == 'o' || l.base == 'u' ||
         l.base == 'y';
}

// Spelling key of a run of letters without tones: plain ASCII, đ as "dd", and a suffix for the
// hat (^), the breve (() and the horn (+), so that "ương" reads "u+o+ng".
std::string SpellingKey(const std::vector<Letter>& letters, std::size_t begin, std::size_t end) {
  std::string key;
  for (std::size_t i = begin; i < end; ++i) {
    key.push_back(letters[i].base);
    switch (letters[i].mark) {
    case Mark::kCircumflex:
      key.push_back('^');
      break;
    case Mark::kBreve:
      key.push_back('(');
      break;
    case Mark::kHorn:
      key.push_back('+');
      break;
    case Mark::kStroke:
      key.push_back('d');
      break;
    case Mark::kNone:
      break;
    }
  }
  return key;
}

constexpr std::string_view kOnsets[] = {"",   "b",  "c", "ch", "d",  "dd", "g",   "gh", "gi", "h",
                                        "k",  "kh", "l", "m",  "n",  "ng", "ngh", "nh", "p",  "ph",
                                        "qu", "r",  "s", "t",  "th", "tr", "v",   "x"};

// Every rhyme of the written language, without its tone, in the notation of SpellingKey.
constexpr std::string_view kRhymes[] = {
    // a, ă, â
    "a", "ac", "ach", "ai", "am", "an", "ang", "anh", "ao", "ap", "at", "au", "ay", "a(c", "a(m",
    "a(n", "a(ng", "a(p", "a(t", "a^c", "a^m", "a^n", "a^ng", "a^p", "a^t", "a^u", "a^y",
    // e, ê
    "e", "ec", "em", "en", "eng", "eo", "ep", "et", "e^", "e^ch", "e^m", "e^n", "e^nh", "e^p",
    "e^t", "e^u",
    // i
    "i", "ia", "ich", "im", "in", "inh", "ip", "it", "iu", "ie^c", "ie^m", "ie^n", "ie^ng", "ie^p",
    "ie^t", "ie^u",
    // o, ô, ơ
    "o", "oa", "oac", "oach", "oai", "oam", "oan", "oang", "oanh", "oao", "oap", "oat", "oay",
    "oa(c", "oa(m", "oa(n", "oa(ng", "oa(t", "oc", "oe", "oen", "oeo", "oet", "oi", "om", "on",
    "ong", "ooc", "oong", "op", "ot", "o^", "o^c", "o^i", "o^m", "o^n", "o^ng", "o^p", "o^t", "o+",
    "o+i", "o+m", "o+n", "o+p", "o+t",
    // u
    "u", "ua", "ua^n", "ua^ng", "ua^t", "ua^y", "uc", "ue^", "ue^ch", "ue^nh", "ui", "um", "un",
    "ung", "uo+", "uo^c", "uo^i", "uo^m", "uo^n", "uo^ng", "uo^t", "up", "ut", "uy", "uya", "uych",
    "uyn", "uye^n", "uye^t", "uynh", "uyt", "uyu",
    // ư
    "u+", "u+a", "u+c", "u+i", "u+m", "u+n", "u+ng", "u+t", "u+u", "u+o+c", "u+o+i", "u+o+m",
    "u+o+n", "u+o+ng", "u+o+p", "u+o+t", "u+o+u",
    // y
    "y", "ye^m", "ye^n", "ye^ng", "ye^t", "ye^u", "ynh", "ych", "yt", "yu",
    // giêng: after gi the i of iê belongs to the onset
    "e^ng"};

bool Contains(std::string_view key, auto const& table) {
  return std::find(std::begin(table), std::end(table), key) != std::end(table);
}

bool IsOnset(std::string_view key) {
  return Contains(key, kOnsets);
}

// Where onset, vowel group and coda meet, in letter indices.
struct SyllableShape {
  std::size_t onset_end = 0;
  std::size_t vowel_end = 0;
};

std::optional<SyllableShape> Shape(const std::vector<Letter>& letters) {
  SyllableShape shape;
  const std::size_t n = letters.size();
  while (shape.onset_end < n && !IsVowel(letters[shape.onset_end]))
    ++shape.onset_end;
  if (shape.onset_end == n) return std::nullopt; // no vowel at all
  const std::string onset = SpellingKey(letters, 0, shape.onset_end);
  const std::size_t first = shape.onset_end;
  const bool vowel_follows = first + 1 < n && IsVowel(letters[first + 1]);
  // The u of qu and the i of gi belong to the onset when another vowel follows them.
  if (vowel_follows && onset == "q" && letters[first].base == 'u' &&
      letters[first].mark == Mark::kNone)
    ++shape.onset_end;
  else if (vowel_follows && onset == "g" && letters[first].base == 'i')
    ++shape.onset_end;
  shape.vowel_end = shape.onset_end;
  while (shape.vowel_end < n && IsVowel(letters[shape.vowel_end]))
    ++shape.vowel_end;
  for (std::size_t i = shape.vowel_end; i < n; ++i)
    if (IsVowel(letters[i])) return std::nullopt; // a second vowel group: not one syllable
  return shape;
}

// The one tone of the syllable and the letter that carries it; nullopt for two tone marks.
struct ToneSpot {
  Tone tone = Tone::kLevel;
  std::optional<std::size_t> index;
};

std::optional<ToneSpot> FindToneSpot(const std::vector<Letter>& letters) {
  ToneSpot spot;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    if (letters[i].tone == Tone::kLevel) continue;
    if (spot.index) return std::nullopt;
    spot = {letters[i].tone, i};
  }
  return spot;
}

enum class Habit { kNew, kOld };

// The vowel that carries the tone under one habit. Both habits agree except for an open
// two-vowel group oa, oe or uy: the newer habit marks the second vowel (hoà, thuỷ), the older
// the first (hòa, thủy).
std::size_t ToneVowel(const std::vector<Letter>& letters, const SyllableShape& shape, Habit habit) {
  const std::size_t begin = shape.onset_end;
  const std::size_t end = shape.vowel_end;
  std::optional<std::size_t> last_marked;
  for (std::size_t i = begin; i < end; ++i)
    if (letters[i].mark != Mark::kNone) last_marked = i;
  if (last_marked) return *last_marked;
  const bool open = end == letters.size();
  const std::size_t count = end - begin;
  if (!open) return end - 1;
  if (count >= 3) return begin + 1;
  if (count == 2) {
    const std::string group = SpellingKey(letters, begin, end);
    const bool movable = group == "oa" || group == "oe" || group == "uy";
    return movable && habit == Habit::kNew ? begin + 1 : begin;
  }
  return begin;
}

std::vector<Letter> WithToneOn(std::vector<Letter> letters, Tone tone, std::size_t index) {
  for (auto& letter : letters)
    letter.tone = Tone::kLevel;
  letters[index].tone = tone;
  return letters;
}

std::string TonePlacementVariant(const std::vector<Letter>& letters, const SyllableShape& shape) {
  const auto spot = FindToneSpot(letters);
  if (!spot || !spot->index || shape.vowel_end == shape.onset_end) return {};
  for (Habit habit : {Habit::kNew, Habit::kOld}) {
    const std::size_t target = ToneVowel(letters, shape, habit);
    if (target != *spot->index) return Encode(WithToneOn(letters, spot->tone, target));
  }
  return {};
}

std::string IYSwapVariant(const std::vector<Letter>& letters, const SyllableShape& shape) {
  if (shape.vowel_end != letters.size() || shape.vowel_end - shape.onset_end != 1) return {};
  const Letter& vowel = letters[shape.onset_end];
  if ((vowel.base != 'i' && vowel.base != 'y') || vowel.mark != Mark::kNone) return {};
  const std::string onset = SpellingKey(letters, 0, shape.onset_end);
  if (onset == "g" || onset == "gh" || onset == "ngh" || onset == "gi")
    return {}; // gì, ghi, nghĩ have no y spelling
  auto swapped = letters;
  swapped[shape.onset_end].base = vowel.base == 'i' ? 'y' : 'i';
  // A tone typed on the u of qu belongs on the vowel (qúy -> quí).
  if (const auto spot = FindToneSpot(letters); spot && spot->index)
    swapped = WithToneOn(std::move(swapped), spot->tone, shape.onset_end);
  return Encode(swapped);
}

constexpr bool IsFrontVowel(const Letter& l) {
  return l.base == 'i' || l.base == 'e' || l.base == 'y';
}

bool IsStopCoda(std::string_view coda) {
  return coda == "c" || coda == "ch" || coda == "p" || coda == "t";
}

bool IsValidShape(const std::vector<Letter>& letters, const SyllableShape& shape) {
  std::string onset = SpellingKey(letters, 0, shape.onset_end);
  std::string rhyme = SpellingKey(letters, shape.onset_end, letters.size());
  // gì, gìn: the i is both the end of the onset and the vowel.
  if (onset == "g" && !rhyme.empty() && rhyme.front() == 'i') onset = "gi";
  if (!IsOnset(onset)) return false;
  const bool rhyme_known =
      Contains(rhyme, kRhymes) || (onset == "gi" && Contains("i" + rhyme, kRhymes));
  if (!rhyme_known) return false;
  // Rhymes that lost their glide to the onset exist only after it: giêng, quýt, quỵu.
  if ((rhyme == "e^ng" && onset != "gi") || ((rhyme == "yu" || rhyme == "yt") && onset != "qu"))
    return false;
  // iê is written yê with no onset or after qu (yên, quyết), and iê after any other onset.
  const bool y_glide = rhyme.size() > 1 && rhyme.front() == 'y' && rhyme != "ych" &&
                       rhyme != "ynh" && rhyme != "yt" && rhyme != "yu";
  if (y_glide && !onset.empty() && onset != "qu") return false;
  if (rhyme.starts_with("ie^") && onset.empty()) return false;
  if ((rhyme == "ych" || rhyme == "ynh") && onset != "qu") return false;
  if (onset == "qu" && letters[shape.onset_end].base == 'u') return false; // quu
  const bool front = IsFrontVowel(letters[shape.onset_end]);
  if ((onset == "k" || onset == "gh" || onset == "ngh") && !front) return false;
  if ((onset == "c" || onset == "ng") && front) return false;
  if (onset == "g" && front) return false;
  const auto spot = FindToneSpot(letters);
  if (!spot) return false;
  const std::string coda = SpellingKey(letters, shape.vowel_end, letters.size());
  // A syllable closed by a stop takes only the rising or the heavy tone.
  return !IsStopCoda(coda) || spot->tone == Tone::kAcute || spot->tone == Tone::kDot;
}

bool IsValidLetters(const std::vector<Letter>& letters) {
  const auto shape = Shape(letters);
  return shape && IsValidShape(letters, *shape);
}

bool ArchiveKnows(const std::string& part, const HasUnitKey& has_key) {
  if (!has_key) return false;
  if (has_key(part)) return true;
  for (const auto& variant : SpellingVariantList(part))
    if (has_key(variant)) return true;
  return false;
}

} // namespace

SpellingVariants MakeSpellingVariants(std::string_view syllable) {
  SpellingVariants variants;
  const auto letters = DecodeLetters(syllable);
  if (!letters || letters->empty()) return variants;
  const auto shape = Shape(*letters);
  if (!shape) return variants;
  variants.tone_placement = TonePlacementVariant(*letters, *shape);
  variants.iy_swap = IYSwapVariant(*letters, *shape);
  return variants;
}

std::vector<std::string> SpellingVariantList(std::string_view syllable) {
  const auto variants = MakeSpellingVariants(syllable);
  std::vector<std::string> list;
  for (const auto* v : {&variants.tone_placement, &variants.iy_swap})
    if (!v->empty() && *v != syllable && std::find(list.begin(), list.end(), *v) == list.end())
      list.push_back(*v);
  return list;
}

std::string SwapIAndY(std::string_view word) {
  std::string out;
  out.reserve(word.size() + 4);
  for (std::size_t pos = 0; pos < word.size(); ++pos) {
    const auto raw = static_cast<std::uint8_t>(word[pos]);
    const bool upper = IsUpperByte(raw);
    const std::uint8_t b = LowerByte(raw);
    const auto put = [&](std::uint8_t lower) {
      out.push_back(static_cast<char>(upper ? UpperByte(lower) : lower));
    };
    if (auto tone = FindTone(kIWithTone, b, true)) {
      // i (with any tone) becomes y with the same tone
      Letter y{'y', Mark::kNone, *tone, false, 0, 0};
      std::string bytes;
      AppendEncoded(bytes, y);
      for (char c : bytes)
        put(static_cast<std::uint8_t>(c));
      continue;
    }
    if (b == kYDot) {
      put(kIWithTone[static_cast<std::size_t>(Tone::kDot)]);
      continue;
    }
    if (b == 'y') {
      Tone tone = Tone::kLevel;
      if (pos + 1 < word.size())
        if (auto t =
                FindTone(kToneMark, LowerByte(static_cast<std::uint8_t>(word[pos + 1])), false)) {
          tone = *t;
          ++pos;
        }
      put(kIWithTone[static_cast<std::size_t>(tone)]);
      continue;
    }
    out.push_back(static_cast<char>(raw));
  }
  return out;
}

bool IsVietnameseSyllable(std::string_view syllable) {
  const auto letters = DecodeLetters(syllable);
  return letters && !letters->empty() && IsValidLetters(*letters);
}

std::vector<std::string> SplitIntoSyllables(std::string_view word, const HasUnitKey& has_key) {
  const auto letters = DecodeLetters(word);
  if (!letters || letters->empty()) return {};
  if (IsValidLetters(*letters)) return {std::string(word)};
  // No two syllables are longer than this: a longer word is not tried cut by cut (each try
  // copies both halves, so a long word would cost the square of its length).
  if (letters->size() > 2 * kMostSyllableLetters) return {};

  using Score = std::tuple<int, bool, std::size_t>;
  std::optional<Score> best;
  std::size_t best_cut = 0;
  for (std::size_t cut = 1; cut < letters->size(); ++cut) {
    const std::vector<Letter> left(letters->begin(), letters->begin() + cut);
    const std::vector<Letter> right(letters->begin() + cut, letters->end());
    if (!IsValidLetters(left) || !IsValidLetters(right)) continue;
    const std::size_t byte_cut = (*letters)[cut].byte_begin;
    const std::string left_text(word.substr(0, byte_cut));
    const std::string right_text(word.substr(byte_cut));
    const int known =
        int{ArchiveKnows(left_text, has_key)} + int{ArchiveKnows(right_text, has_key)};
    const Score score{known, !IsVowel(right.front()), cut};
    if (!best || score > *best) {
      best = score;
      best_cut = byte_cut;
    }
  }
  if (!best) return {};
  return {std::string(word.substr(0, best_cut)), std::string(word.substr(best_cut))};
}

namespace {

bool FetchIfPresent(const std::string& key, const UnitSource& source,
                    std::vector<std::uint8_t>& bytes) {
  bytes.clear();
  if (key.empty() || (source.has_key && !source.has_key(key))) return false;
  if (source.fetch(key, bytes)) return true;
  bytes.clear();
  return false;
}

bool FetchWithVariants(const std::string& key, const UnitSource& source,
                       std::vector<std::uint8_t>& bytes) {
  if (FetchIfPresent(key, source, bytes)) return true;
  for (const auto& variant : SpellingVariantList(key))
    if (FetchIfPresent(variant, source, bytes)) return true;
  return false;
}

bool FetchPart(const std::string& part, const UnitSource& source,
               std::vector<std::uint8_t>& bytes) {
  if (FetchWithVariants(part, source, bytes)) return true;
  const std::string swapped = SwapIAndY(part);
  return swapped != part && FetchWithVariants(swapped, source, bytes);
}

} // namespace

bool RenderWithSpellingFallback(std::string_view word, const UnitSource& source,
                                std::vector<std::uint8_t>& bytes) {
  bytes.clear();
  if (word.empty() || !source.fetch) return false;
  const std::string whole(word);
  if (FetchWithVariants(whole, source, bytes)) return true;
  const auto parts = SplitIntoSyllables(whole, source.has_key);
  if (parts.size() == 1) {
    const std::string swapped = SwapIAndY(whole);
    return swapped != whole && FetchWithVariants(swapped, source, bytes);
  }
  if (parts.size() != 2) return false;
  std::vector<std::uint8_t> first;
  std::vector<std::uint8_t> second;
  if (!FetchPart(parts[0], source, first) || !FetchPart(parts[1], source, second)) return false;
  bytes.resize(first.size() + second.size());
  bytes.resize(CrossfadeJoinBytes(first, second, bytes));
  return !bytes.empty();
}

} // namespace vntts
