// SPDX-License-Identifier: MIT
// Building a voice from a folder of recordings. The Create data page's tests cover the plain
// listing, ID3v1 tags, the all-files type and the empty list through the dialog; these cover
// what the voice generator and a rebuilt voice need.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "archive_files.h"
#include "audio/archive/archive_writer.h"
#include "audio/archive/recording_list.h"
#include "audio/archive/string_list.h"
#include "audio/archive/unit_archive.h"

namespace vntts {
namespace {

using testing::Bytes;
using testing::ReadBytes;
using Strings = std::vector<std::string>;

Strings Names(const std::vector<ListedRecording>& list) {
  Strings names;
  for (const auto& e : list)
    names.push_back(e.name);
  return names;
}

ArchiveWriteOptions Quiet() {
  ArchiveWriteOptions o;
  o.report_completion = false;
  return o;
}

class ArchiveWriterTest : public ::testing::Test {
protected:
  std::string out() const { return (dir / "Main_dic.dat").string(); }
  std::string file(const char* name) const { return (dir / name).string(); }
  std::filesystem::path rec() const {
    std::filesystem::create_directories(dir / "rec");
    return dir / "rec";
  }
  void Put(const std::string& name, const Bytes& bytes) const {
    testing::WriteBytes((rec() / name).string(), bytes);
  }

  test::TempFolder dir;
  RecordedMessages messages;
};

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

TEST_F(ArchiveWriterTest, UnusableRecordingsStopTheBuildOrAreSkipped) {
  Put("a.mp3", {1, 2, 3});
  Put("b.mp3", {});
  Put("c.mp3", {4});
  const auto list = ListRecordings(rec(), 0);
  EXPECT_FALSE(WriteArchive(list, file("missing/Main_dic.dat"), messages).ok);
  EXPECT_FALSE(WriteArchive(list, out(), messages, Quiet()).ok);
  ASSERT_EQ(messages.entries.size(), 2u);
  EXPECT_NE(messages.entries[0].text.find("missing/Main_dic.dat"), std::string::npos);
  EXPECT_NE(messages.entries[1].text.find("b.mp3"), std::string::npos);

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
  EXPECT_EQ(ReadBytes(file("Main_dic.arr")), SerializeStringList(Strings{"a", "c"}));
  EXPECT_EQ(ReadBytes(file("Main_dic.idx")), testing::RecordBytes({{"a", 0, 3}, {"c", 3, 1}}));
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

// Sorting by the full name puts a-b.mp3 before a.mp3 ('-' < '.') while the keys sort the other
// way: the listing order is written as it is, and the reader's search then misses "a-b".
TEST_F(ArchiveWriterTest, ListOrderIsKeptAndSortListByKeyRepairsIt) {
  Put("a.mp3", {1});
  Put("a-b.mp3", {2});
  Put("b.mp3", {3});
  const auto list = ListRecordings(rec(), 0);
  ASSERT_TRUE(WriteArchive(list, out(), messages, Quiet()).ok);
  EXPECT_EQ(ReadBytes(file("Main_dic.arr")), SerializeStringList(Strings{"a-b", "a", "b"}));
  {
    UnitArchive archive(out(), messages);
    EXPECT_EQ(archive.FindUnit("a-b"), -1);
    EXPECT_EQ(archive.FindUnit("a"), 1);
  }
  std::vector<SkippedRecording> skipped;
  ASSERT_TRUE(WriteArchive(SortListByKey(list, skipped), out(), messages, Quiet()).ok);
  EXPECT_TRUE(skipped.empty());
  UnitArchive archive(out(), messages);
  EXPECT_EQ(archive.FindUnit("a"), 0);
  EXPECT_EQ(archive.FindUnit("a-b"), 1);
}

TEST(SortListByKey, DropsEmptyAndRepeatedKeys) {
  const std::vector<ListedRecording> list = {
      {"a.mp3", "a.mp3"}, {"a.wav", "a.wav"}, {"ab", "ab"}, {"c.mp3", "c.mp3"}};
  std::vector<SkippedRecording> skipped;
  EXPECT_EQ(Names(SortListByKey(list, skipped)), (Strings{"a.mp3", "c.mp3"}));
  ASSERT_EQ(skipped.size(), 2u);
  EXPECT_EQ(skipped[0].name, "ab");
  EXPECT_EQ(skipped[1].name, "a.wav");
}

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

TEST_F(ArchiveWriterTest, WriterStripsTagsAndRefusesNonAudioWhenAsked) {
  Put("a.mp3", {'I', 'D', '3', 3, 0, 0, 0, 0, 0, 2, 0xAA, 0xBB, 0xFF, 0xF3, 0x48, 0xC4, 7});
  Put("b.mp3", {'R', 'I', 'F', 'F', 0, 0});
  ArchiveWriteOptions options = Quiet();
  options.skip_unusable = options.strip_id3v2 = options.require_frame_header = true;
  const auto result = WriteArchive(ListRecordings(rec(), 0), out(), messages, options);
  ASSERT_TRUE(result.ok);
  EXPECT_EQ(result.units, 1u);
  EXPECT_EQ(result.stripped_tags, 1u);
  ASSERT_EQ(result.skipped.size(), 1u);
  EXPECT_EQ(result.skipped[0].name, "b.mp3");
  EXPECT_EQ(ReadBytes(out()), (Bytes{0xFF, 0xF3, 0x48, 0xC4, 7}));
}

} // namespace
} // namespace vntts
