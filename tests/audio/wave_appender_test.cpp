// SPDX-License-Identifier: MIT
// Speak-to-file's appender against WaveBuffer::Append: the same file after every call.
#include <gtest/gtest.h>

#include "audio/wave_appender.h"
#include "audio/wave_buffer.h"
#include "wave_bytes.h"

namespace vntts {
namespace {

TEST(WaveAppender, LeavesAfterEveryCallWhatAppendLeaves) {
  test::TempDir dir;
  RecordedMessages messages;
  // 8-bit mono, so that odd totals need a pad byte; the file starts with an event trailer.
  const auto original = test::wav_bytes(1, 11025, 8, std::vector<std::uint8_t>(5, 0x80),
                                        std::vector<std::uint8_t>(40, 0xAB));
  test::write_file(dir / "a.wav", original);
  test::write_file(dir / "b.wav", original);
  const std::string a = (dir / "a.wav").string();
  WaveAppender appender((dir / "b.wav").string(), messages);
  for (std::uint32_t count : {3u, 1u, 4u, 0u, 7u}) {
    const std::vector<std::uint8_t> more(count, static_cast<std::uint8_t>(0x10 + count));
    ASSERT_EQ(WaveBuffer::Append(a, more.data(), count, 1, 11025, 8, messages), 0);
    ASSERT_EQ(appender.Append(more.data(), count, 1, 11025, 8), 0);
    EXPECT_EQ(test::read_file(dir / "b.wav"), test::read_file(a)) << count;
    if (count == 4) {
      // Another format is refused as Append refuses it, and the next call goes on.
      const auto before = test::read_file(dir / "b.wav");
      EXPECT_EQ(appender.Append(more.data(), 4, 1, 22050, 16), 1);
      EXPECT_EQ(messages.entries.back().text, "Can not append to this file, No match format!");
      EXPECT_EQ(test::read_file(dir / "b.wav"), before);
    }
  }
}

} // namespace
} // namespace vntts
