#include "platform/engine/curl/CurlTransport.h"

#include <cstdlib>
#include <utility>

#include "platform/engine/curl/CurlExchange.h"
#include "platform/engine/curl/CurlThread.h"

namespace platform {

namespace {

class Handle final : public HttpTransport::Exchange {
 public:
  Handle(std::shared_ptr<CurlThread> thread, std::shared_ptr<CurlExchange> exchange)
      : thread_(std::move(thread)), exchange_(std::move(exchange)) {}
  void cancel() override {
    exchange_->forget();
    thread_->abort(exchange_);
  }

 private:
  const std::shared_ptr<CurlThread> thread_;
  const std::shared_ptr<CurlExchange> exchange_;
};

}  // namespace

HttpTransport& HttpTransport::shared() {
  static CurlTransport* const only = [] {
    auto* const transport = new CurlTransport;
    static CurlTransport* stopped = nullptr;
    stopped = transport;
    std::atexit([] { stopped->stop(); });
    return transport;
  }();
  return *only;
}

CurlTransport::CurlTransport(std::string authorities)
    : authorities_(std::move(authorities)), thread_(std::make_shared<CurlThread>()) {}

CurlTransport::~CurlTransport() { stop(); }

void CurlTransport::stop() { thread_->stop(); }

Ref<HttpTransport::Exchange> CurlTransport::send(Request request, Completion completion) {
  auto exchange = std::make_shared<CurlExchange>(std::move(request), std::move(completion), authorities_);
  thread_->start(exchange);
  return std::make_shared<Handle>(thread_, std::move(exchange));
}

}  // namespace platform
