// SPDX-License-Identifier: MIT
#include "module_config.h"

#include <fstream>
#include <sstream>

namespace vntts::speechd {
namespace {

std::string_view Trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
    s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r'))
    s.remove_suffix(1);
  return s;
}

} // namespace

ModuleConfig ReadModuleConfig(std::string_view text) {
  ModuleConfig config;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = Trim(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty() || line.front() == '#') continue;
    const std::size_t gap = line.find_first_of(" \t");
    if (gap == std::string_view::npos) continue;
    const std::string_view name = line.substr(0, gap);
    std::string_view value = Trim(line.substr(gap));
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
      value = value.substr(1, value.size() - 2);
    if (name == "VnttsDataDirectory") config.data_directory = value;
  }
  return config;
}

std::optional<ModuleConfig> LoadModuleConfig(const std::string& path) {
  std::ifstream in(path);
  if (!in) return std::nullopt;
  std::stringstream text;
  text << in.rdbuf();
  return ReadModuleConfig(text.str());
}

} // namespace vntts::speechd
