// SPDX-License-Identifier: MIT
#pragma once
// Numbers of laws, decrees and decisions: "12/2020/TT-BGDĐT", "1234/QĐ-TTg", "05/NQ-CP",
// "45/2019/QH14". Every part is read: the numbers, the year after năm, then the kind of
// document and its issuer from a table of the common codes.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

struct DocumentPart {
  enum Kind { kNumber, kYear, kCode } kind;
  std::string_view text;
};

// The parts of a document number, or nothing when the token is none. With afterName (the word
// before names a document: Thông tư, Nghị định ...) a plain "12/2020" counts too.
std::optional<std::vector<DocumentPart>> ParseDocumentNumber(std::string_view token,
                                                             bool after_name);

// The reading of a document code (QĐ quyết định, CP chính phủ, BGDĐT bộ giáo dục và đào tạo ...)
// with blanks around it, or nothing.
const std::string* ReadDocumentCode(std::string_view code);

} // namespace vntts
