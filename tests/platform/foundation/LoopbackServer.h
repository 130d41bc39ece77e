#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace platform {

/// A server of raw bytes on the loopback interface: it reads a request on each connection, lets the test write whatever
/// it likes, and hangs up. Everything ends with the object.
class LoopbackServer {
 public:
  /// Answers one request: gets the request (head and, by its Content-Length, body) and writes through `Connection`.
  class Connection {
   public:
    explicit Connection(int socket) : socket_(socket) {}
    /// False once the client has gone.
    bool write(std::string_view bytes) const;
    /// Waits, with the connection open, until the client closes it.
    void waitForClient() const;
    /// Takes in so many bytes more and forgets them; says how many came before the client closed.
    std::size_t skip(std::size_t bytes) const;
    /// The connection stays open for a further request.
    void keepOpen() const { isKept_ = true; }

   private:
    friend class LoopbackServer;
    const int socket_;
    mutable bool isKept_ = false;
  };
  using Handler = std::function<void(const std::string& request, const Connection& connection)>;

  /// How much of a request a handler waits for. After the head, what has come of the body is in the request as well.
  enum class Reads { everything, head };

  explicit LoopbackServer(Handler handler, Reads reads = Reads::everything);
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  std::string address(const std::string& path = "/") const;
  int connections() const { return connections_; }
  /// Requests that arrived as far as they are read.
  int requests() const { return requests_; }
  /// A port at which nobody listens.
  static int freePort();

 private:
  void serve();
  void answer(int socket);

  std::size_t lengthOfRequest(const std::string& bytes) const;

  const Handler handler_;
  const Reads reads_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<int> connections_{0};
  std::atomic<int> requests_{0};
  std::mutex mutex_;
  std::set<int> open_;  // guarded by the mutex: connections that are being answered
  std::vector<std::thread> answers_;
  std::thread thread_;
};

}  // namespace platform
