// SPDX-License-Identifier: MIT
// The vntts command as a user runs it: exit statuses and messages (tests/data/cli_cases.tsv),
// WAV on standard output for a pipe, standard input spoken line by line, and the manual pages
// against the program and the header.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

const fs::path kBin = VNTTS_BINARY_DIR "/bin";
const fs::path kVoice = kBin / "index";

std::string ReadFile(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

std::string Unescape(std::string s) {
  for (std::size_t at = 0; (at = s.find("\\n", at)) != std::string::npos; ++at)
    s.replace(at, 2, "\n");
  return s;
}

struct Outcome {
  int status = -1;
  std::string output; // standard output and error together
};

class CommandLine : public ::testing::Test {
protected:
  void SetUp() override {
    if (!fs::exists(kBin / "vntts")) GTEST_SKIP() << "the vntts program is not built";
    if (!fs::exists(kVoice / "main_dic.dat")) GTEST_SKIP() << "no default voice";
    dir_ = fs::temp_directory_path() /
           ("vntts_cli_" + std::to_string(::getpid()) + "_" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::create_directories(dir_ / "emptydir");
    std::ofstream(dir_ / "notwav.txt") << "hello\n";
    std::ofstream(dir_ / "text.txt") << "Xin chào.\n";
    ASSERT_EQ(Shell("vntts say -w old.wav Một.").status, 0);
    for (const auto& entry : fs::recursive_directory_iterator(dir_))
      fixtures_[entry.path()] = entry.is_regular_file() ? ReadFile(entry.path()) : "(folder)";
  }
  void TearDown() override {
    if (!dir_.empty()) fs::remove_all(dir_);
  }

  // Runs a command line with sh in the test folder, the built program first on PATH.
  Outcome Shell(const std::string& line, const std::string& input = {}) {
    std::ofstream(dir_ / ".stdin", std::ios::binary) << input;
    const std::string command = "cd '" + dir_.string() + "' && PATH='" + kBin.string() +
                                ":'\"$PATH\" VNTTS_AUDIO=null VNTTS_DATA_DIR='" + kVoice.string() +
                                "' sh -c '" + Quoted(line) + "' < .stdin > .out 2>&1";
    const int raw = std::system(command.c_str());
    Outcome run{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, ReadFile(dir_ / ".out")};
    fs::remove(dir_ / ".stdin");
    fs::remove(dir_ / ".out");
    return run;
  }

  // The files the command was given are as they were; anything it made is cleared away.
  void ExpectFixturesKept(const std::string& line) {
    for (const auto& [path, content] : fixtures_) {
      ASSERT_TRUE(fs::exists(path)) << line << ": removed " << path;
      if (content != "(folder)") {
        EXPECT_EQ(ReadFile(path), content) << line << ": changed " << path;
      }
    }
    for (const auto& entry : fs::directory_iterator(dir_))
      if (!fixtures_.contains(entry.path())) fs::remove_all(entry.path());
  }

  static std::string Quoted(const std::string& s) {
    std::string out;
    for (char c : s)
      out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out;
  }

  fs::path dir_;
  std::map<fs::path, std::string> fixtures_;
};

TEST_F(CommandLine, ExitStatusAndMessagesOfEachCase) {
  std::ifstream table(VNTTS_SOURCE_DIR "/tests/data/cli_cases.tsv");
  ASSERT_TRUE(table) << "tests/data/cli_cases.tsv";
  int cases = 0;
  for (std::string row; std::getline(table, row);) {
    if (row.empty() || row[0] == '#') continue;
    std::vector<std::string> field;
    for (std::stringstream s(row); std::getline(s, field.emplace_back(), '\t');) {
    }
    field.pop_back();
    ASSERT_EQ(field.size(), 4u) << row;
    const std::string input = field[2] == "-" ? "" : Unescape(field[2]);
    const Outcome run = Shell(field[1], input);
    EXPECT_EQ(run.status, std::stoi(field[0])) << field[1] << "\n" << run.output;
    const std::string wanted = field[3] == "-" ? "" : Unescape(field[3]);
    EXPECT_NE(run.output.find(wanted), std::string::npos) << field[1] << "\n" << run.output;
    ExpectFixturesKept(field[1]);
    ++cases;
  }
  EXPECT_GT(cases, 30);
}

TEST_F(CommandLine, WaveOnStandardOutputIsValidForSox) {
  if (std::system("sox --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "no sox";
  ASSERT_EQ(Shell("vntts say -w file.wav 'Xin chào.'").status, 0);
  for (const char* way : {"--stdout", "-w -"}) {
    const Outcome run =
        Shell(std::string("vntts ") + way +
              " 'Xin chào.' | sox -t wav - piped.wav && cmp -s file.wav piped.wav && "
              "soxi -s piped.wav");
    EXPECT_EQ(run.status, 0) << way << "\n" << run.output;
    EXPECT_GT(std::atol(run.output.c_str()), 22050 / 2) << way << ": samples";
  }
}

// Starts vntts with pipes on standard input and output.
struct Child {
  pid_t pid = -1;
  int in = -1;
  int out = -1;
};

Child Start(const std::vector<std::string>& args) {
  int to_child[2], from_child[2];
  if (::pipe(to_child) != 0 || ::pipe(from_child) != 0) return {};
  Child c;
  c.pid = ::fork();
  if (c.pid == 0) {
    ::dup2(to_child[0], 0);
    ::dup2(from_child[1], 1);
    ::close(to_child[1]);
    ::close(from_child[0]);
    std::vector<char*> argv;
    for (const auto& a : args)
      argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    ::setenv("VNTTS_AUDIO", "null", 1);
    ::setenv("VNTTS_DATA_DIR", kVoice.c_str(), 1);
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }
  ::close(to_child[0]);
  ::close(from_child[1]);
  c.in = to_child[1];
  c.out = from_child[0];
  return c;
}

// What the child printed until the text appears or the time runs out.
std::string ReadUntil(int fd, const std::string& wanted, std::string& seen,
                      std::chrono::milliseconds limit) {
  const auto end = Clock::now() + limit;
  while (seen.find(wanted) == std::string::npos && Clock::now() < end) {
    pollfd p{fd, POLLIN, 0};
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
    if (::poll(&p, 1, static_cast<int>(left.count()) + 1) <= 0) continue;
    char buffer[4096];
    const ssize_t got = ::read(fd, buffer, sizeof buffer);
    if (got <= 0) break;
    seen.append(buffer, static_cast<std::size_t>(got));
  }
  return seen;
}

// True once the program's main thread waits in read(0, ...): it has made its engine and is
// ready for the first line, so the time to the first event is the command's own.
bool WaitUntilReadingInput(pid_t pid) {
  const auto end = Clock::now() + std::chrono::seconds(20);
  while (Clock::now() < end) {
    const std::string call = ReadFile("/proc/" + std::to_string(pid) + "/syscall");
    if (call.starts_with("0 0x0 ")) return true;
    if (call.empty()) { // a kernel that does not show it: give the program time to start
      std::this_thread::sleep_for(std::chrono::seconds(2));
      return true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

TEST_F(CommandLine, PipeIsSpokenLineByLineAsTheLinesArrive) {
  Child child = Start({(kBin / "vntts").string(), "say", "--events"});
  ASSERT_GT(child.pid, 0);
  std::string seen;
  ASSERT_TRUE(WaitUntilReadingInput(child.pid)) << "the command never read its input";
  const std::string first = "Một.\n";
  const auto sent = Clock::now();
  ASSERT_EQ(::write(child.in, first.data(), first.size()), static_cast<ssize_t>(first.size()));
  ReadUntil(child.out, "Start input stream", seen, std::chrono::seconds(5));
  const auto latency = Clock::now() - sent;
  EXPECT_LT(latency, std::chrono::milliseconds(100)) << seen;
  RecordProperty(
      "first_event_us",
      std::to_string(std::chrono::duration_cast<std::chrono::microseconds>(latency).count()));
  ReadUntil(child.out, "\"Một\"", seen, std::chrono::seconds(5));
  EXPECT_NE(seen.find("\"Một\""), std::string::npos) << "the first line is spoken at once";
  std::this_thread::sleep_for(std::chrono::seconds(1));
  const std::string second = "Hai.\n";
  ASSERT_EQ(::write(child.in, second.data(), second.size()), static_cast<ssize_t>(second.size()));
  ::close(child.in);
  ReadUntil(child.out, "\"Hai\"", seen, std::chrono::seconds(10));
  EXPECT_NE(seen.find("\"Hai\""), std::string::npos) << seen;
  ReadUntil(child.out, "\x01", seen, std::chrono::seconds(10)); // to the end of its output
  ::close(child.out);
  int status = 0;
  ::waitpid(child.pid, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << seen;
}

// The options of each command as the manual page lists them: "say" -> {"-w", "--output=", ...};
// a trailing '=' or ' ' marks an option that takes a value.
std::map<std::string, std::set<std::string>> ManualOptions() {
  std::ifstream page(VNTTS_SOURCE_DIR "/man/vntts.1");
  std::map<std::string, std::set<std::string>> options;
  std::string command;
  bool option_line = false;
  const std::regex heading(R"(^\.SS "vntts ([a-z-]+))");
  const std::regex name(R"(\\-(\\-[a-z0-9\\-]+|[a-zA-Z]))");
  for (std::string line; std::getline(page, line);) {
    std::smatch m;
    const std::string plain = std::regex_replace(line, std::regex(R"(\\-)"), "-");
    if (std::regex_search(plain, m, heading)) command = m[1];
    if (line.starts_with(".SH")) command.clear();
    if (option_line && !command.empty()) {
      const bool takes_value = line.starts_with(".BI");
      for (auto it = std::sregex_iterator(line.begin(), line.end(), name);
           it != std::sregex_iterator(); ++it) {
        std::string option = "-" + std::regex_replace((*it)[1].str(), std::regex(R"(\\-)"), "-");
        options[command].insert(option + (takes_value ? (option[1] == '-' ? "=" : " ") : ""));
      }
    }
    option_line = line == ".TP";
  }
  return options;
}

TEST_F(CommandLine, EveryOptionOfTheManualPageExistsAndTheHelpListsNoOther) {
  const auto manual = ManualOptions();
  ASSERT_GE(manual.size(), 7u) << "one section a command";
  for (const auto& [command, options] : manual) {
    for (const auto& option : options) {
      // --help wins over every known option but not over an unknown one or a missing value.
      const std::string value = option.back() == '=' ? "1" : option.back() == ' ' ? "1" : "";
      const Outcome run = Shell("vntts " + command + " " + option + value + " --help");
      EXPECT_EQ(run.status, 0) << "vntts " << command << " " << option << "\n" << run.output;
      EXPECT_TRUE(run.output.starts_with("usage: vntts " + command)) << command << " " << option;
    }
    const Outcome help = Shell("vntts " + command + " --help");
    const std::regex listed(R"(^  (-[a-zA-Z])?(, )?(--[a-z0-9-]+)?)");
    std::stringstream lines(help.output);
    for (std::string line; std::getline(lines, line);) {
      std::smatch m;
      if (!std::regex_search(line, m, listed) || line.find("--help") != std::string::npos) continue;
      for (int group : {1, 3}) {
        if (!m[group].matched) continue;
        const std::string name = m[group];
        const bool in_manual =
            options.contains(name) || options.contains(name + "=") || options.contains(name + " ");
        EXPECT_TRUE(in_manual) << "vntts " << command << " " << name << " is not in vntts(1)";
      }
    }
  }
}

TEST_F(CommandLine, TheLibraryManualNamesEveryFunctionOfTheHeader) {
  const std::string header = ReadFile(VNTTS_SOURCE_DIR "/include/vntts/vntts.h");
  const std::string page = ReadFile(VNTTS_SOURCE_DIR "/man/vntts.3");
  const std::regex exported(R"(VNTTS_API [^;(]*VNTTS_CALL ([A-Za-z0-9_]+)\()");
  int functions = 0;
  for (auto it = std::sregex_iterator(header.begin(), header.end(), exported);
       it != std::sregex_iterator(); ++it, ++functions) {
    const std::string name = (*it)[1];
    EXPECT_TRUE(std::regex_search(page, std::regex("\\b" + name + "\\b")))
        << name << " is not in vntts(3)";
  }
  EXPECT_GE(functions, 50);
}

} // namespace
