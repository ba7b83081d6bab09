// SPDX-License-Identifier: MIT
#include "orthography.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace voicegen {
namespace {

// Written rhymes without tone. Rhymes that open with the medial o/u (oa, uy, ...) come after
// the plain ones; the onsets decide which of them they take.
constexpr std::u32string_view kRhymes[] = {
    U"a",
    U"ai",
    U"ao",
    U"au",
    U"ay",
    U"am",
    U"an",
    U"ang",
    U"anh",
    U"ap",
    U"at",
    U"ac",
    U"ach",
    U"ăm",
    U"ăn",
    U"ăng",
    U"ăp",
    U"ăt",
    U"ăc",
    U"âm",
    U"ân",
    U"âng",
    U"âp",
    U"ât",
    U"âc",
    U"âu",
    U"ây",
    U"e",
    U"em",
    U"en",
    U"eng",
    U"eo",
    U"ep",
    U"et",
    U"ec",
    U"ê",
    U"êm",
    U"ên",
    U"ênh",
    U"êp",
    U"êt",
    U"êch",
    U"êu",
    U"i",
    U"ia",
    U"im",
    U"in",
    U"inh",
    U"ip",
    U"it",
    U"ich",
    U"iu",
    U"iêm",
    U"iên",
    U"iêng",
    U"iêp",
    U"iêt",
    U"iêc",
    U"iêu",
    U"o",
    U"oi",
    U"om",
    U"on",
    U"ong",
    U"op",
    U"ot",
    U"oc",
    U"oong",
    U"ooc",
    U"ô",
    U"ôi",
    U"ôm",
    U"ôn",
    U"ông",
    U"ôp",
    U"ôt",
    U"ôc",
    U"ơ",
    U"ơi",
    U"ơm",
    U"ơn",
    U"ơp",
    U"ơt",
    U"u",
    U"ua",
    U"ui",
    U"um",
    U"un",
    U"ung",
    U"up",
    U"ut",
    U"uc",
    U"uôi",
    U"uôm",
    U"uôn",
    U"uông",
    U"uôt",
    U"uôc",
    U"ư",
    U"ưa",
    U"ưi",
    U"ưu",
    U"ưm",
    U"ưn",
    U"ưng",
    U"ưt",
    U"ưc",
    U"ươi",
    U"ươu",
    U"ươm",
    U"ươn",
    U"ương",
    U"ươp",
    U"ươt",
    U"ươc",
    U"y",
    // with the medial o/u
    U"oa",
    U"oai",
    U"oay",
    U"oam",
    U"oan",
    U"oang",
    U"oanh",
    U"oap",
    U"oat",
    U"oac",
    U"oach",
    U"oăm",
    U"oăn",
    U"oăng",
    U"oăt",
    U"oăc",
    U"oe",
    U"oen",
    U"oet",
    U"oeo",
    U"uân",
    U"uâng",
    U"uât",
    U"uây",
    U"uê",
    U"uên",
    U"uênh",
    U"uêch",
    U"uy",
    U"uya",
    U"uyn",
    U"uynh",
    U"uyt",
    U"uych",
    U"uyu",
    U"uyên",
    U"uyêt",
    U"uơ",
};

constexpr std::u32string_view kOnsets[] = {
    U"",   U"b",  U"c", U"ch", U"d",  U"đ", U"g", U"gi", U"h",  U"kh", U"l", U"m", U"n",
    U"ng", U"nh", U"p", U"ph", U"qu", U"r", U"s", U"t",  U"th", U"tr", U"v", U"x",
};

bool HasMedial(std::u32string_view r) {
  if (r.size() < 2) return false;
  if (r[0] == U'o') return r[1] == U'a' || r[1] == U'ă' || r[1] == U'e';
  if (r[0] == U'u') return r[1] == U'y' || r[1] == U'ê' || r[1] == U'â' || r[1] == U'ơ';
  return false;
}

bool FrontVowelFirst(std::u32string_view r) {
  return !r.empty() && (r[0] == U'e' || r[0] == U'ê' || r[0] == U'i' || r[0] == U'y');
}

bool StopFinal(std::u32string_view r) {
  return r.ends_with(U"p") || r.ends_with(U"t") || r.ends_with(U"c") || r.ends_with(U"ch");
}

bool IsLabial(std::u32string_view onset) {
  return onset == U"b" || onset == U"m" || onset == U"p" || onset == U"ph" || onset == U"v";
}

// The written toneless syllable, or empty when the spelling rules have no way to write it.
std::u32string Spell(std::u32string_view onset, std::u32string_view rhyme, std::size_t& start) {
  std::u32string on(onset);
  std::u32string rh(rhyme);
  const bool medial = HasMedial(rhyme);
  if (onset == U"qu") {
    if (!medial && rhyme != U"i" && rhyme != U"ôc") return {};
    if (medial) rh.erase(0, 1);
  } else if (onset == U"c") {
    if (medial) return {};
    if (FrontVowelFirst(rhyme)) on = U"k";
  } else if (onset == U"g") {
    if (FrontVowelFirst(rhyme) && rhyme != U"y") on = U"gh";
  } else if (onset == U"ng") {
    if (FrontVowelFirst(rhyme) && rhyme != U"y") on = U"ngh";
  } else if (onset == U"gi") {
    if (medial || rhyme == U"y") return {};
    if (rhyme[0] == U'i') // gi + in is written gin
      on = U"g";
  } else if (onset.empty()) {
    if (rhyme.starts_with(U"iê")) rh[0] = U'y';
  } else if (IsLabial(onset) && medial) {
    return {};
  }
  start = on == U"g" && onset == U"gi" ? 1 : on.size();
  return on + rh;
}

} // namespace

std::size_t RhymeStart(const std::u32string& s) {
  std::size_t i = 0;
  while (i < s.size() && !IsVowel(s[i]))
    ++i;
  if (i >= s.size()) return s.size();
  // "qu" and "gi" before another vowel belong to the onset.
  if (i > 0 && s[i - 1] == U'q' && ToneBase(s[i]) == U'u' && i + 1 < s.size()) return i + 1;
  if (i > 0 && s[i - 1] == U'g' && ToneBase(s[i]) == U'i' && i + 1 < s.size() && IsVowel(s[i + 1]))
    return i + 1;
  return i;
}

std::u32string PlaceTone(const std::u32string& syllable, std::size_t rhyme_start, Tone tone,
                         bool old_style) {
  std::u32string s = syllable;
  std::size_t first = rhyme_start;
  while (first < s.size() && !IsVowel(s[first]))
    ++first;
  if (first >= s.size() || tone == kNgang) return s;
  std::size_t last = first;
  while (last + 1 < s.size() && IsVowel(s[last + 1]))
    ++last;
  const std::size_t count = last - first + 1;
  const bool closed = last + 1 < s.size();
  std::size_t at = first;
  bool marked = false;
  for (std::size_t i = first; i <= last; ++i)
    if (HasQualityMark(ToneBase(s[i]))) {
      at = i;
      marked = true;
    }
  if (!marked) {
    if (closed) {
      at = last;
    } else if (count == 2) {
      const std::u32string pair{ToneBase(s[first]), ToneBase(s[last])};
      const bool modern_pair = pair == U"oa" || pair == U"oe" || pair == U"uy";
      at = modern_pair && !old_style ? last : first;
    } else if (count >= 3) {
      at = first + 1;
    }
  }
  s[at] = WithTone(ToneBase(s[at]), tone);
  return s;
}

std::vector<std::string> OrthographicSyllables() {
  std::set<std::string> out;
  for (auto onset : kOnsets) {
    for (auto rhyme : kRhymes) {
      std::size_t start = 0;
      const std::u32string plain = Spell(onset, rhyme, start);
      if (plain.empty()) continue;
      for (int t = 0; t < 6; ++t) {
        const auto tone = static_cast<Tone>(t);
        if (StopFinal(rhyme) && tone != kSac && tone != kNang) continue;
        out.insert(ToUtf8(PlaceTone(plain, start, tone, false)));
        out.insert(ToUtf8(PlaceTone(plain, start, tone, true)));
      }
    }
  }
  return {out.begin(), out.end()};
}

std::vector<std::string> TonePlacementVariants(const std::string& syllable) {
  const std::u32string s = ToLower(FromUtf8(syllable));
  Tone tone = kNgang;
  std::u32string plain;
  for (char32_t c : s) {
    const char32_t base = ToneBase(c);
    if (base != c)
      for (int t = 1; t < 6; ++t)
        if (WithTone(base, static_cast<Tone>(t)) == c) tone = static_cast<Tone>(t);
    plain.push_back(base);
  }
  const std::size_t start = RhymeStart(plain);
  std::set<std::string> both = {ToUtf8(s), ToUtf8(PlaceTone(plain, start, tone, false)),
                                ToUtf8(PlaceTone(plain, start, tone, true))};
  return {both.begin(), both.end()};
}

} // namespace voicegen
