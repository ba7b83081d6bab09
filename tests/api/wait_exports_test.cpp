// VNWaitUntilDone lets a host know that speech into a file is complete before it reads the file
// or releases the library.
#include <filesystem>
#include <string>
#include <unistd.h>

#include "library_fixture.h"

namespace vntts::test {
namespace {

class WaitExports : public LibraryTest {};

TEST_F(WaitExports, WithoutAnEngineNothingIsSpeaking) {
  EXPECT_EQ(VNWaitUntilDone(0), 1);
  EXPECT_FALSE(EngineExisted());
}

TEST_F(WaitExports, FileIsCompleteWhenTheWaitReturns) {
  if (!std::filesystem::exists(VNTTS_BINARY_DIR "/bin/index/main_dic.dat"))
    GTEST_SKIP() << "no voice built";
  const auto path =
      std::filesystem::temp_directory_path() / ("vntts-wait-" + std::to_string(getpid()) + ".wav");
  std::filesystem::remove(path);
  ASSERT_EQ(SaveVNToWaveFile("Một hai ba. Bốn năm sáu.", path.c_str()), 1);
  ASSERT_EQ(VNWaitUntilDone(60000), 1);
  ASSERT_EQ(LoadFileWave(path.c_str()), 1);
  std::uint16_t channels = 0, bits = 0;
  std::uint32_t rate = 0;
  ASSERT_EQ(GetWaveInfo(&channels, &rate, &bits), 1);
  // Six syllables with a sentence pause between: well over a second of sound.
  EXPECT_GT(double(GetCountSample()) / rate, 1.0);
  std::filesystem::remove(path);
}

} // namespace
} // namespace vntts::test
