// SPDX-License-Identifier: MIT
#include "text/context_words.h"

#include <string>

#include "text/char_classes.h"
#include "text/charset/charsets.h"
#include "text/word_table.h"

namespace vntts {

namespace {

std::string_view Bare(std::string_view word) {
  while (word.size() > 1 && (word.back() == ':' || word.back() == ','))
    word.remove_suffix(1);
  return word;
}

bool In(const WordTable& table, std::string_view word) {
  return table.Contains(Bare(word));
}

} // namespace

bool IsExtraPhoneLabel(std::string_view word) {
  static const WordTable kLabels({{"đt", ""},
                                  {"sđt", ""},
                                  {"sdt", ""},
                                  {"dđ", ""},
                                  {"đtdđ", ""},
                                  {"hotline", ""},
                                  {"fax", ""},
                                  {"mobile", ""},
                                  {"mob", ""},
                                  {"zalo", ""},
                                  {"tel", ""},
                                  {"phone", ""},
                                  {"viber", ""},
                                  {"whatsapp", ""}},
                                 true);
  return In(kLabels, word);
}

bool IntroducesDialledNumber(std::string_view word) {
  static const WordTable kWords({{"gọi", ""},
                                 {"hotline", ""},
                                 {"đài", ""},
                                 {"nóng", ""},
                                 {"quay", ""},
                                 {"bấm", ""},
                                 {"nhắn", ""},
                                 {"gửi", ""}},
                                true);
  return In(kWords, word);
}

bool IntroducesDate(std::string_view word) {
  static const WordTable kWords(
      {{"từ", ""},    {"đến", ""},   {"tới", ""},   {"hạn", ""},   {"hết", ""},   {"lễ", ""},
       {"giảng", ""}, {"dịp", ""},   {"vào", ""},   {"trước", ""}, {"sau", ""},   {"nay", ""},
       {"mai", ""},   {"cuối", ""},  {"đầu", ""},   {"giữa", ""},  {"rạng", ""},  {"tết", ""},
       {"nghỉ", ""},  {"hôm", ""},   {"ngày", ""},  {"đêm", ""},   {"khuya", ""}, {"chiều", ""},
       {"trưa", ""},  {"sáng", ""},  {"tối", ""},   {"qua", ""},   {"kể", ""},    {"tháng", ""},
       {"chót", ""},  {"niệm", ""},  {"mừng", ""},  {"hội", ""},   {"dự", ""},    {"thi", ""},
       {"hành", ""},  {"chiếu", ""}, {"tuyển", ""}, {"ký", ""},    {"kí", ""},    {"bắt", ""},
       {"phiên", ""}, {"đường", ""}},
      true);
  return In(kWords, word);
}

std::optional<std::string> ReadAbbreviationAfter(std::string_view word,
                                                 std::string_view abbreviation) {
  // Abbreviations whose usual reading the word before overrides: KCN is a khu công nghiệp,
  // and so is "Khu CN"; "chỉ số UV" and "tia UV" are ultraviolet, not an ủy viên; "chụp CT" a
  // scan, not a chủ tịch.
  static const WordTable kPairs({{"khu CN", "công nghiệp"},
                                 {"cụm CN", "công nghiệp"},
                                 {"số UV", "u vê"},
                                 {"tia UV", "u vê"},
                                 {"chụp CT", "xê tê"}, // a scan, not a chủ tịch
                                 {"máy CT", "xê tê"}},
                                false);
  static const WordTable kAbbreviations({{"CN", ""}, {"UV", ""}, {"CT", ""}}, false);
  if (!kAbbreviations.Contains(abbreviation) || word.size() > 8) return std::nullopt;
  const std::string key = LowerInternal(Bare(word)) + " " + std::string(abbreviation);
  if (const std::string* reading = kPairs.Find(key)) return *reading;
  return std::nullopt;
}

bool IsTimeOfDayWord(std::string_view word) {
  static const WordTable kWords({{"sáng", ""},
                                 {"trưa", ""},
                                 {"chiều", ""},
                                 {"tối", ""},
                                 {"đêm", ""},
                                 {"khuya", ""},
                                 {"hôm", ""},
                                 {"ngày", ""}},
                                true);
  return In(kWords, word);
}

bool LeadsToTime(std::string_view word) {
  static const WordTable kWords({{"lúc", ""},
                                 {"từ", ""},
                                 {"đến", ""},
                                 {"tới", ""},
                                 {"khoảng", ""},
                                 {"vào", ""},
                                 {"trước", ""},
                                 {"sau", ""},
                                 {"hồi", ""},
                                 {"tầm", ""},
                                 {"-", ""}},
                                true);
  return In(kWords, word);
}

bool IntroducesPeriod(std::string_view word) {
  static const WordTable kWords({{"trong", ""},
                                 {"đến", ""},
                                 {"từ", ""},
                                 {"cuối", ""},
                                 {"đầu", ""},
                                 {"giữa", ""},
                                 {"sang", ""},
                                 {"và", ""},
                                 {"vào", ""}},
                                true);
  return In(kWords, word);
}

bool IntroducesScore(std::string_view word, std::string_view word_before) {
  static const WordTable kWords(
      {{"thắng", ""}, {"thua", ""}, {"hòa", ""}, {"hoà", ""}, {"bại", ""}, {"hạ", ""}}, true);
  const std::string_view w = Bare(word);
  if (kWords.Contains(w)) return true;
  // Asked for every piece of some sentences: the pair is built only for its second words.
  static const WordTable kSeconds({{"số", ""}, {"cuộc", ""}, {"quả", ""}, {"biệt", ""}}, true);
  if (!kSeconds.Contains(w) || word_before.size() > 16) return false;
  static const WordTable kPairs(
      {{"tỷ số", ""}, {"tỉ số", ""}, {"chung cuộc", ""}, {"kết quả", ""}, {"cách biệt", ""}}, true);
  return kPairs.Contains(std::string(word_before) + " " + std::string(w));
}

bool NamesDocument(std::string_view word, std::string_view word_before) {
  static const WordTable kPairs(
      {{"thông tư", ""},      {"nghị định", ""}, {"quyết định", ""}, {"nghị quyết", ""},
       {"công văn", ""},      {"chỉ thị", ""},   {"thông báo", ""},  {"pháp lệnh", ""},
       {"kế hoạch", ""},      {"công điện", ""}, {"quy định", ""},   {"hướng dẫn", ""},
       {"báo cáo", ""},       {"tờ trình", ""},  {"sắc lệnh", ""},   {"quy chuẩn", ""},
       {"tiêu chuẩn", ""},    {"văn bản", ""},   {"lệnh", ""},       {"luật", ""},
       {"quyết định số", ""}, {"luật số", ""}},
      true);
  const std::string w = LowerInternal(Bare(word));
  const std::string before = LowerInternal(word_before);
  return kPairs.Contains(before + " " + w) || kPairs.Contains(w);
}

bool TakesPeriodAndYear(std::string_view word) {
  static const WordTable kWords(
      {{"quý", ""}, {"quí", ""}, {"kỳ", ""}, {"kì", ""}, {"khóa", ""}, {"khoá", ""}, {"đợt", ""}},
      true);
  return In(kWords, word);
}

bool IsPerWord(std::string_view word) {
  static const WordTable kWords(
      {{"giờ", ""},   {"ngày", ""},  {"đêm", ""},   {"tuần", ""},  {"tháng", ""}, {"năm", ""},
       {"quý", ""},   {"phút", ""},  {"giây", ""},  {"người", ""}, {"lượt", ""},  {"lần", ""},
       {"ca", ""},    {"suất", ""},  {"chiếc", ""}, {"cái", ""},   {"con", ""},   {"căn", ""},
       {"phòng", ""}, {"hộ", ""},    {"xe", ""},    {"tấn", ""},   {"tạ", ""},    {"thùng", ""},
       {"hộp", ""},   {"bao", ""},   {"lít", ""},   {"chai", ""},  {"gói", ""},   {"ký", ""},
       {"kí", ""},    {"cân", ""},   {"bộ", ""},    {"đôi", ""},   {"cặp", ""},   {"mét", ""},
       {"buổi", ""},  {"tiết", ""},  {"khóa", ""},  {"kỳ", ""},    {"trang", ""}, {"bình", ""},
       {"lon", ""},   {"két", ""},   {"vỉ", ""},    {"viên", ""},  {"liều", ""},  {"lọ", ""},
       {"suất", ""},  {"m2", ""},    {"sào", ""},   {"công", ""},  {"thửa", ""},  {"lô", ""},
       {"khách", ""}, {"học", ""},   {"sinh", ""},  {"đầu", ""},   {"cây", ""},   {"quả", ""},
       {"trái", ""},  {"bó", ""},    {"bát", ""},   {"tô", ""},    {"đĩa", ""},   {"ly", ""},
       {"cốc", ""},   {"tờ", ""},    {"cuốn", ""},  {"quyển", ""}, {"tập", ""},   {"mâm", ""},
       {"phần", ""},  {"combo", ""}, {"set", ""},   {"chỉ", ""},   {"lượng", ""}, {"ounce", ""},
       {"thùng", ""}, {"lạng", ""},  {"gam", ""},   {"mẫu", ""},   {"hecta", ""}, {"héc", ""},
       {"km", ""},    {"kg", ""},    {"con", ""},   {"bữa", ""},   {"đêm", ""},   {"chuyến", ""}},
      true);
  return In(kWords, word);
}

bool NamesSpanOfYears(std::string_view word) {
  static const WordTable kWords({{"học", ""},
                                 {"khóa", ""},
                                 {"khoá", ""},
                                 {"giải", ""},
                                 {"kỳ", ""},
                                 {"kì", ""},
                                 {"mùa", ""},
                                 {"vụ", ""}},
                                true);
  return In(kWords, word);
}

bool IntroducesSpelledCode(std::string_view word) {
  static const WordTable kWords({{"bay", ""},
                                 {"tàu", ""},
                                 {"hiệu", ""},
                                 {"chuyến", ""},
                                 {"mác", ""},
                                 {"mã", ""},
                                 {"code", ""}},
                                true);
  return In(kWords, word);
}

bool IntroducesSecret(std::string_view word) {
  static const WordTable kWords(
      {{"khẩu", ""}, {"pass", ""}, {"password", ""}, {"pin", ""}, {"otp", ""}, {"mã", ""}}, true);
  return In(kWords, word);
}

bool IsWeekdayName(std::string_view word, std::string_view word_before) {
  static const WordTable kDays(
      {{"hai", ""}, {"ba", ""}, {"tư", ""}, {"năm", ""}, {"sáu", ""}, {"bảy", ""}}, true);
  static const std::string kThu = Utf8ToInternal("thứ");
  static const std::string kChu = Utf8ToInternal("chủ");
  static const std::string kNhat = Utf8ToInternal("nhật");
  const std::string before = LowerInternal(word_before);
  if (before == kThu) return In(kDays, word);
  return before == kChu && LowerInternal(Bare(word)) == kNhat;
}

} // namespace vntts
