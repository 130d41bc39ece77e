// Files are sent as they stood when the sending began, and never held in memory.
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "tests/platform/foundation/NetworkTest.h"

namespace platform {
namespace {

class URLSessionUploadTest : public NetworkTest {
 protected:
  static constexpr std::size_t length = 64 << 20;

  URLSessionUploadTest() { writeFile(); }
  ~URLSessionUploadTest() override { std::filesystem::remove(path_); }

  /// A file of holes, written an hour ago.
  void writeFile() const {
    std::filesystem::remove(path_);
    std::ofstream(path_) << "film";
    std::filesystem::resize_file(path_, length);
    std::filesystem::last_write_time(path_, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  }
  Outcome upload(const std::string& address) {
    URLRequest put(*URL::parse(address));
    put.setHTTPMethod("PUT");
    Outcome outcome;
    session_->uploadTask(put, URL::fileURL(path_.string()), into(outcome))->resume();
    RunLoop::settle();
    EXPECT_EQ(outcome.calls, 1);
    return outcome;
  }
  /// Takes in the rest of a body whose beginning is behind the head; says how long it was.
  static std::size_t takeBody(const std::string& request, const Connection& connection) {
    const std::size_t begun = request.size() - request.find("\r\n\r\n") - 4;
    return begun + connection.skip(length - begun);
  }
  /// The most memory that the process has held since the last call, in bytes.
  static std::size_t peakOfMemory() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "VmHWM:") continue;
    std::size_t kibibytes = 0;
    status >> kibibytes;
    std::ofstream("/proc/self/clear_refs") << "5";
    return kibibytes << 10;
  }

  const std::filesystem::path path_ =
      std::filesystem::temp_directory_path() / ("url session upload test " + std::to_string(::getpid()));
};

TEST_F(URLSessionUploadTest, HoldsNoFileInMemory) {
  std::atomic<std::size_t> received{0};
  const LoopbackServer server(
      [&](const std::string& request, const Connection& connection) {
        received = takeBody(request, connection);
        connection.write(reply("thanks"));
      },
      LoopbackServer::Reads::head);
  peakOfMemory();
  const std::size_t before = peakOfMemory();
  EXPECT_EQ(upload(server.address()).data, "thanks");
  EXPECT_LT(peakOfMemory(), before + length / 4);
  EXPECT_EQ(received, length);
}

TEST_F(URLSessionUploadTest, SendsNoFileToItsEndThatChangesMeanwhile) {
  struct Change {
    const char* what;
    std::function<void()> make;
  };
  const Change changes[] = {
      {"shortened", [&] { std::filesystem::resize_file(path_, length / 2); }},
      {"made longer", [&] { std::filesystem::resize_file(path_, length + 1); }},
      {"written to", [&] { std::fstream(path_, std::ios::in | std::ios::out) << "FILM"; }},
      {"removed", [&] { std::filesystem::remove(path_); }},
  };
  for (const Change& change : changes) {
    SCOPED_TRACE(change.what);
    writeFile();
    std::size_t received = 0;
    auto server = std::make_unique<LoopbackServer>(
        [&](const std::string& request, const Connection& connection) {
          change.make();
          received = takeBody(request, connection);
          if (received == length) connection.write(reply("thanks"));
        },
        LoopbackServer::Reads::head);
    EXPECT_EQ(upload(server->address()).error, URLError(URLError::cannotOpenFile));
    EXPECT_EQ(server->connections(), 1);
    EXPECT_EQ(server->requests(), 1);
    server = nullptr;  // its thread has counted what it received
    EXPECT_LT(received, length);
  }
}

}  // namespace
}  // namespace platform
