#include "platform/engine/curl/CurlThread.h"

#include <algorithm>
#include <csignal>
#include <system_error>
#include <utility>

#include "platform/engine/curl/CurlExchange.h"

namespace platform {

namespace {

constexpr int longestWait = 1000;  // milliseconds; a wake-up that was lost costs no more

/// The host may use libcurl as well: the library counts who begins, and from 7.84 on does so safely on any thread.
bool isLibraryReady() {
  static const bool isReady = ::curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return isReady;
}

/// While it lives, threads start without signals: the host's handlers do not run on them, and a connection that breaks
/// while TLS writes to it raises none.
class WithoutSignals {
 public:
  WithoutSignals() {
    sigset_t all;
    sigfillset(&all);
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS}) sigdelset(&all, fault);
    ::pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~WithoutSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  WithoutSignals(const WithoutSignals&) = delete;
  WithoutSignals& operator=(const WithoutSignals&) = delete;

 private:
  sigset_t before_;
};

}  // namespace

CurlThread::~CurlThread() { stop(); }

void CurlThread::start(std::shared_ptr<CurlExchange> exchange) { post({std::move(exchange), true}); }

void CurlThread::abort(std::shared_ptr<CurlExchange> exchange) { post({std::move(exchange), false}); }

void CurlThread::post(Command command) {
  {
    const std::lock_guard lock(mutex_);
    if (isOver_) return;
    const bool isRunning = thread_.joinable() || (command.isStart && launch());
    if (isRunning) {
      commands_.push_back(std::move(command));
      ::curl_multi_wakeup(multi_);
      changed_.notify_one();
      return;
    }
  }
  if (command.isStart) command.exchange->fail(URLError::unknown);
}

bool CurlThread::launch() {
  if (!isLibraryReady()) return false;
  if (!multi_) multi_ = ::curl_multi_init();
  if (!multi_) return false;
  const WithoutSignals guard;
  try {
    thread_ = std::thread([this] { turn(); });
  } catch (const std::system_error&) {
    return false;  // the machine has no thread left
  }
  return true;
}

void CurlThread::stop() {
  std::thread ended;
  {
    const std::lock_guard lock(mutex_);
    if (thread_.get_id() == std::this_thread::get_id()) return;
    isOver_ = true;
    ended.swap(thread_);
    if (ended.joinable()) ::curl_multi_wakeup(multi_);
    changed_.notify_one();
  }
  if (!ended.joinable()) return;
  ended.join();
  ::curl_multi_cleanup(std::exchange(multi_, nullptr));
}

void CurlThread::turn() {
  while (takeCommands()) {
    beginTurns();
    int running = 0;
    ::curl_multi_perform(multi_, &running);
    collectFinished();
    endOverdue();
    if (!exchanges_.empty()) ::curl_multi_poll(multi_, nullptr, 0, millisecondsToWait(), nullptr);
  }
  while (!exchanges_.empty()) {
    const std::shared_ptr<CurlExchange> lost = exchanges_.begin()->second;
    close(exchanges_.begin()->first);
    lost->fail(URLError::networkConnectionLost);
  }
}

bool CurlThread::takeCommands() {
  std::vector<Command> commands;
  bool isOver = false;
  {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isOver_ || !commands_.empty() || !exchanges_.empty(); });
    commands.swap(commands_);
    isOver = isOver_;
  }
  for (Command& command : commands) {
    if (command.isStart) {
      open(std::move(command.exchange));
    } else {
      const auto found = exchanges_.find(command.exchange->easy());
      if (found != exchanges_.end()) close(found->first);
    }
  }
  return !isOver;
}

void CurlThread::open(std::shared_ptr<CurlExchange> exchange) {
  if (const std::optional<URLError::Code> reason = exchange->open()) return exchange->fail(*reason);
  CURL* const easy = exchange->easy();
  if (::curl_multi_add_handle(multi_, easy) != CURLM_OK) return exchange->fail(URLError::unknown);
  exchanges_.emplace(easy, std::move(exchange));
}

void CurlThread::close(CURL* easy) {
  ::curl_multi_remove_handle(multi_, easy);
  exchanges_.erase(easy);
}

void CurlThread::beginTurns() {
  std::vector<std::pair<std::shared_ptr<CurlExchange>, CURLcode>> failed;
  for (const auto& [easy, exchange] : exchanges_) {
    if (const CURLcode result = exchange->beginTurn(); result != CURLE_OK) failed.emplace_back(exchange, result);
  }
  for (const auto& [exchange, result] : failed) {
    close(exchange->easy());
    exchange->finish(result);
  }
}

void CurlThread::collectFinished() {
  int left = 0;
  while (const CURLMsg* const message = ::curl_multi_info_read(multi_, &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    CURL* const easy = message->easy_handle;
    const CURLcode result = message->data.result;
    const std::shared_ptr<CurlExchange> exchange = exchanges_.at(easy);
    close(easy);
    exchange->finish(result);
  }
}

void CurlThread::endOverdue() {
  const auto now = CurlExchange::Clock::now();
  std::vector<std::shared_ptr<CurlExchange>> overdue;
  for (const auto& [easy, exchange] : exchanges_) {
    if (exchange->deadline() <= now) overdue.push_back(exchange);
  }
  for (const auto& exchange : overdue) {
    close(exchange->easy());
    exchange->fail(URLError::timedOut);
  }
}

int CurlThread::millisecondsToWait() const {
  const auto now = CurlExchange::Clock::now();
  std::chrono::milliseconds wait{longestWait};
  for (const auto& [easy, exchange] : exchanges_) {
    if (exchange->isPaused()) return 0;
    wait = std::min(wait, std::chrono::ceil<std::chrono::milliseconds>(exchange->deadline() - now));
  }
  return static_cast<int>(std::max<std::chrono::milliseconds::rep>(wait.count(), 0));
}

}  // namespace platform
