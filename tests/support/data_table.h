// SPDX-License-Identifier: MIT
#pragma once
// Reads a test table from tests/data/<name>: tab-separated fields, one case a line; lines that
// are empty or start with '#' are comments.
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace vntts::test {

using DataRow = std::vector<std::string>;

inline std::vector<DataRow> ReadDataTable(const std::string& name) {
  const std::string path = std::string(VNTTS_SOURCE_DIR) + "/tests/data/" + name;
  std::ifstream in(path);
  if (!in) throw std::runtime_error("cannot open " + path);
  std::vector<DataRow> rows;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == '#') continue;
    DataRow row;
    std::stringstream fields(line);
    std::string field;
    while (std::getline(fields, field, '\t'))
      row.push_back(field);
    rows.push_back(std::move(row));
  }
  return rows;
}

} // namespace vntts::test
