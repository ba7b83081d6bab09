// SPDX-License-Identifier: MIT
#pragma once
// The second step of the sentence walk: the words of one piece, read as a newsreader reads it.
// The reading depends on the piece, on its neighbours in the sentence (a dash between two
// numbers, a unit after one) and on the words before it (a telephone label, a date, a score).
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "text/reading_cache.h"
#include "text/sentence_parser.h"

namespace vntts {

// Where a piece stands: the texts of the pieces of its sentence (or the tokens of a piece
// taken apart) and its own index among them.
struct PieceContext {
  std::span<const std::string_view> pieces;
  std::size_t index = 0;
  bool list_marker = false;
  bool phone_run = false;

  std::string_view Before(std::size_t n = 1) const {
    return index >= n && index - n < pieces.size() ? pieces[index - n] : std::string_view();
  }
  std::string_view After(std::size_t n = 1) const {
    return index + n < pieces.size() ? pieces[index + n] : std::string_view();
  }
  // The piece before ends in a digit ("5 km"); the piece after starts with one ("5 - 3").
  bool AfterNumber() const {
    return index > 0 && index <= pieces.size() && !pieces[index - 1].empty() &&
           pieces[index - 1].back() >= '0' && pieces[index - 1].back() <= '9';
  }
  bool BeforeNumber() const {
    return index + 1 < pieces.size() && !pieces[index + 1].empty() &&
           pieces[index + 1].front() >= '0' && pieces[index + 1].front() <= '9';
  }
};

// The words of one piece go to the end of a list shared by the whole sentence.
struct PieceWords {
  std::vector<std::string>& words;
  int mark = '@';
  bool from_definition = false;
};

class PieceReader {
public:
  PieceReader(const FrontEndStores& stores, std::string& previous_word, ReadingCache& cache)
      : stores_(stores), previous_word_(previous_word), cache_(cache) {}

  void Read(std::string_view piece, const PieceContext& ctx, int depth, PieceWords& out);

  // A new sentence starts: what was read in the last one no longer counts, except a score
  // that the sentence before announced and a comma or colon continues ("thắng 6-4, 7-5",
  // "Kết quả: Việt Nam 1-0 Indonesia").
  void StartSentence(bool score_carried = false) {
    saw_date_ = false;
    score_carried_ = score_carried;
    score_read_ = false;
  }
  // A score was read, or announced and not yet read, in this sentence.
  bool ScoreRead() const { return score_read_; }

private:
  void ReadInline(std::string_view text, int depth, PieceWords& out);
  // Reads an entry's replacement in place of the piece; while it is read, the same entry is not
  // expanded again, so an entry whose replacement repeats its own key cannot multiply.
  void ReadReplacement(std::string_view key, std::string_view text, int depth, PieceWords& out);
  bool Expanding(std::string_view piece) const;
  std::optional<std::string> FindDefinition(std::string_view piece) const;
  bool Speakable(const std::string& lower) const;
  int ReadUndefined(std::string_view piece, const PieceContext& ctx, int depth, PieceWords& out);
  int ReadLetters(std::string_view piece, const PieceContext& ctx, int depth, PieceWords& out);
  bool ReadWord(std::string_view word, int depth, PieceWords& out);
  bool ReadForeign(std::string_view piece, int depth, PieceWords& out);
  bool ReplaceByAutoCorrect(std::string_view piece, int depth, PieceWords& out);
  bool ReadTelephone(std::string_view piece, const PieceContext& ctx, PieceWords& out);
  bool ReadDash(std::string_view piece, const PieceContext& ctx, PieceWords& out);
  bool ReadScore(std::string_view piece, const PieceContext& ctx, PieceWords& out);
  bool ReadDocument(std::string_view piece, const PieceContext& ctx, int depth, PieceWords& out);
  bool ReadCode(std::string_view code, int depth, PieceWords& out);
  bool ReadPercentPer(std::string_view piece, int depth, PieceWords& out);
  bool ReadGenerationOrPicture(std::string_view piece, PieceWords& out);
  bool ReadSpanOfYears(std::string_view piece, PieceWords& out);
  bool ReadDashedDayMonth(std::string_view piece, const PieceContext& ctx, PieceWords& out);
  bool ReadAmountWithRest(std::string_view piece, PieceWords& out);
  bool ReadDecimalOverDecimal(std::string_view piece, PieceWords& out);
  bool ReadDrawnOut(std::string_view piece, const PieceContext& ctx, int depth, PieceWords& out);
  bool ReadSeason(std::string_view piece, PieceWords& out);
  bool ReadVehicleCode(std::string_view piece, PieceWords& out);
  bool ReadVersion(std::string_view piece, PieceWords& out);
  bool ReadGrams(std::string_view piece, const PieceContext& ctx, PieceWords& out);
  bool ReadNumberColonNumber(std::string_view piece, PieceWords& out);
  bool ReadDayMonth(std::string_view piece, const PieceContext& ctx, PieceWords& out);
  bool ReadNumberAndDefinition(std::string_view piece, int depth, PieceWords& out);
  bool ReadDottedGroups(std::string_view piece, PieceWords& out);
  bool ReadPeriodAndYear(std::string_view piece, const PieceContext& ctx, PieceWords& out);
  bool ReadDashedRange(std::string_view piece, int depth, PieceWords& out);
  bool ReadRangeSide(std::string_view side, int depth, PieceWords& out);
  void ReadWebAddress(std::string_view piece, int depth, PieceWords& out);
  void ReadSlashed(std::string_view piece, int depth, PieceWords& out);
  void ReadCompound(std::string_view piece, int depth, PieceWords& out,
                    bool digit_by_digit = false);
  void ReadTokens(std::string_view piece, int depth, PieceWords& out);
  bool IsScoreWithoutWord(std::string_view left, std::string_view right, const PieceContext& ctx,
                          std::size_t from) const;
  bool IsScoreContext(const PieceContext& ctx, std::size_t from) const;
  void Remember(std::string_view piece, int mark);

  const FrontEndStores& stores_;
  std::string& previous_word_;
  ReadingCache& cache_;
  // Set when a definition or an auto-correct pair took part in the reading under way.
  bool stores_answered_ = false;
  // The keys (lower-cased) of the store entries whose replacements are being read.
  std::vector<std::string> expanding_;
  // A date was read earlier in this sentence ("từ 15/6 đến 20/7", "ngày 2/9 và 3/9").
  bool saw_date_ = false;
  bool score_carried_ = false;
  bool score_read_ = false;
};

// Appends the words of a reading (internal text, words with their own blanks); a word of input
// letters that no Vietnamese reader would take for a syllable ("www", "vn") is spelled.
void AddReading(std::string_view reading, std::vector<std::string>& words);

} // namespace vntts
