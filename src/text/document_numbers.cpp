// SPDX-License-Identifier: MIT
#include "text/document_numbers.h"

#include <algorithm>

#include "text/char_classes.h"
#include "text/word_table.h"

namespace vntts {

namespace {

// Kinds of documents and the bodies that issue them, as their numbers write them.
const WordTable& Codes() {
  static const WordTable kTable(
      {
          {"QĐ", "quyết định"},
          {"NĐ", "nghị định"},
          {"TT", "thông tư"},
          {"TTLT", "thông tư liên tịch"},
          {"NQ", "nghị quyết"},
          {"NQLT", "nghị quyết liên tịch"},
          {"CT", "chỉ thị"},
          {"CV", "công văn"},
          {"CĐ", "công điện"},
          {"TB", "thông báo"},
          {"KH", "kế hoạch"},
          {"BC", "báo cáo"},
          {"TTr", "tờ trình"},
          {"HD", "hướng dẫn"},
          {"QC", "quy chế"},
          {"QCVN", "quy chuẩn việt nam"},
          {"TCVN", "tiêu chuẩn việt nam"},
          {"PL", "pháp lệnh"},
          {"L", "lệnh"},
          {"SL", "sắc lệnh"},
          {"CP", "chính phủ"},
          {"TTg", "thủ tướng"},
          {"VPCP", "văn phòng chính phủ"},
          {"QH", "quốc hội"},
          {"UBTVQH", "ủy ban thường vụ quốc hội"},
          {"CTN", "chủ tịch nước"},
          {"UBND", "ủy ban nhân dân"},
          {"HĐND", "hội đồng nhân dân"},
          {"TW", "trung ương"},
          {"BCT", "bộ công thương"},
          {"BCA", "bộ công an"},
          {"BQP", "bộ quốc phòng"},
          {"BNG", "bộ ngoại giao"},
          {"BNV", "bộ nội vụ"},
          {"BTP", "bộ tư pháp"},
          {"BTC", "bộ tài chính"},
          {"BYT", "bộ y tế"},
          {"BXD", "bộ xây dựng"},
          {"BGDĐT", "bộ giáo dục và đào tạo"},
          {"BGD&ĐT", "bộ giáo dục và đào tạo"},
          {"BGTVT", "bộ giao thông vận tải"},
          {"BTNMT", "bộ tài nguyên và môi trường"},
          {"BNNPTNT", "bộ nông nghiệp và phát triển nông thôn"},
          {"BLĐTBXH", "bộ lao động thương binh và xã hội"},
          {"BKHĐT", "bộ kế hoạch và đầu tư"},
          {"BKHCN", "bộ khoa học và công nghệ"},
          {"BTTTT", "bộ thông tin và truyền thông"},
          {"BVHTTDL", "bộ văn hóa thể thao và du lịch"},
          {"NHNN", "ngân hàng nhà nước"},
          {"TTCP", "thanh tra chính phủ"},
          {"UBDT", "ủy ban dân tộc"},
          {"TANDTC", "tòa án nhân dân tối cao"},
          {"VKSNDTC", "viện kiểm sát nhân dân tối cao"},
          {"KTNN", "kiểm toán nhà nước"},
          {"BCH", "ban chấp hành"},
          {"BCHTW", "ban chấp hành trung ương"},
          {"BCĐ", "ban chỉ đạo"},
          {"BTV", "ban thường vụ"},
          {"ĐU", "đảng ủy"},
          {"TU", "tỉnh ủy"},
          {"HU", "huyện ủy"},
          {"SGDĐT", "sở giáo dục và đào tạo"},
          {"SYT", "sở y tế"},
          {"STC", "sở tài chính"},
          {"BHXH", "bảo hiểm xã hội"},
          {"ĐHQG", "đại học quốc gia"},
          {"BGH", "ban giám hiệu"},
          {"HĐQT", "hội đồng quản trị"},
          {"ĐHĐCĐ", "đại hội đồng cổ đông"},
          {"VP", "văn phòng"},
          {"TCCB", "tổ chức cán bộ"},
          {"TCHQ", "tổng cục hải quan"},
          {"TCT", "tổng cục thuế"},
      },
      false);
  return kTable;
}

bool IsModernYear(std::string_view s) {
  if (s.size() != 4 || !AllDigits(s)) return false;
  return s >= "1900" && s <= "2099";
}

// A code: letters (with '&') and digits that starts with a letter, "QĐ", "TTg", "QH14".
bool IsCode(std::string_view s) {
  return !s.empty() && IsLetter(s[0]) && std::all_of(s.begin(), s.end(), [](char c) {
    return IsLetter(c) || IsDigit(c) || c == '&';
  });
}

} // namespace

std::optional<std::vector<DocumentPart>> ParseDocumentNumber(std::string_view t, bool after_name) {
  if (t.empty() || !IsDigit(t[0]) || t.size() > 64) return std::nullopt;
  std::vector<DocumentPart> parts;
  bool codes = false;
  std::size_t start = 0;
  while (start <= t.size()) {
    std::size_t slash = t.find('/', start);
    if (slash == std::string_view::npos) slash = t.size();
    const std::string_view part = t.substr(start, slash - start);
    if (part.empty()) return std::nullopt;
    if (!codes && AllDigits(part)) {
      parts.push_back(
          {parts.empty() || !IsModernYear(part) ? DocumentPart::kNumber : DocumentPart::kYear,
           part});
    } else if (!parts.empty()) {
      // Codes joined by dashes: "TT-BGDĐT", "NQ-HĐND", "L-CTN".
      std::size_t from = 0;
      while (from <= part.size()) {
        std::size_t dash = part.find('-', from);
        if (dash == std::string_view::npos) dash = part.size();
        const std::string_view code = part.substr(from, dash - from);
        if (!IsCode(code)) return std::nullopt;
        parts.push_back({DocumentPart::kCode, code});
        from = dash + 1;
      }
      codes = true;
    } else {
      return std::nullopt;
    }
    start = slash + 1;
  }
  if (parts.size() < 2) return std::nullopt;
  // Without codes only "number/year" after the name of a document ("Nghị định 100/2019").
  if (!codes && !(after_name && parts.size() == 2 && parts[1].kind == DocumentPart::kYear))
    return std::nullopt;
  return parts;
}

const std::string* ReadDocumentCode(std::string_view code) {
  return Codes().Find(code);
}

} // namespace vntts
