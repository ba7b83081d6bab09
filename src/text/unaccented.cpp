// SPDX-License-Identifier: MIT
#include "text/unaccented.h"

#include <algorithm>
#include <array>

#include "text/charset/charsets.h"
#include "text/word_table.h"

namespace vntts {

namespace {

// The most frequent words among those that need their marks to be syllables at all: the word
// a reader takes an unmarked form for.
const WordTable& FrequentWords() {
  static const WordTable kTable(
      {
          {"duoc", "được"},     {"nguoi", "người"},   {"chieu", "chiều"},   {"nhieu", "nhiều"},
          {"dieu", "điều"},     {"viet", "việt"},     {"tieng", "tiếng"},   {"muon", "muốn"},
          {"truoc", "trước"},   {"duong", "đường"},   {"nuoc", "nước"},     {"thuong", "thường"},
          {"truong", "trường"}, {"buoc", "bước"},     {"mot", "một"},       {"cac", "các"},
          {"viec", "việc"},     {"biet", "biết"},     {"nhat", "nhất"},     {"dat", "đất"},
          {"hoc", "học"},       {"lop", "lớp"},       {"sach", "sách"},     {"cach", "cách"},
          {"thich", "thích"},   {"dich", "dịch"},     {"tich", "tích"},     {"lich", "lịch"},
          {"khach", "khách"},   {"nghiep", "nghiệp"}, {"thiet", "thiết"},   {"tiep", "tiếp"},
          {"gap", "gặp"},       {"dep", "đẹp"},       {"hop", "họp"},       {"tap", "tập"},
          {"lap", "lập"},       {"phap", "pháp"},     {"nhap", "nhập"},     {"cap", "cấp"},
          {"giup", "giúp"},     {"kip", "kịp"},       {"tot", "tốt"},       {"hat", "hát"},
          {"mat", "mặt"},       {"that", "thật"},     {"tat", "tất"},       {"phat", "phát"},
          {"bat", "bắt"},       {"cuoc", "cuộc"},     {"thuoc", "thuộc"},   {"luot", "lượt"},
          {"vuot", "vượt"},     {"suot", "suốt"},     {"tuoi", "tuổi"},     {"cuoi", "cuối"},
          {"muoi", "mười"},     {"dien", "điện"},     {"tien", "tiền"},     {"kiem", "kiểm"},
          {"yeu", "yêu"},       {"yen", "yên"},       {"nguyen", "nguyễn"}, {"tuyen", "tuyển"},
          {"chuyen", "chuyện"}, {"truyen", "truyền"}, {"quyen", "quyền"},   {"xuyen", "xuyên"},
          {"huyen", "huyện"},   {"thuyen", "thuyền"}, {"luyen", "luyện"},   {"khuyen", "khuyến"},
          {"bien", "biển"},     {"mien", "miền"},     {"thien", "thiên"},   {"nhien", "nhiên"},
          {"nien", "niên"},     {"kien", "kiến"},     {"hien", "hiện"},     {"lien", "liên"},
          {"chien", "chiến"},   {"tieu", "tiêu"},     {"hieu", "hiểu"},     {"kieu", "kiểu"},
          {"bieu", "biểu"},     {"thieu", "thiếu"},   {"gioi", "giới"},     {"chuong", "chương"},
          {"luong", "lương"},   {"huong", "hướng"},   {"tuong", "tương"},   {"phuong", "phương"},
          {"xuong", "xuống"},   {"cuong", "cường"},   {"luon", "luôn"},     {"buon", "buồn"},
          {"cuon", "cuốn"},     {"nuoi", "nuôi"},     {"chuoi", "chuỗi"},   {"duoi", "dưới"},
          {"ruou", "rượu"},     {"buoi", "buổi"},     {"suoi", "suối"},     {"doc", "đọc"},
          {"toc", "tốc"},       {"loc", "lọc"},       {"goc", "gốc"},       {"moc", "mọc"},
          {"khoc", "khóc"},     {"phuc", "phục"},     {"chuc", "chúc"},     {"luc", "lúc"},
          {"muc", "mục"},       {"duc", "đức"},       {"thuc", "thực"},     {"truc", "trực"},
          {"tuc", "tục"},       {"suc", "sức"},       {"bac", "bác"},       {"lac", "lạc"},
          {"mac", "mặc"},       {"nhac", "nhạc"},     {"tac", "tác"},       {"sac", "sắc"},
          {"chac", "chắc"},     {"dac", "đặc"},       {"khac", "khác"},     {"dap", "đáp"},
          {"thap", "thấp"},     {"bep", "bếp"},       {"xep", "xếp"},       {"thep", "thép"},
          {"nhip", "nhịp"},     {"dip", "dịp"},       {"het", "hết"},       {"tet", "tết"},
          {"ret", "rét"},       {"tiet", "tiết"},     {"but", "bút"},       {"phut", "phút"},
          {"chut", "chút"},     {"nut", "nút"},       {"dot", "đợt"},       {"cot", "cột"},
          {"sot", "sốt"},       {"ngot", "ngọt"},     {"bot", "bột"},       {"chot", "chốt"},
          {"xuat", "xuất"},     {"thuat", "thuật"},   {"luat", "luật"},     {"vat", "vật"},
          {"sat", "sát"},       {"lat", "lát"},       {"nhiet", "nhiệt"},   {"giet", "giết"},
          {"tuyet", "tuyệt"},   {"quyet", "quyết"},   {"huyet", "huyết"},   {"thuyet", "thuyết"},
          {"chuyet", "chuyết"}, {"uoc", "ước"},       {"ruot", "ruột"},     {"chuot", "chuột"},
          {"luoc", "lược"},     {"cuop", "cướp"},     {"uong", "uống"},     {"muong", "mương"},
          {"nhuong", "nhường"}, {"vuong", "vương"},   {"suong", "sướng"},   {"ruong", "ruộng"},
          {"giuong", "giường"}, {"guong", "gương"},   {"khuong", "khương"}, {"chieng", "chiêng"},
          {"mieng", "miếng"},   {"tiec", "tiệc"},     {"biec", "biếc"},     {"tiem", "tiêm"},
          {"diem", "điểm"},     {"niem", "niềm"},     {"nghiem", "nghiệm"}, {"hiem", "hiểm"},
          {"kiep", "kiếp"},     {"diep", "điệp"},     {"hiep", "hiệp"},     {"khiep", "khiếp"},
          {"hiec", "hiếc"},     {"gieng", "giếng"},   {"kieng", "kiêng"},   {"lieu", "liệu"},
          {"nhiep", "nhiếp"},   {"ech", "ếch"},       {"lech", "lệch"},     {"mech", "mếch"},
          {"benh", "bệnh"},     {"kenh", "kênh"},     {"lenh", "lệnh"},     {"menh", "mệnh"},
          {"thenh", "thênh"},   {"nhuc", "nhục"},     {"uu", "ưu"},         {"luu", "lưu"},
          {"cuu", "cứu"},       {"huu", "hữu"},       {"buu", "bưu"},       {"muu", "mưu"},
          {"huou", "hươu"},
      },
      false);
  return kTable;
}

// Rhymes (vowels and final consonants) that are syllables without any mark.
bool IsUnmarkedRhyme(std::string_view r) {
  static constexpr std::string_view kRhymes[] = {
      "a",    "ai",  "am",  "an", "ang", "anh", "ao",  "au",   "ay",  "e",   "em",   "en",  "eng",
      "eo",   "i",   "ia",  "im", "in",  "inh", "iu",  "o",    "oa",  "oai", "oam",  "oan", "oang",
      "oanh", "oao", "oay", "oe", "oen", "oeo", "oi",  "om",   "on",  "ong", "oong", "u",   "ua",
      "uy",   "ui",  "um",  "un", "ung", "uya", "uyn", "uynh", "uyu", "y",
  };
  return std::find(std::begin(kRhymes), std::end(kRhymes), r) != std::end(kRhymes);
}

bool IsAsciiVowel(char c) {
  return c == 'a' || c == 'e' || c == 'i' || c == 'o' || c == 'u' || c == 'y';
}

// Length of the onset: the longest consonant group of the language that the word starts with,
// such that a vowel follows (gi and qu keep their vowel when no other one follows).
std::size_t Onset(std::string_view w) {
  static constexpr std::string_view kOnsets[] = {
      "ngh", "ng", "nh", "ch", "gh", "gi", "kh", "ph", "qu", "th", "tr", "b", "c",
      "d",   "g",  "h",  "k",  "l",  "m",  "n",  "p",  "r",  "s",  "t",  "v", "x"};
  for (std::string_view o : kOnsets)
    if (w.starts_with(o) && w.size() > o.size() && IsAsciiVowel(w[o.size()])) return o.size();
  if (w.starts_with("gi") || w.starts_with("qu")) return 1; // gin, qui: the i or u is the vowel
  return w.empty() || IsAsciiVowel(w[0]) ? 0 : std::string_view::npos;
}

bool OnsetFits(std::string_view onset, std::string_view rhyme) {
  if (rhyme.empty()) return false;
  const char v = rhyme[0];
  const bool front = v == 'i' || v == 'e' || v == 'y';
  if (onset == "k" || onset == "gh" || onset == "ngh") return front;
  if (onset == "c" || onset == "g" || onset == "ng") return !front;
  if (onset == "qu") return v != 'u' && v != 'o';
  return true;
}

// The rhyme with the hats and horns it needs ("ieu" -> "iêu"), in UTF-8, or empty.
std::string MarkedRhyme(std::string_view r) {
  struct Fix {
    std::string_view from, to;
  };
  static constexpr Fix kFixes[] = {
      {"ieu", "iêu"},   {"yeu", "yêu"},   {"uyen", "uyên"}, {"uyet", "uyết"}, {"uoi", "ươi"},
      {"uou", "ươu"},   {"uong", "ương"}, {"uoc", "ước"},   {"uon", "uôn"},   {"uot", "ướt"},
      {"uom", "ươm"},   {"uop", "ướp"},   {"iec", "iếc"},   {"iem", "iêm"},   {"ien", "iên"},
      {"ieng", "iêng"}, {"iep", "iếp"},   {"iet", "iết"},   {"yen", "yên"},   {"yet", "yết"},
      {"enh", "ênh"},   {"ech", "ếch"},   {"uu", "ưu"},     {"eu", "êu"},     {"ac", "ác"},
      {"ach", "ách"},   {"ap", "áp"},     {"at", "át"},     {"ec", "éc"},     {"ep", "ép"},
      {"et", "ét"},     {"ic", "íc"},     {"ich", "ích"},   {"ip", "íp"},     {"it", "ít"},
      {"oc", "óc"},     {"op", "óp"},     {"ot", "ót"},     {"uc", "úc"},     {"up", "úp"},
      {"ut", "út"},     {"oac", "oác"},   {"oach", "oách"}, {"oat", "oát"},   {"oet", "oét"},
      {"uat", "uất"},   {"uyt", "uýt"},   {"uych", "uých"}, {"oong", "oong"}, {"ooc", "oóc"},
  };
  for (const Fix& f : kFixes)
    if (r == f.from) return std::string(f.to);
  return {};
}

bool IsLowerAscii(std::string_view w) {
  return !w.empty() && std::all_of(w.begin(), w.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

} // namespace

bool IsUnmarkedSyllable(std::string_view w) {
  if (!IsLowerAscii(w) || w.size() > 7) return false;
  const std::size_t onset = Onset(w);
  if (onset == std::string_view::npos) return false;
  const std::string_view rhyme = w.substr(onset);
  return IsUnmarkedRhyme(rhyme) && OnsetFits(w.substr(0, onset), rhyme);
}

std::optional<std::string> RepairUnmarked(std::string_view w) {
  if (!IsLowerAscii(w) || w.size() > 8 || IsUnmarkedSyllable(w)) return std::nullopt;
  if (const std::string* known = FrequentWords().Find(w))
    return known->substr(1, known->size() - 2);
  const std::size_t onset = Onset(w);
  if (onset == std::string_view::npos) return std::nullopt;
  const std::string_view rhyme = w.substr(onset);
  if (!OnsetFits(w.substr(0, onset), rhyme)) return std::nullopt;
  const std::string marked = MarkedRhyme(rhyme);
  if (marked.empty()) return std::nullopt;
  return Utf8ToInternal(std::string(w.substr(0, onset)) + marked);
}

std::optional<std::vector<std::string>> SplitUnmarkedRun(std::string_view w) {
  constexpr std::size_t kLongest = 40;
  if (!IsLowerAscii(w) || w.size() > kLongest) return std::nullopt;
  const auto syllable = [](std::string_view s) -> std::optional<std::string> {
    if (IsUnmarkedSyllable(s)) return std::string(s);
    return RepairUnmarked(s);
  };
  // Fewest syllables from each position to the end, and among those the fewest that start
  // with a vowel (dich|vu|cong rather than dich|vuc|ong); syllables have at most seven letters.
  constexpr std::size_t kNone = 100000;
  // A syllable that needed its marks guessed costs a little more (ho|tro, not hot|ro).
  const auto cost = [](std::string_view s) -> std::size_t {
    return 4 + (IsAsciiVowel(s[0]) ? 2 : 0) + (IsUnmarkedSyllable(s) ? 0 : 1);
  };
  std::array<std::size_t, kLongest + 1> best{};
  std::array<std::size_t, kLongest + 1> next{};
  best[w.size()] = 0;
  for (std::size_t i = w.size(); i-- > 0;) {
    best[i] = kNone;
    for (std::size_t len = std::min<std::size_t>(7, w.size() - i); len >= 1; --len) {
      const std::string_view part = w.substr(i, len);
      if (best[i + len] == kNone || best[i + len] + cost(part) >= best[i]) continue;
      if (syllable(part)) {
        best[i] = best[i + len] + cost(part);
        next[i] = i + len;
      }
    }
  }
  if (best[0] == kNone) return std::nullopt;
  std::vector<std::string> parts;
  for (std::size_t i = 0; i < w.size(); i = next[i])
    parts.push_back(*syllable(w.substr(i, next[i] - i)));
  return parts;
}

} // namespace vntts
