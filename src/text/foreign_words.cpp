// SPDX-License-Identifier: MIT
#include "text/foreign_words.h"

#include <array>

#include "text/charset/charsets.h"
#include "text/syllable.h"

namespace vntts {

namespace {

// Names longer than this are no names; a word of more syllables is read letter by letter.
constexpr std::size_t kLongestWord = 24;
constexpr std::size_t kMostSyllables = 10;

bool IsVowelLetter(char c) {
  return c == 'a' || c == 'e' || c == 'i' || c == 'o' || c == 'u';
}

// A sound of the written word: a consonant group said as one (sh, th, ck) or one vowel letter
// (y and w count as vowels where they are glides).
struct Unit {
  std::string_view text;
  bool vowel = false;
};

// Consonant letter groups that stand for one sound, and the group they are read as.
struct Digraph {
  std::string_view written;
  std::string_view unit;
};
constexpr std::array<Digraph, 14> kDigraphs = {{{"sch", "s"},
                                                {"tch", "ch"},
                                                {"ch", "ch"},
                                                {"sh", "sh"},
                                                {"th", "th"},
                                                {"ph", "ph"},
                                                {"gh", "g"},
                                                {"ck", "k"},
                                                {"kh", "kh"},
                                                {"zh", "j"},
                                                {"dj", "j"},
                                                {"wr", "r"},
                                                {"ts", "ts"},
                                                {"tz", "ts"}}};

std::vector<Unit> SplitUnits(std::string_view w) {
  std::vector<Unit> units;
  const auto vowel_at = [&](std::size_t i) { return i < w.size() && IsVowelLetter(w[i]); };
  for (std::size_t i = 0; i < w.size();) {
    const char c = w[i];
    if (IsVowelLetter(c)) {
      units.push_back({w.substr(i++, 1), true});
      continue;
    }
    if (c == 'y' || c == 'w') {
      // A glide before a vowel at the start or after a vowel is a consonant (Yagi, Haiyan,
      // Washington); elsewhere it is a vowel (Taylor, Kyoto, Dow).
      const bool before = vowel_at(i + 1);
      const bool after = i > 0 && (IsVowelLetter(w[i - 1]) || w[i - 1] == 'y');
      const bool consonant = before && (i == 0 || (c == 'y' ? after : !after));
      units.push_back({w.substr(i++, 1), !consonant});
      continue;
    }
    bool matched = false;
    for (const Digraph& d : kDigraphs)
      if (w.substr(i).starts_with(d.written) && !(d.unit == "ts" && i > 0)) {
        units.push_back({d.unit, false});
        i += d.written.size();
        matched = true;
        break;
      }
    if (matched) continue;
    if (c == 'q' && i + 1 < w.size() && w[i + 1] == 'u' && vowel_at(i + 2)) {
      units.push_back({"qu", false});
      i += 2;
    } else if (c == 'n' && i + 1 < w.size() && w[i + 1] == 'g' && !vowel_at(i + 2)) {
      units.push_back({"ng", false});
      i += 2;
    } else {
      units.push_back({w.substr(i++, 1), false});
    }
  }
  return units;
}

// Vowel letters written together that make one vowel; the rest are a syllable each. "E" and
// "O" are e and o whose hat depends on the syllable (ê and ô when it is open).
struct VowelGroup {
  std::string_view written;
  std::string_view nucleus;
};
constexpr std::array<VowelGroup, 18> kVowelGroups = {{{"ee", "i"},
                                                      {"ea", "i"},
                                                      {"oo", "u"},
                                                      {"ou", "u"},
                                                      {"ai", "ai"},
                                                      {"ay", "ây"},
                                                      {"ei", "ây"},
                                                      {"ey", "ây"},
                                                      {"au", "ao"},
                                                      {"ao", "ao"},
                                                      {"aw", "o"},
                                                      {"ow", "ao"},
                                                      {"ew", "iu"},
                                                      {"oy", "oi"},
                                                      {"oi", "oi"},
                                                      {"ui", "uy"},
                                                      {"oa", "oa"},
                                                      {"oe", "ô"}}};

std::vector<std::string> Nuclei(std::string_view run) {
  std::vector<std::string> out;
  for (std::size_t i = 0; i < run.size();) {
    bool matched = false;
    for (const VowelGroup& g : kVowelGroups)
      if (run.substr(i).starts_with(g.written)) {
        out.emplace_back(g.nucleus);
        i += 2;
        matched = true;
        break;
      }
    if (matched) continue;
    switch (run[i++]) {
    case 'e':
      out.emplace_back("E");
      break;
    case 'o':
      out.emplace_back("O");
      break;
    case 'y':
      out.emplace_back("i");
      break;
    case 'w':
      out.emplace_back("u");
      break;
    default:
      out.emplace_back(1, run[i - 1]);
      break;
    }
  }
  return out;
}

struct Syllable {
  std::string_view onset; // a consonant unit, or empty
  std::string nucleus;
  std::string_view coda;   // a consonant unit, or empty
  bool r_coloured = false; // an r after the vowel: er is ơ, ir ia
  bool alone = false;      // a consonant said on its own with ờ (the b of Blinken)
};

// A consonant said on its own before another: bờ, cờ, xờ.
std::string_view AloneReading(std::string_view unit) {
  struct Pair {
    std::string_view unit, reading;
  };
  static constexpr Pair kAlone[] = {
      {"b", "bờ"},   {"c", "cờ"}, {"k", "cờ"}, {"q", "cờ"},  {"d", "đờ"},   {"f", "phờ"},
      {"ph", "phờ"}, {"g", "gờ"}, {"h", "hờ"}, {"j", "giờ"}, {"l", "lờ"},   {"m", "mờ"},
      {"n", "nờ"},   {"p", "pờ"}, {"r", "rờ"}, {"s", "xờ"},  {"sh", "xờ"},  {"t", "tờ"},
      {"th", "thờ"}, {"v", "vờ"}, {"x", "xờ"}, {"z", "dờ"},  {"ch", "chờ"}, {"kh", "khờ"},
      {"ng", "ngờ"}, {"ts", "xờ"}};
  for (const Pair& p : kAlone)
    if (p.unit == unit) return p.reading;
  return {};
}

// The consonants before a vowel: all but the last are said on their own (bờ lin ken), except
// t and r together, which Vietnamese has as tr. Returns the onset of the syllable that follows.
std::string_view TakeOnsetGroup(const std::vector<std::string_view>& units, std::size_t from,
                                std::vector<Syllable>& out) {
  if (from >= units.size()) return {};
  std::size_t last = units.size() - 1;
  const bool tr = last > from && units[last - 1] == "t" && units[last] == "r";
  for (std::size_t k = from; k < last - (tr ? 1 : 0); ++k)
    if (!AloneReading(units[k]).empty()) out.push_back({units[k], "", "", false, true});
  return tr ? std::string_view("tr") : units[last];
}

bool FrontVowel(std::string_view nucleus) {
  return nucleus.starts_with("e") || nucleus.starts_with("E") || nucleus.starts_with("i") ||
         nucleus.starts_with("ê") || nucleus.starts_with("y");
}

// The onset written as Vietnamese spells it before this vowel; w changes the vowel instead.
std::string OnsetReading(std::string_view unit, std::string& nucleus) {
  const bool front = FrontVowel(nucleus);
  if (unit.empty()) return {};
  if (unit == "c") return front ? "x" : "c";
  if (unit == "k" || unit == "q") return front ? "k" : "c";
  if (unit == "g") return front ? "gh" : "g";
  if (unit == "ng") return front ? "ngh" : "ng";
  if (unit == "d") return "đ";
  if (unit == "f" || unit == "ph") return "ph";
  if (unit == "s" || unit == "ts") return "x";
  if (unit == "sh") return "s";
  if (unit == "z") return "d";
  if (unit == "y") return "d";
  if (unit == "j") return nucleus.starts_with("i") ? "g" : "gi"; // Jinping: gin pinh
  if (unit == "w") {
    if (nucleus == "a")
      nucleus = "oa";
    else if (nucleus == "E")
      nucleus = "oe";
    else if (nucleus == "i")
      nucleus = "uy";
    return {};
  }
  if (unit == "x" || unit == "qu" || unit == "th" || unit == "ch" || unit == "kh" || unit == "tr" ||
      unit.size() == 1)
    return std::string(unit);
  return {};
}

// The final consonant as Vietnamese can end a syllable: l is n, s t, b p, d t, g and k c.
std::string CodaReading(std::string_view unit, std::string_view nucleus) {
  if (unit == "m" || unit == "n") return std::string(unit);
  if (unit == "ng") return nucleus == "i" ? "nh" : "ng";
  if (unit == "p" || unit == "b" || unit == "f" || unit == "ph" || unit == "v") return "p";
  if (unit == "t" || unit == "d" || unit == "th" || unit == "s" || unit == "z" || unit == "sh" ||
      unit == "ts")
    return "t";
  if (unit == "c" || unit == "k" || unit == "g" || unit == "q" || unit == "x" || unit == "ch")
    return nucleus == "i" ? "ch" : "c";
  if (unit == "l") return "n";
  return {};
}

// The vowel with the rising tone, which Vietnamese gives a syllable that ends in p, t, c, ch.
std::string WithRisingTone(std::string nucleus) {
  struct Pair {
    std::string_view plain, rising;
  };
  static constexpr Pair kTones[] = {{"a", "á"}, {"e", "é"}, {"ê", "ế"}, {"i", "í"}, {"o", "ó"},
                                    {"ô", "ố"}, {"ơ", "ớ"}, {"u", "ú"}, {"y", "ý"}};
  for (const Pair& p : kTones)
    if (nucleus.ends_with(p.plain)) {
      nucleus.replace(nucleus.size() - p.plain.size(), p.plain.size(), p.rising);
      return nucleus;
    }
  return nucleus;
}

// The syllable in UTF-8.
std::string Render(const Syllable& s) {
  if (s.alone) return std::string(AloneReading(s.onset));
  std::string nucleus = s.nucleus;
  std::string onset = OnsetReading(s.onset, nucleus);
  if (s.r_coloured) {
    if (nucleus == "E" || nucleus == "u")
      nucleus = "ơ";
    else if (nucleus == "i")
      nucleus = "ia";
  }
  const bool simple = nucleus.size() == 1 || nucleus == "oa";
  std::string coda = simple ? CodaReading(s.coda, nucleus) : std::string();
  if (nucleus == "uy" && (s.coda == "n" || s.coda == "t")) coda = std::string(s.coda);
  if (nucleus == "E")
    nucleus = coda.empty() ? "ê" : "e";
  else if (nucleus == "O")
    nucleus = coda.empty() ? "ô" : "o";
  if (onset == "qu" && nucleus.starts_with("u")) nucleus.erase(0, 1);
  if (nucleus.empty()) return {};
  const bool stop = coda == "p" || coda == "t" || coda == "c" || coda == "ch";
  return onset + (stop ? WithRisingTone(nucleus) : nucleus) + coda;
}

// Lower-case ASCII letters of the word, accents on its vowels dropped; empty if it has others.
std::string PlainLetters(std::string_view word) {
  std::string out;
  for (char ch : word) {
    const auto b = static_cast<unsigned char>(ch);
    if ((b >= 'a' && b <= 'z') || (b >= 'A' && b <= 'Z')) {
      out += static_cast<char>(b | 0x20);
    } else if ((b == 0xF8 || b == 0xF9) && !out.empty() &&
               (IsVowelLetter(out.back()) || out.back() == 'y')) {
      continue; // José, Mbappé: the acute or grave accent of a foreign spelling
    } else {
      return {};
    }
  }
  return out;
}

// The consonant units between two vowels after a double letter that says one sound (rr, ss, ll)
// is made single; a double stop or nasal (tt, mm) closes one syllable and opens the next.
void MergeDoubles(std::vector<std::string_view>& units) {
  if (units.size() >= 2 && units[0] == units[1] &&
      (units[0] == "r" || units[0] == "s" || units[0] == "l" || units[0] == "f" ||
       units[0] == "z" || units[0] == "h"))
    units.erase(units.begin());
}

} // namespace

std::optional<std::vector<std::string>> ReadForeignWord(std::string_view word) {
  const std::string w = PlainLetters(word);
  // A word needs a vowel letter to be said at all: xyz and mmHg are letters to spell.
  if (w.size() < 2 || w.size() > kLongestWord || w.find_first_of("aeiou") == std::string::npos)
    return std::nullopt;
  const std::vector<Unit> units = SplitUnits(w);
  // Consonant groups and vowel runs in turn: group, run, group, run, ..., group.
  std::vector<std::vector<std::string_view>> groups(1);
  std::vector<std::string> runs;
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (!units[i].vowel) {
      groups.back().push_back(units[i].text);
      continue;
    }
    if (i == 0 || !units[i - 1].vowel) runs.emplace_back();
    runs.back() += units[i].text;
    if (i + 1 == units.size() || !units[i + 1].vowel) groups.emplace_back();
  }
  if (runs.empty()) return std::nullopt;

  std::vector<Syllable> syllables;
  std::string_view onset = TakeOnsetGroup(groups[0], 0, syllables);
  for (std::size_t r = 0; r < runs.size(); ++r) {
    for (std::string& nucleus : Nuclei(runs[r])) {
      syllables.push_back({onset, std::move(nucleus), "", false, false});
      onset = {};
    }
    std::vector<std::string_view>& after = groups[r + 1];
    MergeDoubles(after);
    if (after.empty()) continue;
    Syllable& last = syllables.back();
    const bool final = r + 1 == runs.size();
    if (!final && after.size() == 1) {
      onset = after[0];
      continue;
    }
    std::size_t next = 1;
    if (after[0] == "r") {
      last.r_coloured = true; // Starmer, Bernabeu
      if (final && after.size() > 1) last.coda = after[next++];
    } else {
      last.coda = after[0];
    }
    if (!final) onset = TakeOnsetGroup(after, next, syllables);
  }
  if (syllables.size() > kMostSyllables) return std::nullopt;

  std::vector<std::string> out;
  for (const Syllable& s : syllables) {
    const std::string utf8 = Render(s);
    if (utf8.empty()) return std::nullopt;
    std::string internal = Utf8ToInternal(utf8);
    if (!LooksLikeSyllable(internal)) return std::nullopt;
    out.push_back(std::move(internal));
  }
  return out;
}

} // namespace vntts
