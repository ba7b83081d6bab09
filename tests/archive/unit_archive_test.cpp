#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "archive_files.h"
#include "audio/archive/unit_archive.h"

namespace vntts {
namespace {

using testing::FakeUnit;
using testing::ScratchDir;
using testing::WriteArchiveFiles;
using testing::WriteBytes;

TEST(ArchivePaths, CutAtTheFirstDotFromIndexTwo) {
  const struct {
    const char* data;
    const char* idx;
    const char* arr;
  } cases[] = {
      {R"(D:\tts\index\main_dic.dat)", R"(D:\tts\index\main_dic.idx)",
       R"(D:\tts\index\main_dic.arr)"},
      {R"(X:\a.b\index\main_dic.dat)", R"(X:\a.idx)", R"(X:\a.arr)"},
      {R"(C:\voice.new\index\main_dic.dat)", R"(C:\voice.idx)", R"(C:\voice.arr)"},
      {"/opt/vntts/index/main_dic.dat", "/opt/vntts/index/main_dic.idx",
       "/opt/vntts/index/main_dic.arr"},
      {"/home/u/.local/index/main_dic.dat", "/home/u/.idx", "/home/u/.arr"},
      {"/proc/self/fd/7/main_dic.dat", "/proc/self/fd/7/main_dic.idx",
       "/proc/self/fd/7/main_dic.arr"},
      {"./index/main_dic.dat", "./index/main_dic.idx", "./index/main_dic.arr"}, // dot at index 0
      {"a.b", ".idx", ".arr"},                                                  // dot at index 1
      {"/index/main_dic", ".idx", ".arr"},                                      // no dot at all
      {"", ".idx", ".arr"},
      {"voice.data", "voice.idx", "voice.arr"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.data);
    const auto p = ArchiveCompanionPaths(c.data);
    EXPECT_EQ(p.records, c.idx);
    EXPECT_EQ(p.keys, c.arr);
  }
}

class UnitArchiveTest : public ::testing::Test {
protected:
  std::string stem() const { return dir.file("main_dic"); }
  std::string data() const { return stem() + ".dat"; }

  ScratchDir dir;
  RecordedMessages messages;
};

TEST_F(UnitArchiveTest, NoKeysOpensAndFindsNothing) {
  WriteArchiveFiles(stem(), {}, 0);
  UnitArchive archive(data(), messages);
  EXPECT_TRUE(archive.IsOpen());
  EXPECT_TRUE(messages.entries.empty());
  EXPECT_EQ(archive.FindUnit("a"), -1);
  EXPECT_EQ(archive.FindUnit(""), -1);
  std::vector<std::int16_t> pcm;
  EXPECT_FALSE(archive.GetUnit("a", pcm));
}

TEST_F(UnitArchiveTest, OneKeyIsFoundAtZeroAndNothingElse) {
  WriteArchiveFiles(stem(), {{"ba", 0, 10}}, 10);
  UnitArchive archive(data(), messages);
  EXPECT_EQ(archive.FindUnit("ba"), 0);
  EXPECT_EQ(archive.FindUnit("b"), -1);
  EXPECT_EQ(archive.FindUnit("bab"), -1);
  EXPECT_EQ(archive.FindUnit("a"), -1);
}

TEST_F(UnitArchiveTest, LookupsLowerCaseTheKey) {
  // b + a-grave and its upper-case form in the internal encoding
  WriteArchiveFiles(stem(), {{"ba", 0, 1}, {"ba\xF8", 1, 1}, {"\xF1o\xE2", 2, 1}}, 3);
  UnitArchive archive(data(), messages);
  EXPECT_EQ(archive.FindUnit("Ba"), archive.FindUnit("ba"));
  EXPECT_EQ(archive.FindUnit("BA"), 0);
  EXPECT_EQ(archive.FindUnit("BA\xD8"), 1);
  EXPECT_EQ(archive.FindUnit("\xD1O\xC2"), 2);
}

TEST_F(UnitArchiveTest, ThreeKeys) {
  WriteArchiveFiles(stem(), {{"a", 0, 1}, {"b", 1, 1}, {"c", 2, 1}}, 3);
  UnitArchive archive(data(), messages);
  EXPECT_EQ(archive.FindUnit("c"), 2);
  EXPECT_EQ(archive.FindUnit("b"), 1);
  EXPECT_EQ(archive.FindUnit("a"), 0);
  EXPECT_EQ(archive.FindUnit("bb"), -1);
  ASSERT_EQ(archive.records().size(), 3u);
  EXPECT_EQ(archive.records()[2].offset, 2u);
  EXPECT_EQ(archive.Stream(1).size(), 1u);
}

TEST_F(UnitArchiveTest, A300ByteKeyIsFound) {
  const std::string long_key(300, 'k');
  WriteArchiveFiles(stem(), {{"a", 0, 1}, {long_key, 1, 1}}, 2);
  UnitArchive archive(data(), messages);
  EXPECT_EQ(archive.FindUnit(long_key), 1);
  EXPECT_EQ(archive.FindUnit(std::string(300, 'K')), 1);
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
}

TEST_F(UnitArchiveTest, MissingRecordFileIsReportedByItsName) {
  WriteArchiveFiles(stem(), {{"a", 0, 1}}, 1);
  std::filesystem::remove(stem() + ".idx");
  UnitArchive archive(data(), messages);
  ASSERT_EQ(messages.entries.size(), 1u);
  EXPECT_EQ(messages.entries[0].text, ArchiveMissingFileText(stem() + ".idx"));
  EXPECT_EQ(archive.FindUnit("a"), -1);
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

TEST_F(UnitArchiveTest, ExtraRecordsAreIgnored) {
  WriteArchiveFiles(stem(), {{"a", 0, 1}}, 1);
  auto records = testing::ReadBytes(stem() + ".idx");
  records.resize(records.size() + 13, 0xEE);
  WriteBytes(stem() + ".idx", records);
  UnitArchive archive(data(), messages);
  EXPECT_TRUE(archive.IsOpen());
  EXPECT_EQ(archive.records().size(), 1u);
  EXPECT_TRUE(messages.entries.empty());
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

namespace vntts {
namespace {

// A key file whose count uses the 0xFFFF escape (a writer may use it for any count) opens like
// any other.
TEST(UnitArchiveEscapes, EscapedCountAndLongKeyInTheKeyFile) {
  testing::ScratchDir dir;
  const std::string stem = dir.file("main_dic");
  testing::WriteArchiveFiles(stem, {{"a", 0, 1}, {"b", 1, 1}, {"c", 2, 1}}, 3);
  // Built in one piece: GCC 12 misreads insert() at the end of a short vector as out of bounds.
  std::vector<std::uint8_t> keys(10 + 3 + 300, 'c');
  const std::uint8_t head[] = {0xFF, 0xFF, 0x03, 0x00, 0x00, 0x00, 1,
                               'a',  1,    'b',  0xFF, 0x2C, 0x01};
  std::copy(std::begin(head), std::end(head), keys.begin());
  testing::WriteBytes(stem + ".arr", keys);
  RecordedMessages messages;
  UnitArchive archive(stem + ".dat", messages);
  ASSERT_TRUE(archive.IsOpen());
  EXPECT_EQ(archive.keys().size(), 3u);
  EXPECT_EQ(archive.FindUnit(std::string(300, 'C')), 2);
  EXPECT_EQ(archive.FindUnit("b"), 1);
  EXPECT_EQ(archive.FindUnit("c"), -1);
}

} // namespace
} // namespace vntts
