// SPDX-License-Identifier: MIT
#pragma once
// Reads a table of test cases from tests/data/<name>.tsv: one case a line, fields separated by
// tabs, lines starting with '#' and empty lines skipped. In a field, \n, \t, \\ and \uXXXX (a
// UTF-16 unit, written as UTF-8) stand for what they name, so invisible characters stay
// readable.
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace vntts::test {

struct TsvRow {
  int line = 0;
  std::vector<std::string> fields;
};

inline void AppendUtf8(std::string& out, unsigned unit) {
  if (unit < 0x80) {
    out += static_cast<char>(unit);
  } else if (unit < 0x800) {
    out += static_cast<char>(0xC0 | (unit >> 6));
    out += static_cast<char>(0x80 | (unit & 0x3F));
  } else if (unit < 0x10000) {
    out += static_cast<char>(0xE0 | (unit >> 12));
    out += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (unit & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (unit >> 18));
    out += static_cast<char>(0x80 | ((unit >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((unit >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (unit & 0x3F));
  }
}

inline std::string UnescapeTsvField(const std::string& field) {
  std::string out;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] != '\\' || i + 1 == field.size()) {
      out += field[i];
      continue;
    }
    const char kind = field[++i];
    if (kind == 'n')
      out += '\n';
    else if (kind == 't')
      out += '\t';
    else if (kind == 'u' && i + 4 < field.size()) {
      unsigned unit = static_cast<unsigned>(std::stoul(field.substr(i + 1, 4), nullptr, 16));
      i += 4;
      // A surrogate pair written as two escapes is one character.
      if (unit >= 0xD800 && unit <= 0xDBFF && field.compare(i + 1, 2, "\\u") == 0) {
        const auto low = static_cast<unsigned>(std::stoul(field.substr(i + 3, 4), nullptr, 16));
        unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        i += 6;
      }
      AppendUtf8(out, unit);
    } else
      out += kind;
  }
  return out;
}

inline std::vector<TsvRow> ReadTsv(const std::string& name) {
  const std::string path = std::string(VNTTS_SOURCE_DIR) + "/tests/data/" + name + ".tsv";
  std::ifstream in(path);
  if (!in) throw std::runtime_error("cannot read " + path);
  std::vector<TsvRow> rows;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (line.empty() || line[0] == '#') continue;
    TsvRow row{number, {}};
    std::size_t from = 0;
    for (std::size_t tab; (tab = line.find('\t', from)) != std::string::npos; from = tab + 1)
      row.fields.push_back(UnescapeTsvField(line.substr(from, tab - from)));
    row.fields.push_back(UnescapeTsvField(line.substr(from)));
    rows.push_back(std::move(row));
  }
  return rows;
}

} // namespace vntts::test
