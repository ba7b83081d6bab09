// SPDX-License-Identifier: MIT
#include "text/charset/text_folding.h"

#include <algorithm>
#include <array>

#include "text/charset/unicode_letters.h"

namespace vntts {

namespace {

struct Fold {
  char16_t from;
  std::u16string_view to;
};

// Sorted by code point.
constexpr Fold kFolds[] = {
    {0x00A1, u"!"},       {0x00AB, u"\""}, {0x00AD, u""},    {0x00B7, u" "},
    {0x00B9, u"1"},       {0x00BB, u"\""}, {0x00BC, u"1/4"}, {0x00BD, u"1/2"},
    {0x00BE, u"3/4"},     {0x00BF, u"?"},  {0x00C4, u"A"},   {0x00C5, u"A"},
    {0x00C6, u"AE"},      {0x00C7, u"C"},  {0x00CB, u"E"},   {0x00CE, u"I"},
    {0x00CF, u"I"},       {0x00D0, u"D"},  {0x00D1, u"N"},   {0x00D6, u"O"},
    {0x00D7, u"x"},       {0x00D8, u"O"},  {0x00DB, u"U"},   {0x00DC, u"U"},
    {0x00DE, u"TH"},      {0x00DF, u"ss"}, {0x00E4, u"a"},   {0x00E5, u"a"},
    {0x00E6, u"ae"},      {0x00E7, u"c"},  {0x00EB, u"e"},   {0x00EE, u"i"},
    {0x00EF, u"i"},       {0x00F0, u"d"},  {0x00F1, u"n"},   {0x00F6, u"o"},
    {0x00F7, u"/"},       {0x00F8, u"o"},  {0x00FB, u"u"},   {0x00FC, u"u"},
    {0x00FE, u"th"},      {0x00FF, u"y"},  {0x2000, u" "},   {0x2001, u" "},
    {0x2002, u" "},       {0x2003, u" "},  {0x2004, u" "},   {0x2005, u" "},
    {0x2006, u" "},       {0x2007, u" "},  {0x2008, u" "},   {0x2009, u" "},
    {0x200A, u" "},       {0x200B, u""},   {0x200C, u""},    {0x200D, u""},
    {0x2010, u"-"},       {0x2011, u"-"},  {0x2012, u"-"},   {0x2013, u"-"},
    {0x2014, u"-"},       {0x2015, u"-"},  {0x2018, u"'"},   {0x2019, u"'"},
    {0x201A, u"'"},       {0x201B, u"'"},  {0x201C, u"\""},  {0x201D, u"\""},
    {0x201E, u"\""},      {0x201F, u"\""}, {0x2022, u" "},   {0x2026, u"..."},
    {0x202F, u" "},       {0x2032, u"'"},  {0x2033, u"\""},  {0x2039, u"\""},
    {0x203A, u"\""},      {0x205F, u" "},  {0x2060, u""},    {0x2103, u"\u00B0C"},
    {0x2109, u"\u00B0F"}, {0x2212, u"-"},  {0x2264, u"<="},  {0x2265, u">="},
    {0x3000, u" "},       {0xFEFF, u""},
};
static_assert(std::is_sorted(std::begin(kFolds), std::end(kFolds),
                             [](const Fold& a, const Fold& b) { return a.from < b.from; }));

const Fold* FindFold(char16_t u) {
  const auto* it = std::lower_bound(std::begin(kFolds), std::end(kFolds), u,
                                    [](const Fold& f, char16_t v) { return f.from < v; });
  return it != std::end(kFolds) && it->from == u ? it : nullptr;
}

// Emoji, pictographs, arrows, dingbats, shapes and other symbols that no legacy encoding holds
// and no voice says: they become a blank, since they stand between words (a '?' would end the
// sentence on the speak path). Selectors and joiners that only shape them become nothing.
enum class Symbol { kNone, kBlank, kNothing };
Symbol SymbolKind(char16_t u) {
  if ((u >= 0xFE00 && u <= 0xFE0F) || (u >= 0x20D0 && u <= 0x20FF)) return Symbol::kNothing;
  const bool blank = u == 0x00A9 || u == 0x00AE || (u >= 0x2100 && u <= 0x214F) ||
                     (u >= 0x2190 && u <= 0x23FF) || (u >= 0x2460 && u <= 0x27BF) ||
                     (u >= 0x2900 && u <= 0x2BFF) || u == 0x3030 || u == 0x303D || u == 0x3297 ||
                     u == 0x3299;
  return blank ? Symbol::kBlank : Symbol::kNone;
}

// The planes' pictographs behind a surrogate pair: U+1F000..U+1FBFF (emoji) become a blank,
// the tags U+E0000..U+E007F of flag sequences nothing.
Symbol PairKind(char16_t high) {
  if (high >= 0xD83C && high <= 0xD83E) return Symbol::kBlank;
  if (high == 0xDB40) return Symbol::kNothing;
  return Symbol::kNone;
}

bool IsCombining(char16_t u) {
  return u >= 0x0300 && u <= 0x036F;
}

// Latin-1 characters other than letters that come through the pivot unchanged.
bool SurvivesThePivot(char16_t u) {
  return u == 0x00A0 || (u >= 0x00B0 && u <= 0x00B4);
}

// A plain vowel with a combining circumflex (U+0302), breve (U+0306) or horn (U+031B).
char16_t Modified(char16_t base, char16_t mark) {
  struct Entry {
    char16_t base, mark, letter;
  };
  constexpr Entry kEntries[] = {
      {u'a', 0x0302, 0x00E2}, {u'A', 0x0302, 0x00C2}, {u'a', 0x0306, 0x0103},
      {u'A', 0x0306, 0x0102}, {u'e', 0x0302, 0x00EA}, {u'E', 0x0302, 0x00CA},
      {u'o', 0x0302, 0x00F4}, {u'O', 0x0302, 0x00D4}, {u'o', 0x031B, 0x01A1},
      {u'O', 0x031B, 0x01A0}, {u'u', 0x031B, 0x01B0}, {u'U', 0x031B, 0x01AF},
  };
  for (const auto& e : kEntries)
    if (e.base == base && e.mark == mark) return e.letter;
  return 0;
}

bool IsVowelOrLetter(char16_t u) {
  switch (u) {
  case u'a':
  case u'e':
  case u'i':
  case u'o':
  case u'u':
  case u'y':
  case u'A':
  case u'E':
  case u'I':
  case u'O':
  case u'U':
  case u'Y':
    return true;
  default:
    return PrecomposedRank(u) != kNotALetter;
  }
}

} // namespace

std::size_t FoldToLegacyRepertoire(std::u16string_view text, std::u16string& out) {
  // No input unit gives more than three output units: size once, write, trim.
  const std::size_t n = text.size();
  const std::size_t origin = out.size();
  out.resize(origin + 3 * n);
  char16_t* next = out.data() + origin;
  std::size_t unknown = 0;
  std::size_t i = 0;
  while (i < n) {
    const char16_t u = text[i];
    const bool vowel_or_letter = IsVowelOrLetter(u);
    if (u < 0x80 && !vowel_or_letter) {
      // Control characters other than the line and page breaks would read as the letters
      // that the pivot keeps on control bytes.
      *next++ = u < 0x20 && (u < 0x09 || u > 0x0D) && u != 0 ? u' ' : u;
      ++i;
      continue;
    }
    if (IsCombining(u)) {
      ++i; // a mark with no vowel before it
      continue;
    }
    if (vowel_or_letter) {
      if (u < 0x80 && (i + 1 == n || !IsCombining(text[i + 1]))) {
        *next++ = u;
        ++i;
        continue;
      }
      // The letter and whatever combining marks follow it, in any order; a toned letter is
      // split first so that a later circumflex, breve or horn still applies to its base.
      char16_t letter = u;
      char16_t tone = 0;
      if (const int rank = PrecomposedRank(u); rank >= kToneFreeLetters) {
        letter = DecomposedBase(rank);
        tone = DecomposedMark(rank);
      }
      std::size_t k = i + 1;
      for (; k < n && IsCombining(text[k]); ++k) {
        if (ToneMarkByte(text[k]) != 0) {
          if (tone == 0) tone = text[k];
        } else if (const char16_t m = Modified(letter, text[k]); m != 0) {
          letter = m;
        }
      }
      *next++ = letter;
      if (tone != 0) *next++ = tone;
      i = k;
      continue;
    }
    if (SurvivesThePivot(u)) {
      *next++ = u;
      ++i;
      continue;
    }
    if (const Fold* fold = FindFold(u)) {
      for (const char16_t f : fold->to)
        *next++ = f;
      ++i;
      continue;
    }
    const bool pair =
        u >= 0xD800 && u <= 0xDBFF && i + 1 < n && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
    const Symbol symbol = pair ? PairKind(u) : SymbolKind(u);
    if (symbol != Symbol::kNothing) {
      *next++ = symbol == Symbol::kBlank ? u' ' : u'?';
      ++unknown;
    }
    i += pair ? 2 : 1;
  }
  out.resize(static_cast<std::size_t>(next - out.data()));
  return unknown;
}

} // namespace vntts
