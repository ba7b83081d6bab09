// SPDX-License-Identifier: MIT
#pragma once
// The words before a token that decide how a newsreader reads it: labels of telephone numbers,
// words that introduce a date or a score, names of documents, words that a '/' divides by.
// Every test takes internal text in any case; a trailing ':' or ',' is ignored.
#include <optional>
#include <string>
#include <string_view>

namespace vntts {

// ĐT, SĐT, DĐ, hotline, fax, mobile, zalo, điện thoại, di động: a number after one is a
// telephone number (beyond the classifier's own labels).
bool IsExtraPhoneLabel(std::string_view word);
// gọi, hotline, tổng đài, đường dây nóng, quay, bấm: a short number after one is dialled, and
// read digit by digit (113, 1022).
bool IntroducesDialledNumber(std::string_view word);
// Words that introduce a day and month without a year: từ, đến, hạn, lễ, dịp, vào, ...
bool IntroducesDate(std::string_view word);
// The reading of an abbreviation that the word before it decides ("Khu CN": công nghiệp,
// "chỉ số UV": u vê), or nothing. The abbreviation is compared as written.
std::optional<std::string> ReadAbbreviationAfter(std::string_view word,
                                                 std::string_view abbreviation);
// sáng, trưa, chiều, tối, đêm: after "8g" they make it an hour.
bool IsTimeOfDayWord(std::string_view word);
// lúc, từ, đến, khoảng, vào: before "8g" they make it an hour.
bool LeadsToTime(std::string_view word);
// trong, đến, từ, cuối, đầu, giữa: before "Q3" they make it a quarter of the year.
bool IntroducesPeriod(std::string_view word);
// thắng, thua, hòa, chung cuộc, tỷ số (with the word before): a score follows.
bool IntroducesScore(std::string_view word, std::string_view word_before);
// Thông tư, Nghị định, Quyết định, Luật, Công văn, ... (the last word of the name, with the
// one before it): a number/year after one is a document number.
bool NamesDocument(std::string_view word, std::string_view word_before);
// quý, kỳ, khóa, học kỳ, đợt, giai đoạn: "quý 3/2023" is the third quarter of 2023.
bool TakesPeriodAndYear(std::string_view word);
// The second part of "25.000 đồng/kg", "120 lượt/ngày": a unit of time, count or measure.
bool IsPerWord(std::string_view word);
// năm học, niên khóa, mùa giải, nhiệm kỳ, vụ: two years joined by a dash after one name one
// span ("năm học 2024-2025"), read without đến.
bool NamesSpanOfYears(std::string_view word);
// chuyến bay, tàu, số hiệu, mã: a code after one (VN123, SE1, KM50) is spelled and dialled.
bool IntroducesSpelledCode(std::string_view word);
// mật khẩu, pass, PIN, OTP, mã: a number after one is a secret or a code, read digit by digit.
bool IntroducesSecret(std::string_view word);
// Names of weekdays after thứ (Hai .. Bảy, and Nhật after chủ), for "Thứ Hai - Thứ Sáu".
bool IsWeekdayName(std::string_view word, std::string_view word_before);

} // namespace vntts
