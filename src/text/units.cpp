// SPDX-License-Identifier: MIT
#include "text/units.h"

#include "text/char_classes.h"
#include "text/vocabulary.h"
#include "text/word_table.h"

namespace vntts {

namespace {

// One unit without '/': "ha", or an optional prefix, a base and (for metres) a power.
std::optional<std::string> ReadSimpleUnit(std::string_view u) {
  if (u == "ha") return std::string(words::kHectare);
  if (u.empty() || u.size() > 3) return std::nullopt;
  std::string out;
  std::size_t i = 0;
  if (u.size() >= 2 && (u[0] == 'm' || u[0] == 'c' || u[0] == 'd' || u[0] == 'k') &&
      (u[1] == 'm' || u[1] == 'g' || u[1] == 'l')) {
    switch (u[0]) {
    case 'm':
      out += words::kMilli;
      break;
    case 'c':
      out += words::kCenti;
      break;
    case 'd':
      out += words::kDeci;
      break;
    default:
      if (u[1] == 'm' && u.size() == 2) return std::string(words::kKilometre);
      out += words::kKilo;
      break;
    }
    i = 1;
  }
  const char base = u[i++];
  if (base == 'm') {
    if (i < u.size() && u[i] == '2') {
      out += words::kSquareMetre;
      ++i;
    } else if (i < u.size() && u[i] == '3') {
      out += words::kCubicMetre;
      ++i;
    } else {
      out += words::kMetre;
    }
  } else if (base == 'g') {
    out += words::kGram;
  } else if (base == 'l') {
    out += words::kLitre;
  } else {
    return std::nullopt;
  }
  if (i != u.size()) return std::nullopt;
  return out;
}

// Units whose case tells them apart: a capital B is a byte, a small b a bit.
const WordTable& CaseUnits() {
  static const WordTable kTable(
      {
          {"Kb", "ki lô bít"},
          {"Mb", "mê ga bít"},
          {"Gb", "gi ga bít"},
          {"kbps", "ki lô bít trên giây"},
          {"Kbps", "ki lô bít trên giây"},
          {"Mbps", "mê ga bít trên giây"},
          {"Gbps", "gi ga bít trên giây"},
          {"MP", "mê ga pích xeo"},
          {"mA", "mi li am pe"},
          {"Nm", "niu tơn mét"},
      },
      false);
  return kTable;
}

// Data, electrical, frequency and other units, in any case ("5GB", "220v", "50hz").
const WordTable& OtherUnits() {
  static const WordTable kTable(
      {
          {"kb", "ki lô bai"},
          {"mb", "mê ga bai"},
          {"gb", "gi ga bai"},
          {"tb", "tê ra bai"},
          {"bps", "bít trên giây"},
          {"v", "vôn"},
          {"kv", "ki lô vôn"},
          {"mv", "mi li vôn"},
          {"w", "oát"},
          {"kw", "ki lô oát"},
          {"mw", "mê ga oát"},
          {"gw", "gi ga oát"},
          {"wh", "oát giờ"},
          {"kwh", "ki lô oát giờ"},
          {"mwh", "mê ga oát giờ"},
          {"gwh", "gi ga oát giờ"},
          {"mah", "mi li am pe giờ"},
          {"ah", "am pe giờ"},
          {"hz", "héc"},
          {"khz", "ki lô héc"},
          {"mhz", "mê ga héc"},
          {"ghz", "gi ga héc"},
          {"kva", "ki lô vôn am pe"},
          {"inch", "inh"},
          {"cc", "phân khối"},
          {"mmhg", "mi li mét thủy ngân"},
          {"kcal", "ki lô ca lo"},
          {"cal", "ca lo"},
          {"nm", "na nô mét"},
          {"db", "đề xi ben"},
          {"px", "pích xeo"},
          {"fps", "khung hình trên giây"},
          {"rpm", "vòng trên phút"},
          {"ms", "mi li giây"},
          {"mcg", "mi cờ rô gam"},
          {"mph", "dặm trên giờ"},
          {"lbs", "pao"},
          {"lb", "pao"},
          {"oz", "ao xơ"},
          {"mol", "mon"},
          {"mmol", "mi li mon"},
          {"ppm", "phần triệu"},

      },
      true);
  return kTable;
}

// One unit on either side of a '/': km, h, s, or one of the tables.
std::optional<std::string> ReadUnitPart(std::string_view original, std::string_view lower) {
  if (const std::string* r = CaseUnits().Find(original)) return *r;
  if (auto simple = ReadSimpleUnit(lower)) return simple;
  if (const std::string* r = OtherUnits().Find(lower)) return *r;
  return std::nullopt;
}

} // namespace

std::optional<std::string> ReadUnit(std::string_view abbreviation) {
  if (abbreviation.size() > 8) return std::nullopt;
  std::string lower = LowerInternal(abbreviation);
  // m², km³: the superscript digits (B2, B3 in the internal text) are the powers 2 and 3.
  for (char& c : lower)
    if (c == '\xB2' || c == '\xB3') c = static_cast<char>(c - '\xB2' + '2');
  const std::string_view u = lower;
  if (u.starts_with(kDegreeSign)) { // 30°C, 25°
    const std::string_view scale = u.substr(1);
    if (scale.empty()) return std::string(words::kDegree);
    if (scale == "c") return std::string(words::kCelsius);
    if (scale == "f") return std::string(words::kFahrenheit);
    return std::nullopt;
  }
  if (u == "oc") return std::string(words::kCelsius); // 30oC, as typed without a degree key
  const std::size_t slash = u.find('/');
  if (slash == std::string_view::npos) {
    return ReadUnitPart(abbreviation, u);
  }
  auto left = ReadUnitPart(abbreviation.substr(0, slash), u.substr(0, slash));
  if (!left) return std::nullopt;
  const std::string_view right = u.substr(slash + 1);
  std::string out = std::move(*left);
  out += words::kPerWord;
  if (right == "h")
    out += words::kPerHour;
  else if (right == "s")
    out += ' ', out += words::kSecondWord;
  else if (auto r = ReadUnitPart(abbreviation.substr(slash + 1), right))
    out += *r;
  else
    return std::nullopt;
  return out;
}

std::size_t NumberPrefixLength(std::string_view t) {
  std::size_t i = 0;
  if (t.empty() || !IsDigit(t[0])) return 0;
  while (i < t.size()) {
    if (IsDigit(t[i]))
      ++i;
    else if ((t[i] == '.' || t[i] == ',') && i + 1 < t.size() && IsDigit(t[i + 1]))
      i += 2;
    else
      break;
  }
  return i;
}

} // namespace vntts
