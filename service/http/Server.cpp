#include "service/http/Server.h"

#include <array>
#include <chrono>
#include <httplib.h>

#include "service/http/ConnectionPool.h"
#include "service/http/ConnectionStream.h"

namespace service {
namespace {

/// What is known of the request that the current worker serves.
struct Visit {
  Visit(int socket, const ServerLimits& limits) : stream(socket, limits) {}

  ConnectionStream stream;
  HttpRequest request;
  bool isHeadSound = true;
  bool isInputConsumed = false;
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

// The library's callbacks carry no context of the connection; a worker serves one connection at a time.
thread_local Visit* visit = nullptr;

void copyResponse(const HttpResponse& from, httplib::Response& to) {
  to.status = from.status;
  to.set_content(from.body, from.contentType);
  for (const auto& [name, value] : from.headers) to.set_header(name, value);
}

std::string textOf(const HttpResponse& response, std::string_view reason) {
  return "HTTP/1.1 " + std::to_string(response.status) + " " + std::string(reason) +
         "\r\nContent-Type: " + response.contentType + "\r\nContent-Length: " + std::to_string(response.body.size()) +
         "\r\nConnection: close\r\n\r\n" + response.body;
}

}  // namespace

/// The HTTP library's server, of which only the reading and writing of one request is used: sockets and threads are
/// the pool's, so that they are bounded and can be stopped.
class Server::Protocol : public httplib::Server {
 public:
  Protocol(const ServerLimits& limits, Delegate& delegate) : limits_(limits), delegate_(delegate) {
    set_expect_100_continue_handler(
        [this](const auto&, auto& response) { return refuse(response) ? response.status : 100; });
    set_pre_routing_handler([this](const auto& request, auto& response) { return route(request, response); });
    Post(R"([\s\S]*)", [this](const auto&, auto& response, const auto& reader) { answerWithBody(response, reader); });
    Put(R"([\s\S]*)", [this](const auto&, auto& response, const auto& reader) { answerWithBody(response, reader); });
    set_error_handler(httplib::Server::Handler([this](const auto&, auto& response) { complete(response); }));
    set_exception_handler([](const auto&, auto& response, std::exception_ptr) { response.status = 500; });
    set_post_routing_handler([this](const auto&, auto& response) { log(response.status, response); });
  }

  void serve(int socket) {
    Visit current(socket, limits_);
    visit = &current;
    bool isClosed = false;
    try {
      process_request(current.stream, true, isClosed, [this](httplib::Request& request) { begin(request); });
    } catch (const std::exception&) {
      // Out of memory while a head was read: this client gets no answer, the others do.
    }
    if (!current.stream.hasSent() && current.stream.hasReceived()) answerWithoutHead();
    if (!current.isInputConsumed) current.stream.finishWithUnreadInput();
    visit = nullptr;
  }

  /// Tells a client for which there is no worker and no place left to wait.
  void turnAway(int socket) {
    const std::string text = textOf(delegate_.failure("", 503, "the service is busy"), "Service Unavailable");
    [[maybe_unused]] const auto sent = ::send(socket, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    ::shutdown(socket, SHUT_WR);
    // What lies unread when a socket is closed would take the response with it.
    std::array<char, 4096> unread;
    for (int i = 0; i < 16 && ::recv(socket, unread.data(), unread.size(), MSG_DONTWAIT) > 0; ++i) continue;
  }

 private:
  void begin(httplib::Request& request) {
    visit->stream.beginBody();
    HttpRequest& mine = visit->request;
    mine.method = request.method;
    mine.path = request.path;
    if (const auto mark = request.target.find('?'); mark != std::string::npos)
      mine.query = request.target.substr(mark + 1);
    mine.peer = request.remote_addr;
    auto headers = HeaderFields::parse(visit->stream.head());
    visit->isHeadSound = headers.has_value();
    if (headers) mine.headers = std::move(*headers);
    // Parts of a response and compressed responses are not offered.
    request.ranges.clear();
    request.headers.erase("Accept-Encoding");
  }

  bool refuse(httplib::Response& response) {
    const HttpRequest& request = visit->request;
    const auto refusal = visit->isHeadSound ? delegate_.refusal(request)
                                            : delegate_.failure(request.path, 400, "the request's header is malformed");
    if (refusal) copyResponse(*refusal, response);
    return refusal.has_value();
  }

  HandlerResponse route(const httplib::Request& request, httplib::Response& response) {
    if (refuse(response)) return HandlerResponse::Handled;
    if (request.method == "POST" || request.method == "PUT") return HandlerResponse::Unhandled;
    visit->isInputConsumed = true;
    copyResponse(delegate_.answer(visit->request), response);
    return HandlerResponse::Handled;
  }

  void answerWithBody(httplib::Response& response, const httplib::ContentReader& reader) {
    HttpRequest& request = visit->request;
    if (const auto receiver = delegate_.receiver(request)) return answerUpload(response, reader, *receiver);
    bool isTooLarge = false;
    const bool isComplete = reader([&](const char* data, size_t size) {
      isTooLarge = request.body.size() + size > limits_.bodyBytes;
      if (!isTooLarge) request.body.append(data, size);
      return !isTooLarge;
    });
    if (isComplete) {
      visit->isInputConsumed = true;
      copyResponse(delegate_.answer(request), response);
    } else if (isTooLarge) {
      request.body.clear();
      copyResponse(delegate_.failure(request.path, 413, "the body is larger than is accepted"), response);
    } else {
      response.status = 400;
      complete(response);
    }
  }

  void answerUpload(httplib::Response& response, const httplib::ContentReader& reader, BodyReceiver& receiver) {
    visit->stream.beginUpload();
    bool isRefused = false;
    const bool isWhole = reader([&](const char* data, size_t size) {
      isRefused = !receiver.take({data, size});
      return !isRefused;
    });
    if (isRefused) return copyResponse(receiver.refusal(), response);
    if (!isWhole) {
      response.status = 400;
      return complete(response);
    }
    visit->isInputConsumed = true;
    copyResponse(receiver.finish(), response);
  }

  /// Gives a body to what the library itself refuses, and the right name to what our stream refused it.
  void complete(httplib::Response& response) {
    if (!response.body.empty()) return;
    if (visit->stream.isHeadTooLarge()) response.status = 431;
    if (visit->stream.hasTimedOut()) response.status = 408;
    copyResponse(delegate_.failure(visit->request.path, response.status, messageFor(response.status)), response);
  }

  static std::string_view messageFor(int status) {
    switch (status) {
      case 408:
        return "the request took too long";
      case 414:
        return "the address is too long";
      case 431:
        return "the request's header is too large";
      case 500:
        return "the service failed";
      default:
        return "the request is malformed";
    }
  }

  /// The library gives up without a word when not even the first line can be read.
  void answerWithoutHead() {
    httplib::Response response;
    response.status = 400;
    complete(response);
    const HttpResponse mine{response.status, "application/json", response.body, {}};
    log(response.status, response);
    const std::string text = textOf(mine, "Refused");
    visit->stream.httplib::Stream::write(text);
  }

  void log(int status, const httplib::Response& response) {
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - visit->start;
    delegate_.log({visit->request, status, response.get_header_value("Content-Type"), response.body, time.count()});
  }

  const ServerLimits& limits_;
  Delegate& delegate_;
};

Server::Server(const std::string& host, int port, ServerLimits limits, Delegate& delegate)
    : limits_(limits), listener_(host, port), protocol_(std::make_unique<Protocol>(limits_, delegate)) {}

Server::~Server() = default;

void Server::run() {
  ConnectionPool pool(limits_.workers, limits_.waitingConnections,
                      [this](const FileDescriptor& connection) { protocol_->serve(connection.get()); });
  for (;;) {
    FileDescriptor client = listener_.accept();
    if (!client.isOpen()) return;
    if (!pool.offer(client)) protocol_->turnAway(client.get());
  }
}

}  // namespace service
