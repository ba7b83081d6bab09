// SPDX-License-Identifier: MIT
// Loading, saving and appending WAV files: the messages users see, the bytes on disk and
// what survives a refusal.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "audio/byte_stream.h"
#include "audio/wave_buffer.h"
#include "support/tsv_table.h"
#include "wave_bytes.h"

namespace vntts {
namespace {

using test::get_u32;
using test::wav_bytes;

std::vector<std::uint8_t> ramp(std::size_t n) {
  std::vector<std::uint8_t> v(n);
  for (std::size_t i = 0; i < n; ++i)
    v[i] = static_cast<std::uint8_t>(i * 7 + 3);
  return v;
}

std::vector<std::uint8_t> event_bytes(std::uint32_t kind, std::uint32_t position) {
  EventRecord e;
  e.kind = kind;
  e.position = position;
  e.text_start = 11;
  e.params[4] = 0xDEADBEEF;
  const auto raw = e.ToBytes();
  return {raw.begin(), raw.end()};
}

struct Fixture : ::testing::Test {
  test::TempDir dir;
  RecordedMessages messages;
  WaveBuffer buffer{messages};

  std::string texts() const {
    std::string all;
    for (const auto& e : messages.entries)
      all += e.caption + ": " + e.text + "\n";
    return all;
  }
};

using WaveLoad = Fixture;

TEST_F(WaveLoad, ReadsFormatSamplesAndEventsFromTheTrailer) {
  // Two events and four stray bytes, which are ignored.
  auto trailer = event_bytes(3, 40);
  const auto second = event_bytes(4, 0);
  trailer.insert(trailer.end(), second.begin(), second.end());
  trailer.insert(trailer.end(), {0xAA, 0xAA, 0xAA, 0xAA});
  test::write_file(dir / "a.wav", wav_bytes(2, 44100, 16, ramp(400), trailer));
  ASSERT_EQ(buffer.Load((dir / "a.wav").string()), 0) << texts();
  EXPECT_EQ(buffer.Format(), WaveFormat::Pcm(2, 44100, 16));
  EXPECT_EQ(buffer.SampleCount(), 100u);
  EXPECT_EQ(std::vector<std::uint8_t>(buffer.data(), buffer.data() + 400), ramp(400));
  ASSERT_EQ(buffer.Events().size(), 2u);
  EXPECT_EQ(buffer.Events()[0].kind, 3u);
  EXPECT_EQ(buffer.Events()[0].position, 40u);
  EXPECT_EQ(buffer.Events()[0].params[4], 0xDEADBEEFu);
  EXPECT_EQ(buffer.Events()[1].kind, 4u);
  EXPECT_EQ(buffer.FileName(), (dir / "a.wav").string());
  EXPECT_TRUE(messages.entries.empty());
}

// An 18-byte "fmt " (an extension size of 0, as some writers put it) is read for its first
// sixteen bytes, and an unknown chunk of odd size is skipped with its pad byte.
TEST_F(WaveLoad, SkipsLongerFmtChunksAndUnknownChunks) {
  std::vector<std::uint8_t> b = wav_bytes(1, 8000, 8, ramp(10));
  b[16] = 18;
  b.insert(b.begin() + 36, {0, 0});
  b[4] += 2;
  // A LIST chunk of odd size (with its pad) between "fmt " and "data".
  std::vector<std::uint8_t> list;
  test::put_tag(list, "LIST");
  test::put_u32(list, 5);
  test::put_tag(list, "INFOx");
  list.push_back(0);
  b.insert(b.begin() + 38, list.begin(), list.end());
  b[4] += static_cast<std::uint8_t>(list.size());
  test::write_file(dir / "a.wav", b);
  ASSERT_EQ(buffer.Load((dir / "a.wav").string()), 0) << texts();
  EXPECT_EQ(buffer.Format(), WaveFormat::Pcm(1, 8000, 8));
  EXPECT_EQ(std::vector<std::uint8_t>(buffer.data(), buffer.data() + buffer.DataLength()),
            ramp(10));
}

TEST_F(WaveLoad, ShortReadKeepsTheSamplesThatWereThere) {
  auto b = wav_bytes(1, 22050, 16, ramp(100));
  b.resize(54);
  test::write_file(dir / "a.wav", b);
  EXPECT_EQ(buffer.Load((dir / "a.wav").string()), 1);
  EXPECT_EQ(buffer.DataLength(), 10u);
}

// The canonical file of tests/data/wav_refusals.tsv with a row's edits made.
std::vector<std::uint8_t> EditedFile(const std::string& edits) {
  auto b = wav_bytes(1, 22050, 16, ramp(2000), event_bytes(1, 2));
  std::istringstream all(edits);
  for (std::string edit; std::getline(all, edit, ';');) {
    std::istringstream in(edit);
    std::string op, value;
    std::size_t at = 0;
    in >> op >> at >> value;
    if (op == "cut") b.resize(at);
    for (std::size_t i = 0; op == "tag" && i < 4; ++i)
      b[at + i] = static_cast<std::uint8_t>(value[i] == '_' ? ' ' : value[i]);
    for (int i = 0; op == "u32" && i < 4; ++i)
      b[at + i] = static_cast<std::uint8_t>(std::stoul(value, nullptr, 16) >> (8 * i));
  }
  return b;
}

class WaveRefusals : public Fixture, public ::testing::WithParamInterface<test::TsvRow> {};

TEST_P(WaveRefusals, ShowTheirMessageAndKeepWhatWasThere) {
  const auto& row = GetParam();
  const auto file = EditedFile(row[2]);
  test::write_file(dir / "bad.wav", file);
  std::istringstream op(row.at(1));
  std::string name;
  unsigned channels = 0, rate = 0, bits = 0;
  op >> name >> channels >> rate >> bits;
  ASSERT_TRUE(buffer.Allocate(4));
  buffer.AddEvent({});
  const std::vector<std::uint8_t> more(100, 1);
  EXPECT_EQ(name == "load" ? buffer.Load((dir / "bad.wav").string())
                           : WaveBuffer::Append((dir / "bad.wav").string(), more.data(), 100,
                                                static_cast<std::uint16_t>(channels), rate,
                                                static_cast<std::uint16_t>(bits), messages),
            1);
  ASSERT_EQ(messages.entries.size(), 1u) << texts();
  EXPECT_EQ(messages.entries[0].text, row.at(3));
  EXPECT_EQ(messages.entries[0].caption, row.at(4));
  EXPECT_EQ(messages.entries[0].icon, MessageIcon::kWarning);
  EXPECT_EQ(test::read_file(dir / "bad.wav"), file);
  EXPECT_EQ(buffer.Format(), WaveFormat::Pcm(2, 22050, 16));
  if (row.at(3) != "Failed to read data chunk !") {
    EXPECT_EQ(buffer.DataLength(), 4u);
    EXPECT_EQ(buffer.Events().size(), 1u);
  }
}

INSTANTIATE_TEST_SUITE_P(Table, WaveRefusals, ::testing::ValuesIn(test::ReadTsv("wav_refusals")),
                         [](const auto& param_info) { return test::TsvName(param_info.param); });

using WaveSave = Fixture;

TEST_F(WaveSave, WritesTheCanonicalLayoutWithTrailerAndSaysComplete) {
  buffer.SetFormat(WaveFormat::Pcm(1, 22050, 16));
  buffer.AssignSamples(ramp(200));
  buffer.AddEvent({3, 10, 1, 2, {}});
  buffer.AddEvent({4, 0, 0, 0, {5, 6, 0, 0, 0}});
  ASSERT_EQ(buffer.Save((dir / "s.wav").string()), 0) << texts();
  ASSERT_EQ(messages.entries.size(), 1u);
  EXPECT_EQ(messages.entries[0].text, "Complete!");
  EXPECT_EQ(messages.entries[0].caption, "");
  EXPECT_EQ(messages.entries[0].icon, MessageIcon::kInformation);

  auto expected = wav_bytes(1, 22050, 16, ramp(200));
  for (const auto& e : buffer.Events()) {
    const auto raw = e.ToBytes();
    expected.insert(expected.end(), raw.begin(), raw.end());
  }
  EXPECT_EQ(test::read_file(dir / "s.wav"), expected);
}

TEST_F(WaveSave, RangesAreClampedToTheBuffer) {
  buffer.SetFormat(WaveFormat::Pcm(1, 22050, 16));
  buffer.AssignSamples(ramp(200));
  const struct {
    std::uint32_t first, end, bytes;
  } cases[] = {{0, 50, 100},  {90, 500, 20},        {150, 10, 0},
               {100, 100, 0}, {0, 0xFFFFFFFE, 200}, {10, WaveBuffer::kToEnd, 180}};
  for (const auto& c : cases) {
    ASSERT_EQ(buffer.Save((dir / "r.wav").string(), c.first, c.end), 0);
    const auto b = test::read_file(dir / "r.wav");
    EXPECT_EQ(get_u32(b, 40), c.bytes) << c.first << ".." << c.end;
    EXPECT_EQ(get_u32(b, 4), 4u + 24 + 8 + c.bytes);
    const auto all = ramp(200);
    EXPECT_TRUE(std::equal(b.begin() + 44, b.end(), all.begin() + 2 * c.first)) << c.first;
  }
}

TEST_F(WaveSave, OddDataGetsAPadByteAndItsEventsComeBackWhole) {
  // The mono 8-bit format of the default settings meets this whenever the count is odd.
  buffer.SetFormat(WaveFormat::Pcm(1, 11025, 8));
  buffer.AssignSamples(ramp(7));
  buffer.AddEvent({9, 1, 0, 0, {}});
  buffer.AddEvent({3, 5, 0, 0, {}});
  ASSERT_EQ(buffer.Save((dir / "odd.wav").string()), 0);
  const auto b = test::read_file(dir / "odd.wav");
  ASSERT_EQ(b.size(), 44u + 7 + 1 + 2 * 36);
  EXPECT_EQ(get_u32(b, 40), 7u);
  EXPECT_EQ(get_u32(b, 4), 36u + 8);
  EXPECT_EQ(b[51], 0);
  EXPECT_EQ(get_u32(b, 52), 9u);
  WaveBuffer again(messages);
  ASSERT_EQ(again.Load((dir / "odd.wav").string()), 0);
  EXPECT_EQ(again.Events(), buffer.Events());
}

TEST_F(WaveSave, UnwritablePlacesAndAFullDiskAreReported) {
  EXPECT_EQ(buffer.Save((dir / "no" / "such" / "dir.wav").string()), 1);
  ASSERT_EQ(messages.entries.size(), 1u);
  EXPECT_EQ(messages.entries[0].text, "Unable to create specified File !");
  EXPECT_EQ(messages.entries[0].caption, "Save File Error");
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  buffer.SetFormat(WaveFormat::Pcm(1, 22050, 16));
  buffer.AssignSamples(ramp(100000));
  EXPECT_EQ(buffer.Save("/dev/full"), 1);
  EXPECT_NE(messages.entries.back().text, "Complete!");
  EXPECT_EQ(messages.entries.back().caption, "Save File Error");
}

using WaveAppend = Fixture;

TEST_F(WaveAppend, GrowsTheDataChunkButNotTheRiffSize) {
  const auto old_data = ramp(2000);
  auto original = wav_bytes(1, 22050, 16, old_data, event_bytes(3, 1));
  test::write_file(dir / "a.wav", original);
  const auto more = std::vector<std::uint8_t>(1000, 0x55);
  ASSERT_EQ(WaveBuffer::Append((dir / "a.wav").string(), more.data(), 1000, 1, 22050, 16, messages),
            0)
      << texts();
  EXPECT_TRUE(messages.entries.empty());
  const auto b = test::read_file(dir / "a.wav");
  EXPECT_EQ(get_u32(b, 40), 3000u);
  EXPECT_EQ(get_u32(b, 4), 36u + 2000); // still the old length
  ASSERT_EQ(b.size(), 44u + 3000);      // the event trailer was written over
  EXPECT_TRUE(std::equal(old_data.begin(), old_data.end(), b.begin() + 44));
  EXPECT_TRUE(std::equal(more.begin(), more.end(), b.begin() + 44 + 2000));
  // Our own reader takes the grown chunk even though the RIFF size is stale.
  ASSERT_EQ(buffer.Load((dir / "a.wav").string()), 0) << texts();
  EXPECT_EQ(buffer.DataLength(), 3000u);
}

// An odd total leaves the data chunk padded to an even length, as RIFF readers expect, and the
// next append writes over the pad byte.
TEST_F(WaveAppend, AnOddTotalGetsItsPadByte) {
  test::write_file(dir / "o.wav", wav_bytes(1, 11025, 8, ramp(4)));
  const auto more = ramp(3);
  ASSERT_EQ(WaveBuffer::Append((dir / "o.wav").string(), more.data(), 3, 1, 11025, 8, messages), 0);
  auto b = test::read_file(dir / "o.wav");
  ASSERT_EQ(b.size(), 44u + 7 + 1);
  EXPECT_EQ(get_u32(b, 40), 7u);
  EXPECT_EQ(b.back(), 0);
  ASSERT_EQ(WaveBuffer::Append((dir / "o.wav").string(), more.data(), 1, 1, 11025, 8, messages), 0);
  b = test::read_file(dir / "o.wav");
  EXPECT_EQ(b.size(), 44u + 8);
  EXPECT_EQ(b.back(), more[0]);
}

// A file written straight through (no buffer to lose) whose writer dies at its n-th write or
// cut, before it or halfway through it, as a process killed there would leave the file.
class DyingFile final : public ByteStream {
public:
  DyingFile(const std::string& path, int die_at, bool halfway)
      : fd_(::open(path.c_str(), O_RDWR)), die_at_(die_at), halfway_(halfway) {}
  ~DyingFile() override { ::close(fd_); }
  std::size_t Read(void* out, std::size_t count) override {
    const ssize_t n = ::pread(fd_, out, count, static_cast<off_t>(position_));
    position_ += n > 0 ? static_cast<std::uint64_t>(n) : 0;
    return n > 0 ? static_cast<std::size_t>(n) : 0;
  }
  std::size_t Write(const void* in, std::size_t count) override {
    if (++operations_ == die_at_) {
      if (halfway_) (void)!::pwrite(fd_, in, count / 2, static_cast<off_t>(position_));
      ::_exit(kDied);
    }
    const ssize_t n = ::pwrite(fd_, in, count, static_cast<off_t>(position_));
    position_ += n > 0 ? static_cast<std::uint64_t>(n) : 0;
    return n > 0 ? static_cast<std::size_t>(n) : 0;
  }
  bool Truncate(std::uint64_t size) override {
    if (++operations_ == die_at_) ::_exit(kDied);
    return ::ftruncate(fd_, static_cast<off_t>(size)) == 0;
  }
  bool Seek(std::uint64_t position) override {
    position_ = position;
    return true;
  }
  std::uint64_t Tell() const override { return position_; }
  std::uint64_t size() const override {
    struct stat st {};
    return ::fstat(fd_, &st) == 0 ? static_cast<std::uint64_t>(st.st_size) : 0;
  }
  static constexpr int kDied = 77;

private:
  int fd_;
  int die_at_;
  bool halfway_;
  int operations_ = 0;
  std::uint64_t position_ = 0;
};

TEST_F(WaveAppend, AWriterKilledAtAnyWriteLeavesAFileThatLoadsAndGrowsOnWithoutAHole) {
  const struct {
    std::uint16_t channels, bits;
    std::size_t old_bytes, new_bytes;
  } shapes[] = {{1, 8, 1001, 777}, {1, 8, 1001, 1}, {2, 16, 4000, 4000}};
  for (const auto& shape : shapes) {
    const auto old_data = ramp(shape.old_bytes);
    const std::vector<std::uint8_t> more(shape.new_bytes, 0x55), last(8, 0x66);
    for (int die_at = 1;; ++die_at) {
      bool finished = false;
      for (const bool halfway : {false, true}) {
        SCOPED_TRACE(testing::Message() << shape.old_bytes << "+" << shape.new_bytes << " write "
                                        << die_at << (halfway ? " halfway" : ""));
        buffer.SetFormat(WaveFormat::Pcm(shape.channels, 22050, shape.bits));
        buffer.Release();
        buffer.AssignSamples(old_data);
        buffer.RemoveAllEvents();
        buffer.AddEvent({3, 1, 0, 0, {}});
        const std::string path = (dir / "k.wav").string();
        ASSERT_EQ(buffer.Save(path), 0);
        const pid_t child = ::fork();
        if (child == 0) {
          DyingFile file(path, die_at, halfway);
          ::_exit(WaveBuffer::AppendTo(file, more.data(), static_cast<std::uint32_t>(more.size()),
                                       shape.channels, 22050, shape.bits, messages));
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        finished = WEXITSTATUS(status) != DyingFile::kDied;
        ASSERT_EQ(WEXITSTATUS(status), finished ? 0 : DyingFile::kDied);
        // All the old samples and a whole-frame part of the new ones load; a later append
        // goes on right after them.
        WaveBuffer loaded(messages);
        ASSERT_EQ(loaded.Load(path), 0) << texts();
        std::vector<std::uint8_t> got(loaded.data(), loaded.data() + loaded.DataLength());
        ASSERT_GE(got.size(), old_data.size());
        std::vector<std::uint8_t> expected = old_data;
        expected.insert(expected.end(), more.begin(),
                        more.begin() + static_cast<std::ptrdiff_t>(got.size() - old_data.size()));
        EXPECT_EQ(got, expected);
        EXPECT_LE(loaded.Events().size(), 1u);
        ASSERT_EQ(
            WaveBuffer::Append(path, last.data(), 8, shape.channels, 22050, shape.bits, messages),
            0);
        ASSERT_EQ(loaded.Load(path), 0) << texts();
        expected.insert(expected.end(), last.begin(), last.end());
        EXPECT_EQ(std::vector<std::uint8_t>(loaded.data(), loaded.data() + loaded.DataLength()),
                  expected);
        if (finished) break;
      }
      if (finished) break;
    }
  }
}

// A missing file, a folder and a fifo (which would block) are refused at once, and a refused
// append creates nothing.
TEST_F(WaveAppend, FilesThatCannotBeOpenedAreRefusedAtOnce) {
  const auto fifo = (dir / "pipe.wav").string();
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  const std::uint8_t one = 0;
  for (const auto& path : {(dir / "none.wav").string(), fifo}) {
    EXPECT_EQ(WaveBuffer::Append(path, &one, 1, 1, 22050, 16, messages), 1);
    EXPECT_EQ(buffer.Load(path), 1);
  }
  EXPECT_EQ(buffer.Load(dir.path().string()), 1);
  EXPECT_FALSE(std::filesystem::exists(dir / "none.wav"));
  EXPECT_EQ(buffer.FileName(), dir.path().string());
  ASSERT_EQ(messages.entries.size(), 5u);
  for (const auto& e : messages.entries)
    EXPECT_EQ(e.text, "Could not open file !");
  EXPECT_EQ(messages.entries[0].caption, "Append File Error");
  EXPECT_EQ(messages.entries[1].caption, "Open File Error");
}

using WaveBufferBlock = Fixture;

TEST_F(WaveBufferBlock, AllocateOnlyIntoAnEmptyBuffer) {
  EXPECT_FALSE(buffer.Allocate(0));
  ASSERT_TRUE(buffer.Allocate(8));
  EXPECT_FALSE(buffer.Allocate(16));
  EXPECT_EQ(buffer.DataLength(), 8u);
  buffer.Release();
  EXPECT_TRUE(buffer.Allocate(16));
  EXPECT_TRUE(messages.entries.empty());
}

TEST_F(WaveBufferBlock, OutOfMemoryShowsTheStopMessage) {
  ::setenv("VNTTS_FAIL_ALLOCATION", "wave buffer", 1);
  const bool got = buffer.Allocate(8);
  ::unsetenv("VNTTS_FAIL_ALLOCATION");
  EXPECT_FALSE(got);
  ASSERT_EQ(messages.entries.size(), 1u);
  EXPECT_EQ(messages.entries[0].text,
            "Could not allocate requested memory\r\nYou should exit somes of applications");
  EXPECT_EQ(messages.entries[0].icon, MessageIcon::kError);
}

TEST_F(WaveBufferBlock, SampleCountNeedsAFrameSize) {
  buffer.AssignSamples(ramp(12));
  buffer.SetFormat(WaveFormat::Pcm(2, 22050, 16));
  EXPECT_EQ(buffer.SampleCount(), 3u);
  buffer.SetFormat(WaveFormat::Pcm(0, 22050, 16));
  EXPECT_EQ(buffer.SampleCount(), 0u);
  ASSERT_EQ(messages.entries.size(), 1u);
  EXPECT_EQ(messages.entries[0].text, "Invalid format file!");
}

TEST_F(WaveBufferBlock, NewEventsGoBeforeOlderOnesAtTheSamePosition) {
  const std::uint32_t positions[] = {50, 10, 50, 0, 90};
  for (std::uint32_t i = 0; i < 5; ++i)
    EXPECT_EQ(buffer.AddEvent({i, positions[i], 0, 0, {}}), i + 1);
  std::vector<std::uint32_t> kinds;
  for (const auto& e : buffer.Events())
    kinds.push_back(e.kind);
  EXPECT_EQ(kinds, (std::vector<std::uint32_t>{3, 1, 2, 0, 4}));
  buffer.RemoveAllEvents();
  buffer.RemoveAllEvents();
  EXPECT_TRUE(buffer.Events().empty());
}

} // namespace
} // namespace vntts
