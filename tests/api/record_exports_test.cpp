// SPDX-License-Identifier: MIT
// RecordToFile through the library: a take of the asked length lands in a WAV file the library
// itself reads back (a path that cannot be written: bad_arguments_test.cpp). The null backend
// records silence at real-time pace, so no sound card is needed.
#include <filesystem>
#include <string>
#include <unistd.h>

#include "library_fixture.h"

namespace vntts::test {
namespace {

class RecordExports : public LibraryTest {};

TEST_F(RecordExports, TakeOfTheAskedLengthIsSavedAndLoadsBack) {
  const auto path = std::filesystem::temp_directory_path() /
                    ("vntts-record-" + std::to_string(getpid()) + ".wav");
  ASSERT_EQ(RecordToFile(path.c_str(), 300), 1);
  ASSERT_TRUE(std::filesystem::exists(path));
  ASSERT_EQ(LoadFileWave(path.c_str()), 1);
  std::uint16_t channels = 0, bits = 0;
  std::uint32_t rate = 0;
  ASSERT_EQ(GetWaveInfo(&channels, &rate, &bits), 1);
  ASSERT_GT(rate, 0u);
  const double seconds = double(GetCountSample()) / rate;
  EXPECT_NEAR(seconds, 0.3, 0.001);
  std::filesystem::remove(path);
}

} // namespace
} // namespace vntts::test
