// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "archive_files.h"
#include "audio/archive/unit_archive.h"

namespace vntts {
namespace {

using testing::FakeUnit;
using testing::WriteArchiveFiles;
using testing::WriteBytes;

class UnitArchiveTest : public ::testing::Test {
protected:
  std::string stem() const { return (dir / "main_dic").string(); }
  std::string data() const { return stem() + ".dat"; }

  test::TempFolder dir;
  RecordedMessages messages;
};

// Lookups in archives of 0, 1, 3 and 4 keys (one of them 300 bytes long, with the 0xFF length
// escape), lower-casing the key as asked (b + a-grave, đ + o-circumflex in the internal encoding).
TEST_F(UnitArchiveTest, FindsEveryKeyCaseBlindAndNothingElse) {
  const std::string long_key(300, 'k');
  const struct {
    std::vector<FakeUnit> units;
    std::vector<std::pair<std::string, int>> lookups;
  } cases[] = {
      {{}, {{"a", -1}, {"", -1}}},
      {{{"ba", 0, 10}}, {{"ba", 0}, {"b", -1}, {"bab", -1}, {"a", -1}}},
      {{{"a", 0, 1}, {"b", 1, 1}, {"c", 2, 1}}, {{"c", 2}, {"b", 1}, {"a", 0}, {"bb", -1}}},
      {{{"ba", 0, 1}, {"ba\xF8", 1, 1}, {long_key, 2, 1}, {"\xF1o\xE2", 3, 1}},
       {{"BA", 0}, {"BA\xD8", 1}, {std::string(300, 'K'), 2}, {"\xD1O\xC2", 3}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.units.size());
    WriteArchiveFiles(stem(), c.units, c.units.size());
    auto records = testing::ReadBytes(stem() + ".idx");
    records.resize(records.size() + 13, 0xEE); // extra records are ignored
    WriteBytes(stem() + ".idx", records);
    UnitArchive archive(data(), messages);
    EXPECT_TRUE(archive.IsOpen());
    EXPECT_EQ(archive.Records().size(), c.units.size());
    for (const auto& [key, index] : c.lookups)
      EXPECT_EQ(archive.FindUnit(key), index) << key;
  }
  EXPECT_TRUE(messages.entries.empty());
}

TEST_F(UnitArchiveTest, MissingKeyFileIsReportedOnceThenQuiet) {
  WriteArchiveFiles(stem(), {{"a", 0, 1}}, 1);
  std::filesystem::remove(stem() + ".arr");
  UnitArchive archive(data(), messages);
  ASSERT_EQ(messages.entries.size(), 1u);
  EXPECT_EQ(messages.entries[0].text,
            "Khong tim thay file " + stem() + ".arr, nen khong the thuc hien qua trinh doc duoc.");
  EXPECT_FALSE(archive.IsOpen());
  std::vector<std::int16_t> pcm;
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(archive.FindUnit("a"), -1);
    EXPECT_FALSE(archive.GetUnit("a", pcm));
  }
  EXPECT_EQ(messages.entries.size(), 1u);
  // Without the record file, that one is named.
  WriteArchiveFiles(stem(), {{"a", 0, 1}}, 1);
  std::filesystem::remove(stem() + ".idx");
  UnitArchive no_records(data(), messages);
  ASSERT_EQ(messages.entries.size(), 2u);
  EXPECT_EQ(messages.entries[1].text, ArchiveMissingFileText(stem() + ".idx"));
}

// The companion names come from the first dot: with a dot in the folder name they are looked
// for beside the folder, and missing there, the archive fails with that path in the message.
TEST_F(UnitArchiveTest, DotInFolderNameLooksBesideTheFolder) {
  const auto folder = dir.path() / "voice.new";
  std::filesystem::create_directories(folder);
  WriteArchiveFiles((folder / "main_dic").string(), {{"a", 0, 1}}, 1);
  UnitArchive archive((folder / "main_dic.dat").string(), messages);
  EXPECT_FALSE(archive.IsOpen());
  ASSERT_EQ(messages.entries.size(), 1u);
  EXPECT_EQ(messages.entries[0].text, ArchiveMissingFileText((dir.path() / "voice.arr").string()));
}

TEST_F(UnitArchiveTest, DamagedSmallFilesFailTheArchive) {
  const std::vector<std::pair<const char*, std::function<void()>>> damage = {
      {"key count past the end",
       [&] {
         WriteBytes(stem() + ".arr", {0x05, 0x00, 0x01, 'a'});
       }},
      {"empty key file", [&] { WriteBytes(stem() + ".arr", {}); }},
      {"lying 32-bit key count",
       [&] {
         WriteBytes(stem() + ".arr", {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x0F, 0x01, 'a'});
       }},
      {"record file shorter than the keys",
       [&] {
         WriteBytes(stem() + ".idx", {0, 0, 0, 0, 1});
       }},
      {"empty record file", [&] { WriteBytes(stem() + ".idx", {}); }},
      {"key file is a folder",
       [&] {
         std::filesystem::remove(stem() + ".arr");
         std::filesystem::create_directory(stem() + ".arr");
       }},
  };
  for (const auto& [name, spoil] : damage) {
    SCOPED_TRACE(name);
    std::error_code ec;
    std::filesystem::remove_all(stem() + ".arr", ec);
    WriteArchiveFiles(stem(), {{"a", 0, 1}, {"b", 1, 1}}, 2);
    spoil();
    RecordedMessages sink;
    UnitArchive archive(data(), sink);
    EXPECT_FALSE(archive.IsOpen());
    EXPECT_EQ(sink.entries.size(), 1u);
    EXPECT_EQ(archive.FindUnit("a"), -1);
  }
}

// The data file is not reported when it is missing or empty, and records that point past it
// are refused at fetch time; the keys still answer.
TEST_F(UnitArchiveTest, FetchesGuardAgainstTheDataFile) {
  struct Case {
    const char* name;
    std::vector<FakeUnit> units;
    long data_size; // -1: no data file
  };
  const std::vector<Case> cases = {
      {"missing data file", {{"a", 0, 4}}, -1},
      {"zero-length data file", {{"a", 0, 4}}, 0},
      {"record runs past the end", {{"a", 0, 40}}, 39},
      {"offset past the end", {{"a", 100, 1}}, 50},
      {"offset + length wraps 32 bits", {{"a", 0xFFFFFFF0u, 0x20}}, 16},
      {"zero-length record", {{"a", 0, 0}}, 16},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    WriteArchiveFiles(stem(), c.units, c.data_size < 0 ? 0 : static_cast<std::size_t>(c.data_size));
    if (c.data_size < 0) std::filesystem::remove(data());
    RecordedMessages sink;
    UnitArchive archive(data(), sink);
    EXPECT_TRUE(archive.IsOpen());
    EXPECT_TRUE(sink.entries.empty());
    EXPECT_EQ(archive.FindUnit("a"), 0);
    EXPECT_TRUE(archive.Stream(0).empty());
    std::vector<std::int16_t> pcm;
    EXPECT_FALSE(archive.GetUnit("a", pcm));
    std::byte buffer[64];
    std::uint32_t length = 12345;
    EXPECT_FALSE(archive.GetUnit("a", buffer, length));
    EXPECT_EQ(length, 12345u);
  }
}

TEST_F(UnitArchiveTest, GarbageStreamIsRefused) {
  WriteArchiveFiles(stem(), {{"a", 0, 16}}, 16); // sixteen zero bytes are no MPEG audio
  UnitArchive archive(data(), messages);
  std::vector<std::int16_t> pcm;
  EXPECT_FALSE(archive.GetUnit("a", pcm));
}

} // namespace
} // namespace vntts
