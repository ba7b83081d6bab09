// SPDX-License-Identifier: MIT
#pragma once
// The lexical pieces of speech markup: tags with their attributes, comments, processing
// instructions, CDATA sections and character references. Each reader looks at the text from a
// given place and either recognises a whole well-formed construct or nothing; the markup
// reader then takes the '<' or '&' as plain text.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vntts {

struct MarkupTag {
  enum class Kind { kStart, kEnd, kEmpty, kComment, kInstruction, kDeclaration, kCData };
  Kind kind = Kind::kStart;
  std::string name;                                            // kStart, kEnd, kEmpty
  std::vector<std::pair<std::string, std::string>> attributes; // values with entities decoded
  std::string_view content;                                    // kCData: the characters inside
  std::size_t end = 0;                                         // offset just past the construct

  // The value of attribute `key`, or null.
  const std::string* Attribute(std::string_view key) const;
};

// Finds the next occurrence of a fixed string, remembering the answer, so that many unclosed
// comments in one text cost one search instead of one each.
class CachedFind {
public:
  explicit CachedFind(std::string_view needle) : needle_(needle) {}
  std::size_t From(std::string_view text, std::size_t pos);

private:
  std::string_view needle_;
  std::size_t from_ = 0, found_ = 0;
  bool valid_ = false;
};

struct TagFinders {
  CachedFind comment_end{"-->"};
  CachedFind instruction_end{"?>"};
  CachedFind cdata_end{"]]>"};
};

// The construct that starts with the '<' at `pos`, or nothing.
std::optional<MarkupTag> ReadTag(std::string_view text, std::size_t pos, TagFinders& finders);

// The character reference that starts with the '&' at `pos` (&amp; &lt; &gt; &quot; &apos;,
// &#N; and &#xH;): its UTF-8 form and the offset just past it, or nothing.
std::optional<std::pair<std::string, std::size_t>> ReadEntity(std::string_view text,
                                                              std::size_t pos);

} // namespace vntts
