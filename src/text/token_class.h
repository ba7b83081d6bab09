// SPDX-License-Identifier: MIT
#pragma once
// Token classes: letter codes as the segment stores them.
namespace vntts::token_class {

inline constexpr int kWord = '@';   // letters only, spoken as it stands
inline constexpr int kNumber = 'A'; // digits with single '.', ',' or '/' between digits
inline constexpr int kDate = 'B';
inline constexpr int kDriverNumber = 'C'; // a number marked by the sentence walk
inline constexpr int kAmount = 'D';       // currency sign or digits, then letters
inline constexpr int kSlashedWords = 'E'; // letters with single '/' between them
inline constexpr int kCompound = 'F';     // definition lookup, then piece by piece
inline constexpr int kTime = 'G';
inline constexpr int kOver = 'H';       // read with "trên"
inline constexpr int kRestOfText = 'I'; // the next scan returns everything left
inline constexpr int kSymbol = 'J';
inline constexpr int kExpression = 'K';
inline constexpr int kAddress = 'L';
inline constexpr int kRange = 'M';
inline constexpr int kTelephone = 'N';
inline constexpr int kMeasure = 'O';
inline constexpr int kSpelled = 'P'; // marked by the sentence walk
inline constexpr int kNone = 255;

} // namespace vntts::token_class
