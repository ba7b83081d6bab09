// ReadInteger against an independent reader of Vietnamese numbers (the npm package
// read-vietnamese-number, installed by install_number_reference.sh). Skips when node or the
// package is not there.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "text/number_reading.h"
#include "text_test_util.h"

namespace vntts {
namespace {

namespace fs = std::filesystem;

fs::path ReferenceDir() {
  if (const char* dir = std::getenv("VNTTS_NPM_REFERENCE_DIR"); dir && *dir) return dir;
  const char* home = std::getenv("HOME");
  return fs::path(home ? home : "/nonexistent") / ".cache/vntts/npm-reference";
}

bool HaveNode() {
  return std::system("node --version >/dev/null 2>&1") == 0;
}

// Random digit strings of 1..30 digits whose three-digit groups are often 000, 00d, 0d0 or
// 0dd, so that every branch of the group reading is met.
std::vector<std::string> Sample(std::size_t count) {
  std::mt19937_64 random(20241122);
  std::vector<std::string> numbers;
  auto digit = [&](bool nonZero) {
    return static_cast<char>('0' + (nonZero ? 1 + random() % 9 : random() % 10));
  };
  while (numbers.size() < count) {
    const std::size_t groups = 1 + random() % 10;
    std::string n;
    for (std::size_t g = 0; g < groups; ++g) {
      std::string group(3, '0');
      switch (random() % 6) {
      case 0:
        break; // 000
      case 1:
        group[2] = digit(true);
        break; // 00d
      case 2:
        group[1] = digit(true);
        break; // 0d0
      case 3:
        group[1] = digit(false), group[2] = digit(false);
        break;
      default:
        for (char& c : group)
          c = digit(false);
      }
      n += group;
    }
    n.erase(0, n.find_first_not_of('0'));
    if (n.empty()) continue;
    if (random() % 4 == 0) // shorter numbers too
      n = n.substr(0, 1 + random() % std::min<std::size_t>(n.size(), 4));
    numbers.push_back(n);
  }
  return numbers;
}

// The reading naming the fourth group (tỉ) is dropped when that group is zero; with every
// "tỉ" taken out, the two readings must then agree.
std::string WithoutBillions(const std::string& words) {
  std::istringstream in(words);
  std::string w, out;
  while (in >> w)
    if (w != "tỉ") out += (out.empty() ? "" : " ") + w;
  return out;
}

// A group at position 3, 6, 9, ... from the right (where tỉ is named) that is 000 while digits
// stand above it.
bool HasZeroBillionGroup(const std::string& n) {
  for (std::size_t k = 3; n.size() > 3 * (k + 1); k += 3)
    if (n.compare(n.size() - 3 * (k + 1), 3, "000") == 0) return true;
  return false;
}

TEST(ReadIntegerReference, AgreesWithAnIndependentReader) {
  const fs::path dir = ReferenceDir();
  if (!HaveNode() || !fs::exists(dir / "node_modules/read-vietnamese-number/package.json"))
    GTEST_SKIP()
        << "node or read-vietnamese-number missing; run tests/text/install_number_reference.sh";

  const std::vector<std::string> numbers = Sample(20000);
  const fs::path input =
      fs::temp_directory_path() / ("vntts_numbers_" + std::to_string(::getpid()));
  {
    std::ofstream out(input);
    for (const auto& n : numbers)
      out << n << '\n';
  }
  const std::string script = std::string(VNTTS_SOURCE_DIR) + "/tests/text/read_number_reference.js";
  const std::string command =
      "node '" + script + "' '" + input.string() + "' '" + dir.string() + "'";
  std::FILE* pipe = ::popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::string output;
  char buffer[65536];
  for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
    output.append(buffer, got);
  const int status = ::pclose(pipe);
  fs::remove(input);
  ASSERT_EQ(status, 0) << command;

  std::istringstream lines(output);
  std::size_t index = 0, same = 0, cycle = 0;
  for (std::string theirs; std::getline(lines, theirs) && index < numbers.size(); ++index) {
    const std::string& n = numbers[index];
    const std::string ours = testing::Words(ReadInteger(n));
    if (ours == theirs) {
      ++same;
      continue;
    }
    // The only difference allowed: the name of a zero tỉ group.
    ASSERT_TRUE(HasZeroBillionGroup(n)) << n << "\n ours:   " << ours << "\n theirs: " << theirs;
    ASSERT_EQ(WithoutBillions(ours), WithoutBillions(theirs)) << n;
    ++cycle;
  }
  EXPECT_EQ(index, numbers.size());
  EXPECT_GT(same, numbers.size() / 2);
  RecordProperty("agree", static_cast<int>(same));
  RecordProperty("tỉ-cycle differences", static_cast<int>(cycle));
  std::printf("ReadInteger vs reference: %zu agree, %zu differ only by the tỉ cycle\n", same,
              cycle);
}

} // namespace
} // namespace vntts
