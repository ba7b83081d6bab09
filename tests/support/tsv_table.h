// SPDX-License-Identifier: MIT
#pragma once
// Tables of test cases kept as data: tests/data/<name>.tsv, one case a line, fields separated
// by tabs, lines starting with '#' and blank lines ignored. A parametrised test reads its table
// once and runs one case per row.
#include <algorithm>
#include <cctype>
#include <fstream>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace vntts::test {

struct TsvRow {
  std::vector<std::string> fields;
  int line = 0;
  // Field i, or "" when the row is shorter (a trailing empty field may be left out).
  const std::string& operator[](std::size_t i) const {
    static const std::string kNone;
    return i < fields.size() ? fields[i] : kNone;
  }
  // Field i of a row that must have it.
  const std::string& at(std::size_t i) const { return fields.at(i); }
  std::size_t size() const { return fields.size(); }
};

// gtest prints a parameter by its first field.
inline void PrintTo(const TsvRow& row, std::ostream* os) {
  *os << row[0];
}

inline std::vector<TsvRow> ReadTsv(const std::string& name) {
  std::vector<TsvRow> rows;
  const std::string path = std::string(VNTTS_SOURCE_DIR) + "/tests/data/" + name + ".tsv";
  std::ifstream in(path);
  // A missing table would otherwise pass as a test with no cases.
  if (!in) throw std::runtime_error("cannot open " + path);
  std::string text;
  for (int line = 1; std::getline(in, text); ++line) {
    if (!text.empty() && text.back() == '\r') text.pop_back();
    if (text.empty() || text[0] == '#') continue;
    TsvRow row;
    row.line = line;
    std::size_t start = 0;
    for (;;) {
      const std::size_t tab = text.find('\t', start);
      row.fields.push_back(text.substr(start, tab - start));
      if (tab == std::string::npos) break;
      start = tab + 1;
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

// A test name made of the row's first field (letters, digits and '_' only, as gtest wants).
inline std::string TsvName(const TsvRow& row) {
  std::string name = row[0];
  for (char& c : name)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return name.empty() ? "line_" + std::to_string(row.line) : name;
}

// A field that holds a list: its parts between separators; an empty field is an empty list.
inline std::vector<std::string> SplitField(const std::string& field, char separator) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start < field.size();) {
    const std::size_t end = std::min(field.find(separator, start), field.size());
    parts.push_back(field.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

} // namespace vntts::test
