// SPDX-License-Identifier: MIT
// The archive's naming rules, one case a line in tests/data/archive_names.tsv.
#include <gtest/gtest.h>

#include "audio/archive/archive_writer.h"
#include "audio/archive/recording_list.h"
#include "audio/archive/unit_archive.h"
#include "support/tsv_table.h"

namespace vntts {
namespace {

std::vector<std::uint8_t> FromHex(const std::string& hex) {
  std::vector<std::uint8_t> bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
  return bytes;
}

std::string Outcome(const test::TsvRow& row) {
  const std::string& op = row.at(1);
  const std::string& in = row[2];
  const auto yes_no = [](bool b) { return std::string(b ? "yes" : "no"); };
  if (op == "key") return KeyFromListedName(in);
  if (op == "match") return yes_no(MatchesRecordingPattern(in, row[3]));
  if (op == "frame_header") return yes_no(StartsWithFrameHeader(FromHex(in)));
  const CompanionPaths p =
      op == "build_paths" ? CreateDataCompanionPaths(in) : ArchiveCompanionPaths(in);
  if (op == "build_paths" || op == "open_paths") return p.records + " " + p.keys;
  return "unknown operation " + op;
}

class ArchiveNames : public ::testing::TestWithParam<test::TsvRow> {};

TEST_P(ArchiveNames, FollowTheRules) {
  EXPECT_EQ(Outcome(GetParam()), GetParam()[4])
      << "tests/data/archive_names.tsv:" << GetParam().line;
}

INSTANTIATE_TEST_SUITE_P(Table, ArchiveNames, ::testing::ValuesIn(test::ReadTsv("archive_names")),
                         [](const auto& param_info) { return test::TsvName(param_info.param); });

} // namespace
} // namespace vntts
