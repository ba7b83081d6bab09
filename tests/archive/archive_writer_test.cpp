// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>
#include <vector>

#include "archive_files.h"
#include "audio/archive/archive_writer.h"
#include "audio/archive/recording_list.h"
#include "audio/archive/string_list.h"
#include "audio/archive/unit_archive.h"

namespace vntts {
namespace {

using testing::ReadBytes;
using testing::ScratchDir;
using testing::WriteBytes;
using testing::WriteText;
using Bytes = std::vector<std::uint8_t>;
using Strings = std::vector<std::string>;

Strings Names(const std::vector<ListedRecording>& list) {
  Strings names;
  for (const auto& e : list)
    names.push_back(e.name);
  return names;
}

Bytes Records(std::initializer_list<std::pair<std::uint32_t, std::uint32_t>> records) {
  Bytes out;
  for (const auto& [offset, length] : records) {
    testing::AppendU32(out, offset);
    testing::AppendU32(out, length);
  }
  return out;
}

ArchiveWriteOptions Quiet() {
  ArchiveWriteOptions o;
  o.report_completion = false;
  return o;
}

class ArchiveWriterTest : public ::testing::Test {
protected:
  std::string out() const { return dir.file("Main_dic.dat"); }
  std::filesystem::path rec() const {
    std::filesystem::create_directories(dir.path() / "rec");
    return dir.path() / "rec";
  }
  void Put(const std::string& name, const Bytes& bytes) const {
    WriteBytes((rec() / name).string(), bytes);
  }

  ScratchDir dir;
  RecordedMessages messages;
};

TEST_F(ArchiveWriterTest, ListsLowerCasedSortedAndWritesThreeFiles) {
  const Bytes a(5, 0xA), b(7, 0xB), ba(11, 0xC);
  Put("ba.mp3", ba);
  Put("a.mp3", a);
  Put("B.MP3", b);
  Put("notes.txt", {1});
  const auto list = ListRecordings(rec(), 0);
  EXPECT_EQ(Names(list), (Strings{"a.mp3", "b.mp3", "ba.mp3"}));
  EXPECT_EQ(list[1].file.filename(), "B.MP3");

  const auto result = WriteArchive(list, out(), messages);
  ASSERT_TRUE(result.ok);
  EXPECT_EQ(result.units, 3u);
  EXPECT_EQ(result.data_bytes, 23u);
  ASSERT_EQ(messages.entries.size(), 1u);
  EXPECT_EQ(messages.entries[0].text, "Create data complete.");
  EXPECT_EQ(messages.entries[0].icon, MessageIcon::kInformation);

  Bytes data = a;
  data.insert(data.end(), b.begin(), b.end());
  data.insert(data.end(), ba.begin(), ba.end());
  EXPECT_EQ(ReadBytes(out()), data);
  EXPECT_EQ(ReadBytes(dir.file("Main_dic.idx")), Records({{0, 5}, {5, 7}, {12, 11}}));
  EXPECT_EQ(ReadBytes(dir.file("Main_dic.arr")), SerializeStringList(Strings{"a", "b", "ba"}));

  // The reader takes what the writer wrote.
  UnitArchive archive(out(), messages);
  EXPECT_EQ(archive.FindUnit("BA"), 2);
  EXPECT_EQ(archive.Stream(1).size(), 7u);
}

// Rebuilding the voice in place: an archive that is open keeps reading the files it mapped (a
// truncated file would kill it with SIGBUS), and one opened afterwards reads the new voice.
TEST_F(ArchiveWriterTest, AnOpenArchiveKeepsItsFilesWhenTheVoiceIsRebuilt) {
  const Bytes long_unit(20000, 0x5A);
  Put("a.mp3", long_unit);
  Put("b.mp3", long_unit);
  ASSERT_TRUE(WriteArchive(ListRecordings(rec(), 0), out(), messages).ok);
  UnitArchive open(out(), messages);
  Put("a.mp3", {1});
  Put("b.mp3", {2});
  ASSERT_TRUE(WriteArchive(ListRecordings(rec(), 0), out(), messages).ok);
  const auto old_b = open.Stream(1);
  EXPECT_EQ(Bytes(old_b.begin(), old_b.end()), long_unit);
  UnitArchive rebuilt(out(), messages);
  EXPECT_EQ(rebuilt.Stream(1).size(), 1u);
  EXPECT_FALSE(std::filesystem::exists(out() + ".new")) << "no temporary left behind";
}

TEST_F(ArchiveWriterTest, TaggedRecordingsLoseTheirTag) {
  Bytes tagged(200, 0x55);
  tagged[72] = 'T', tagged[73] = 'A', tagged[74] = 'G';
  Bytes only_tag(128, 0x20);
  only_tag[0] = 'T', only_tag[1] = 'A', only_tag[2] = 'G';
  Put("a.mp3", tagged);
  Put("b.mp3", only_tag);
  Put("c.mp3", {9, 9});
  ASSERT_TRUE(WriteArchive(ListRecordings(rec(), 0), out(), messages, Quiet()).ok);
  EXPECT_EQ(ReadBytes(dir.file("Main_dic.idx")), Records({{0, 72}, {72, 0}, {72, 2}}));
  EXPECT_EQ(ReadBytes(out()).size(), 74u);
  EXPECT_EQ(ReadBytes(dir.file("Main_dic.arr")), SerializeStringList(Strings{"a", "b", "c"}));
}

TEST_F(ArchiveWriterTest, AllFilesTypeListsDotsAndFoldersAndCutsFourCharacters) {
  Put("x.mpeg", {1});
  Put("ab", {2});
  std::filesystem::create_directory(rec() / "sub");
  const auto list = ListRecordings(rec(), 2);
  EXPECT_EQ(Names(list), (Strings{".", "..", "ab", "sub", "x.mpeg"}));
  EXPECT_EQ(KeyFromListedName(list[4].name), "x.");
  // Mapping "." fails: the build stops and names the entry; nothing is reported as complete.
  const auto result = WriteArchive(list, out(), messages);
  EXPECT_FALSE(result.ok);
  ASSERT_EQ(messages.entries.size(), 1u);
  EXPECT_NE(messages.entries[0].text.find("Cannot read"), std::string::npos);
}

TEST_F(ArchiveWriterTest, NothingToWriteOrNowhereToWriteIsReported) {
  EXPECT_FALSE(WriteArchive({}, out(), messages).ok);
  EXPECT_FALSE(std::filesystem::exists(out()));
  EXPECT_TRUE(ListRecordings(dir.path() / "no-such-folder", 0).empty());
  Put("a.mp3", {1});
  EXPECT_FALSE(
      WriteArchive(ListRecordings(rec(), 0), dir.file("missing/Main_dic.dat"), messages).ok);
  ASSERT_EQ(messages.entries.size(), 2u);
  EXPECT_EQ(messages.entries[0].text, "No file in listbox");
  EXPECT_NE(messages.entries[1].text.find("missing/Main_dic.dat"), std::string::npos);
}

TEST_F(ArchiveWriterTest, UnusableRecordingsStopTheBuildOrAreSkipped) {
  Put("a.mp3", {1, 2, 3});
  Put("b.mp3", {});
  Put("c.mp3", {4});
  const auto list = ListRecordings(rec(), 0);
  const auto strict = WriteArchive(list, out(), messages, Quiet());
  EXPECT_FALSE(strict.ok);
  ASSERT_EQ(messages.entries.size(), 1u);
  EXPECT_NE(messages.entries[0].text.find("b.mp3"), std::string::npos);

  ArchiveWriteOptions tolerant = Quiet();
  tolerant.skip_unusable = true;
  std::vector<std::size_t> progress;
  tolerant.progress = [&](std::size_t done, std::size_t total) {
    EXPECT_EQ(total, 3u);
    progress.push_back(done);
  };
  const auto result = WriteArchive(list, out(), messages, tolerant);
  ASSERT_TRUE(result.ok);
  EXPECT_EQ(result.units, 2u);
  ASSERT_EQ(result.skipped.size(), 1u);
  EXPECT_EQ(result.skipped[0].name, "b.mp3");
  EXPECT_EQ(progress, (std::vector<std::size_t>{1, 2, 3}));
  EXPECT_EQ(ReadBytes(dir.file("Main_dic.arr")), SerializeStringList(Strings{"a", "c"}));
  EXPECT_EQ(ReadBytes(dir.file("Main_dic.idx")), Records({{0, 3}, {3, 1}}));
}

TEST_F(ArchiveWriterTest, Utf8NamesBecomeInternalKeys) {
  Put("việt.mp3", {1});
  Put("Đông.mp3", {2});
  Put("ba.mp3", {3});
  const auto list = ListRecordings(rec(), 0);
  // việt = 76 69 65 E4 74, đông = F1 6F E2 6E 67 (upper case Đ lowered to đ)
  EXPECT_EQ(Names(list), (Strings{"ba.mp3", "vi\x65\xE4t.mp3", "\xF1o\xE2ng.mp3"}));
  EXPECT_EQ(list[2].file.filename(), "Đông.mp3");
  ASSERT_TRUE(WriteArchive(list, out(), messages, Quiet()).ok);
  UnitArchive archive(out(), messages);
  EXPECT_EQ(archive.FindUnit("vi\x65\xE4t"), 1);
  EXPECT_EQ(archive.FindUnit("\xD1O\xC2NG"), 2);
  EXPECT_EQ(archive.Stream(2).front(), 2);
}

TEST_F(ArchiveWriterTest, ListOrderIsKeptAndSortListByKeyRepairsIt) {
  Put("a.mp3", {1});
  Put("a-b.mp3", {2});
  Put("b.mp3", {3});
  const auto list = ListRecordings(rec(), 0);
  ASSERT_TRUE(WriteArchive(list, out(), messages, Quiet()).ok);
  // Written in listing order: a-b before a, so the reader's search misses "a-b".
  EXPECT_EQ(ReadBytes(dir.file("Main_dic.arr")), SerializeStringList(Strings{"a-b", "a", "b"}));
  {
    UnitArchive archive(out(), messages);
    EXPECT_EQ(archive.FindUnit("a-b"), -1);
    EXPECT_EQ(archive.FindUnit("a"), 1);
  }
  std::vector<SkippedRecording> skipped;
  const auto sorted = SortListByKey(list, skipped);
  EXPECT_EQ(Names(sorted), (Strings{"a.mp3", "a-b.mp3", "b.mp3"}));
  EXPECT_TRUE(skipped.empty());
  ASSERT_TRUE(WriteArchive(sorted, out(), messages, Quiet()).ok);
  UnitArchive archive(out(), messages);
  EXPECT_EQ(archive.FindUnit("a"), 0);
  EXPECT_EQ(archive.FindUnit("a-b"), 1);
}

TEST(SortListByKey, DropsEmptyAndRepeatedKeys) {
  const std::vector<ListedRecording> list = {
      {"a.mp3", "a.mp3"}, {"a.wav", "a.wav"}, {"ab", "ab"}, {"c.mp3", "c.mp3"}};
  std::vector<SkippedRecording> skipped;
  const auto sorted = SortListByKey(list, skipped);
  EXPECT_EQ(Names(sorted), (Strings{"a.mp3", "c.mp3"}));
  ASSERT_EQ(skipped.size(), 2u);
  EXPECT_EQ(skipped[0].name, "ab");
  EXPECT_EQ(skipped[1].name, "a.wav");
}

} // namespace
} // namespace vntts

namespace vntts {
namespace {

TEST(RecordingChecks, Id3v2TagSize) {
  const Bytes mpeg2_l3 = {0xFF, 0xF3, 0x48, 0xC4};
  Bytes tag = {'I', 'D', '3', 4, 0, 0, 0, 0, 0x01, 0x02}; // body of 130 bytes
  EXPECT_EQ(Id3v2Size(tag), 10u);                         // cut to what is there
  tag.resize(140, 0);
  EXPECT_EQ(Id3v2Size(tag), 140u);
  tag[5] = 0x10; // with a footer
  tag.resize(200, 0);
  EXPECT_EQ(Id3v2Size(tag), 150u);
  tag[9] = 0x80; // not synchsafe: no tag
  EXPECT_EQ(Id3v2Size(tag), 0u);
  EXPECT_EQ(Id3v2Size(mpeg2_l3), 0u);
}

TEST(RecordingChecks, WriterStripsTagsAndRefusesNonAudioWhenAsked) {
  testing::ScratchDir dir;
  const auto rec = dir.path() / "rec";
  std::filesystem::create_directories(rec);
  Bytes tagged = {'I', 'D', '3', 3, 0, 0, 0, 0, 0, 2, 0xAA, 0xBB, 0xFF, 0xF3, 0x48, 0xC4, 7};
  testing::WriteBytes((rec / "a.mp3").string(), tagged);
  testing::WriteBytes((rec / "b.mp3").string(), {'R', 'I', 'F', 'F', 0, 0});
  ArchiveWriteOptions options;
  options.skip_unusable = options.strip_id3v2 = options.require_frame_header = true;
  options.report_completion = false;
  RecordedMessages messages;
  const auto result = WriteArchive(ListRecordings(rec, 0), dir.file("v.dat"), messages, options);
  ASSERT_TRUE(result.ok);
  EXPECT_EQ(result.units, 1u);
  EXPECT_EQ(result.stripped_tags, 1u);
  ASSERT_EQ(result.skipped.size(), 1u);
  EXPECT_EQ(result.skipped[0].name, "b.mp3");
  EXPECT_EQ(testing::ReadBytes(dir.file("v.dat")), (Bytes{0xFF, 0xF3, 0x48, 0xC4, 7}));
}

} // namespace
} // namespace vntts
