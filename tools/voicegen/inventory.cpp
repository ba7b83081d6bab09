// SPDX-License-Identifier: MIT
#include "inventory.h"

#include <fstream>
#include <string_view>
#include <utility>

#include "orthography.h"
#include "vietnamese_letters.h"

namespace voicegen {
namespace {

// Words the readings of numbers, dates, times, amounts, measures, addresses and symbols say.
constexpr std::string_view kReadingWords[] = {
    // digits and number words
    "không",
    "một",
    "hai",
    "ba",
    "bốn",
    "năm",
    "sáu",
    "bảy",
    "tám",
    "chín",
    "mươi",
    "mười",
    "mốt",
    "lăm",
    "lẻ",
    "trăm",
    "nghìn",
    "ngàn",
    "triệu",
    "tỉ",
    "tỷ",
    "chấm",
    "phẩy",
    "trên",
    "linh",
    "tư",
    "nhăm",
    "rưỡi",
    "âm",
    "dương",
    // dates and times
    "tháng",
    "ngày",
    "giờ",
    "phút",
    "giây",
    "mai",
    "trước",
    "sau",
    "nay",
    "qua",
    "khuya",
    "hôm",
    "đêm",
    "tối",
    "chiều",
    "trưa",
    "sáng",
    "giêng",
    "chạp",
    "thứ",
    "chủ",
    "nhật",
    "tuần",
    "quý",
    "quí",
    "kỷ",
    "kỉ",
    "đến",
    // money
    "đô",
    "la",
    "bảng",
    "yên",
    "đồng",
    "xu",
    "hào",
    "ơ",
    "rô",
    "nhân",
    "dân",
    "tệ",
    // measures
    "lít",
    "mi",
    "li",
    "mét",
    "vuông",
    "khối",
    "ki",
    "lô",
    "đề",
    "xi",
    "xen",
    "ti",
    "gam",
    "héc",
    "ta",
    "tấn",
    "tạ",
    "yến",
    "lạng",
    "cân",
    "tích",
    "dài",
    "cách",
    "tịnh",
    "nặng",
    "lượng",
    "độ",
    "phần",
    "trăm",
    "in",
    "sơ",
    "mai",
    "crô",
    "nô",
    "ga",
    "mê",
    "bai",
    "oát",
    "vôn",
    // addresses and symbols
    "suyệt",
    "kép",
    "và",
    "cộng",
    "trừ",
    "chia",
    "nhỏ",
    "hơn",
    "bằng",
    "lớn",
    "vòng",
    "mở",
    "ngoặc",
    "đóng",
    "gạch",
    "dưới",
    "ngang",
    "chéo",
    "sao",
    "thăng",
    "a",
    "còng",
    "hỏi",
    "chấm",
    "than",
    "hai",
    "phẩy",
    "nháy",
    "đơn",
    "kép",
    "dấu",
    "bé",
    "thêm",
    "bớt",
};

// Letters a spelled word is read with, by their Vietnamese names. The vowels are syllables
// of their own and need no entry.
constexpr std::pair<std::string_view, std::string_view> kLetterNames[] = {
    {"ă", "á"},     {"â", "ớ"},     {"b", "bê"},     {"c", "xê"},     {"d", "dê"},   {"đ", "đê"},
    {"f", "ép"},    {"g", "giê"},   {"h", "hát"},    {"j", "gi"},     {"k", "ca"},   {"l", "e lờ"},
    {"m", "em mờ"}, {"n", "en nờ"}, {"p", "pê"},     {"q", "quy"},    {"r", "e rờ"}, {"s", "ét xì"},
    {"t", "tê"},    {"v", "vê"},    {"w", "vê kép"}, {"x", "ích xì"}, {"z", "dét"},
};

void AddSyllable(std::map<std::string, std::string>& inv, const std::string& key) {
  for (const auto& v : TonePlacementVariants(key))
    inv.emplace(v, v);
}

void AddHunspellWords(std::map<std::string, std::string>& inv, const std::string& path) {
  std::ifstream in(path);
  std::string line;
  bool first = true;
  while (std::getline(in, line)) {
    if (std::exchange(first, false)) continue; // the entry count
    const auto word = std::string_view(line).substr(0, line.find('/'));
    std::u32string syllable;
    const std::u32string text = FromUtf8(word);
    for (std::size_t i = 0; i <= text.size(); ++i) {
      if (i < text.size() && IsLetter(text[i])) {
        syllable.push_back(ToLower(text[i]));
        continue;
      }
      if (!syllable.empty()) AddSyllable(inv, ToUtf8(syllable));
      syllable.clear();
    }
  }
}

} // namespace

std::map<std::string, std::string> BuildInventory(const InventorySources& sources) {
  std::map<std::string, std::string> inv;
  for (const auto& s : OrthographicSyllables())
    inv.emplace(s, s);
  if (!sources.hunspell_dic.empty()) AddHunspellWords(inv, sources.hunspell_dic);
  for (auto w : kReadingWords)
    AddSyllable(inv, std::string(w));
  // Letter names win over a syllable of the same spelling: "b" is only ever a spelled letter.
  for (const auto& [letter, name] : kLetterNames)
    inv[std::string(letter)] = std::string(name);
  return inv;
}

} // namespace voicegen
