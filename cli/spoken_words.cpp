// SPDX-License-Identifier: MIT
#include "spoken_words.h"

#include <string>

#include "text/charset/charsets.h"

namespace vntts::cli {
namespace {

constexpr std::size_t kBlockBytes = 1 << 18;

std::string MarkName(int mark) {
  if (mark >= 0x40 && mark <= 0x50) return std::string(1, static_cast<char>(mark));
  return "-";
}

} // namespace

SpokenWords::SpokenWords(const std::optional<std::filesystem::path>& folder, Messages& messages) {
  if (!folder) return;
  folder_.emplace(*folder);
  const auto& path = folder_->path();
  std::error_code ec;
  if (std::filesystem::is_directory(path / "Define", ec) &&
      definitions_.LoadFolder(path / "Define").ok)
    stores_.definitions = &definitions_;
  if (std::filesystem::is_regular_file(path / "AutoCrt.crt", ec) &&
      auto_correct_.Load(path / "AutoCrt.crt").ok)
    stores_.auto_correct = &auto_correct_;
  // The voice decides, as it does when speaking, whether a word is said or spelled (a word
  // the archive lacks may still be said through a spelling variant or a two-syllable split).
  if (std::filesystem::is_regular_file(path / "main_dic.dat", ec)) {
    units_.emplace(folder_->FilePath("main_dic.dat"), messages);
    renderer_.emplace(*units_);
    stores_.speakable = &*renderer_;
  }
}

bool SpokenWords::Write(std::string_view internal, bool marks, std::FILE* out) const {
  // Lines are gathered in internal text and converted in large blocks by one stream, which
  // converts each distinct word once for the whole output.
  SentenceParser parser(internal, stores_, PhraseTexts::kSkip);
  Sentence sentence;
  std::string block;
  InternalToUtf8Stream to_utf8;
  bool ok = true;
  auto flush = [&] {
    const std::string utf8 = to_utf8.Convert(block);
    ok = ok && std::fwrite(utf8.data(), 1, utf8.size(), out) == utf8.size();
    block.clear();
  };
  while (parser.Next(sentence)) {
    if (sentence.words.empty()) continue;
    bool first = true;
    for (const SpokenWord& w : sentence.words) {
      if (!first) block += ' ';
      first = false;
      block += w.word;
      if (marks) {
        block += '/';
        block += MarkName(w.mark);
      }
    }
    block += '\n';
    if (block.size() >= kBlockBytes) flush();
  }
  flush();
  return std::fflush(out) == 0 && ok;
}

} // namespace vntts::cli
