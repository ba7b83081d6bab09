// SPDX-License-Identifier: MIT
#pragma once
// Vietnamese typed without tone marks (chat, old systems, web addresses): "chieu nay nguoi ta
// duoc nghi". A word that is a valid syllable without marks is read as it stands; one that is
// not (chieu, nguoi, duoc) is read as the nearest valid syllable.
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vntts {

// True for a lower-case ASCII word that is a Vietnamese syllable as written, with no marks:
// "khong", "toi", "nam" (but not "chieu", "duoc", "viet": iê, ươ and a final c, ch, p or t
// need marks).
bool IsUnmarkedSyllable(std::string_view lower_ascii);

// The syllable a lower-case ASCII word stands for when it is no valid syllable as written:
// the usual word for the most frequent ones (duoc được, nguoi người, viet việt), else the word
// with iê, yê, uô or ươ and, before a final c, ch, p or t, the rising tone (chieu chiêu,
// thich thích). Internal text; nothing when the word is no syllable at all.
std::optional<std::string> RepairUnmarked(std::string_view lower_ascii);

// A run of unmarked syllables written together ("dichvucong", "thanhnien"): the syllables
// (each as RepairUnmarked or as written), or nothing when the run cannot be cut that way.
std::optional<std::vector<std::string>> SplitUnmarkedRun(std::string_view lower_ascii);

} // namespace vntts
