#include <array>
#include <charconv>
#include <climits>
#include <csignal>
#include <poll.h>
#include <random>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/foundation/UserDefaults.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

/// The n-th history: its number, then bytes that only that history has, more of them from one to the next.
Data history(std::int64_t number) {
  Data bytes = std::to_string(number) + ":";
  const auto size = static_cast<std::size_t>(number % 97) * 1013;
  while (bytes.size() < size) bytes += static_cast<char>('a' + (number + static_cast<std::int64_t>(bytes.size())) % 26);
  return bytes;
}

/// The number of a history that is whole, else -1.
std::int64_t numberOf(const Data& bytes) {
  std::int64_t number = -1;
  std::from_chars(bytes.data(), bytes.data() + bytes.size(), number);
  return number >= 0 && bytes == history(number) ? number : -1;
}

/// Saves one history after the other and tells the number of each that is saved, until it is killed.
[[noreturn]] void saveForEver(const fs::path& folder, std::int64_t number, int report) {
  UserDefaults defaults(folder);
  for (;; ++number) {
    defaults.set(history(number), "storedMessages");
    if (number % 3 == 0) continue;  // and some that are only on their way
    if (!defaults.synchronize() || ::write(report, &number, sizeof number) != sizeof number) ::_exit(1);
  }
}

/// Reads that many numbers, or until the other end closes; gives the last.
std::int64_t lastOf(int pipe, std::int64_t number, unsigned most) {
  for (std::int64_t next = 0; most > 0 && ::read(pipe, &next, sizeof next) == sizeof next; --most) number = next;
  return number;
}

/// Waits for so many steps of a file on its way to the disk (made, filled, closed, put in place), or for the end of the
/// process that writes, which closes the pipe.
void awaitSteps(int watch, int pipe, unsigned steps) {
  alignas(inotify_event) std::array<char, 4096> events;
  while (steps > 0) {
    std::array<pollfd, 2> ready{pollfd{watch, POLLIN, 0}, pollfd{pipe, 0, 0}};
    ::poll(ready.data(), ready.size(), -1);
    if (!(ready[0].revents & POLLIN)) return;
    const ssize_t length = ::read(watch, events.data(), events.size());
    for (ssize_t at = 0; at < length && steps > 0; --steps) {
      const auto* const event = reinterpret_cast<const inotify_event*>(events.data() + at);
      at += static_cast<ssize_t>(sizeof *event + event->len);
    }
  }
}

TEST(UserDefaultsKill, NeverLosesWhatWasSavedNorLeavesAnUnreadableFile) {
  const fs::path folder = fs::temp_directory_path() / "user defaults kill test";
  fs::remove_all(folder);
  fs::create_directories(folder);
  std::mt19937 random(7);
  std::int64_t saved = -1;
  std::int64_t kills = 0;
  for (int round = 0; round < 200; ++round) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const int watch = ::inotify_init1(IN_CLOEXEC);
    ASSERT_GE(::inotify_add_watch(watch, folder.c_str(), IN_CREATE | IN_MODIFY | IN_CLOSE_WRITE | IN_MOVED_TO), 0);
    const pid_t child = ::fork();
    if (child == 0) {
      ::close(ends[0]);
      ::close(watch);
      saveForEver(folder, saved + 1, ends[1]);
    }
    ::close(ends[1]);
    saved = lastOf(ends[0], saved, random() % 4);
    awaitSteps(watch, ends[0], random() % 24);  // into the middle of the next ones
    ::kill(child, SIGKILL);
    saved = lastOf(ends[0], saved, UINT_MAX);
    ::close(ends[0]);
    ::close(watch);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    kills += WIFSIGNALED(status) ? 1 : 0;

    testing::internal::CaptureStderr();
    const std::optional<Data> found = UserDefaults(folder).data("storedMessages");
    ASSERT_EQ(testing::internal::GetCapturedStderr(), "") << "a file was unreadable in round " << round;
    const std::int64_t number = found ? numberOf(*found) : -1;
    ASSERT_GE(number, saved) << "round " << round;
    saved = number;
    for (const auto& entry : fs::directory_iterator(folder)) {
      ASSERT_EQ(entry.path().extension(), ".value") << "left behind in round " << round;
    }
  }
  EXPECT_EQ(kills, 200);
  EXPECT_GT(saved, 200) << "the children hardly came to saving";
  fs::remove_all(folder);
}

}  // namespace
}  // namespace platform
