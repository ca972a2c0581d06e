// The program kvr-target as another process sees it: through its terminal, its signals and its report.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

class Program {
 public:
  explicit Program(std::vector<std::string> arguments) {
    int pipe[2];
    EXPECT_EQ(::pipe(pipe), 0);
    arguments.insert(arguments.begin(), KVR_BINARY_DIR "/kvr-target");
    child_ = ::fork();
    if (child_ == 0) {
      ::dup2(pipe[1], 1);
      ::close(pipe[0]);
      std::vector<char*> argv;
      for (std::string& argument : arguments) argv.push_back(argument.data());
      argv.push_back(nullptr);
      ::execv(argv[0], argv.data());
      ::_exit(127);
    }
    ::close(pipe[1]);
    char letter = 0;
    while (::read(pipe[0], &letter, 1) == 1 && letter != '\n') name_ += letter;
    ::close(pipe[0]);
  }
  ~Program() {
    if (child_ > 0) ::kill(child_, SIGKILL), ::waitpid(child_, nullptr, 0);
  }
  const std::string& terminal() const { return name_; }
  int end(int number) {
    if (number) ::kill(child_, number);
    int status = 0;
    int waited = 0;
    while (::waitpid(child_, &status, WNOHANG) == 0)
      if (++waited < 2000)
        ::usleep(10000);
      else
        return -2;  // the destructor ends it
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t child_ = -1;
  std::string name_;
};

class Port {
 public:
  Port(const std::string& name, speed_t rate) : handle_(::open(name.c_str(), O_RDWR | O_NOCTTY)) {
    termios settings{};
    ::tcgetattr(handle_, &settings);
    ::cfmakeraw(&settings);
    ::cfsetspeed(&settings, rate);
    ::tcsetattr(handle_, TCSANOW, &settings);
  }
  ~Port() { ::close(handle_); }
  bool isOpen() const { return handle_ >= 0; }
  void send(const Bytes& bytes) { EXPECT_EQ(::write(handle_, bytes.data(), bytes.size()), std::ssize(bytes)); }
  // What comes until nothing has come for so long.
  Bytes receive(int quietMs) {
    Bytes all;
    for (pollfd state{handle_, POLLIN, 0}; ::poll(&state, 1, quietMs) > 0;) {
      std::uint8_t buffer[4096];
      const auto got = ::read(handle_, buffer, sizeof buffer);
      if (got <= 0) break;
      all.insert(all.end(), buffer, buffer + got);
    }
    return all;
  }
  // Sync bytes until something answers, for ten seconds.
  Bytes sync() {
    Bytes got;
    for (int i = 0; i < 500 && got.empty(); ++i) {
      send({0x7F, 0x7F});
      got = receive(20);
    }
    const Bytes rest = receive(300);
    got.insert(got.end(), rest.begin(), rest.end());
    return got;
  }

 private:
  int handle_;
};

std::string contents(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

const Bytes kRelease = {0x46, 0xB9, 0x6A, 0, 7, 0x82, 0, 0xF3, 0x16};

TEST(KvrTarget, IsAChipBehindATerminalAndReportsWhatItHoldsWhenReleased) {
  const std::string link = ::testing::TempDir() + "kvr-target-link", json = ::testing::TempDir() + "kvr-target.json";
  Program program({"--model", "Ivy-H20S", "--paced", "--once", "--power-on", "0.2", "--link", link, "--json", json});
  Port port(link, B9600);
  ASSERT_TRUE(port.isOpen());
  const Bytes status = port.sync();
  ASSERT_GT(status.size(), 30U);
  EXPECT_EQ(Bytes(status.begin(), status.begin() + 3), (Bytes{0x46, 0xB9, 0x68}));
  port.send(kRelease);
  EXPECT_EQ(program.end(0), 0);
  const std::string report = contents(json);
  EXPECT_NE(report.find("\"state\": \"application\""), std::string::npos);
  EXPECT_NE(report.find("\"violations\": []"), std::string::npos) << report.substr(0, 2000);
  EXPECT_EQ(::access(link.c_str(), F_OK), -1);
}

TEST(KvrTarget, HearsAndSpeaksAtItsOwnRateOnly) {
  Program program({"--model", "Gum-H20", "--paced"});
  {
    Port port(program.terminal(), B9600);
    ASSERT_GT(port.sync().size(), 30U);
  }
  Port port(program.terminal(), B38400);  // the terminal is closed and opened between
  port.send({0x46, 0xB9, 0x6A, 0, 7, 0x50, 0, 0xC1, 0x16});
  EXPECT_TRUE(port.receive(300).empty());
  EXPECT_EQ(program.end(SIGTERM), 0);
  Program confused({"--model", "No-Such"});
  EXPECT_EQ(confused.end(0), 2);
}

}  // namespace
