#include "service/http/ExchangeLog.h"

#include <cerrno>
#include <cstring>

#include "service/base/Json.h"
#include "service/base/LoadError.h"
#include "service/base/Utf8.h"

namespace service {
namespace {

constexpr std::size_t kMaximumBody = 256u << 10;

OrderedJson headersOf(const HttpRequest& request) {
  OrderedJson headers = OrderedJson::object();
  for (const auto& [name, value] : request.headers.all()) {
    const bool isSecret =
        equalNames(name, "secret-key") || equalNames(name, "Authorization") || equalNames(name, "Cookie");
    headers[name] = isSecret ? "(redacted)" : value;
  }
  return headers;
}

std::string bodyText(std::string_view body) {
  if (body.size() <= kMaximumBody) return std::string(body);
  return std::string(utf8Prefix(body, kMaximumBody)) + "... (" + std::to_string(body.size()) + " bytes)";
}

std::string responseText(const HttpExchange& exchange) {
  if (exchange.contentType == "application/json") return bodyText(exchange.responseBody);
  return "(" + std::to_string(exchange.responseBody.size()) + " bytes of " + exchange.contentType + ")";
}

}  // namespace

ExchangeLog::ExchangeLog(const std::filesystem::path& file, Now now)
    : file_(std::fopen(file.c_str(), "ae")), now_(std::move(now)) {
  if (!file_) throw LoadError(file.string() + ": cannot be written: " + std::strerror(errno));
}

void ExchangeLog::add(const HttpExchange& exchange) {
  OrderedJson line;
  line["time"] = now_();
  line["method"] = exchange.request.method;
  line["path"] = exchange.request.path;
  line["headers"] = headersOf(exchange.request);
  line["requestBody"] = bodyText(exchange.request.body);
  line["status"] = exchange.status;
  line["responseBody"] = responseText(exchange);
  line["milliseconds"] = exchange.milliseconds;
  const std::string text = writeJson(line) + "\n";
  const std::lock_guard lock(mutex_);
  std::fwrite(text.data(), 1, text.size(), file_.get());
  std::fflush(file_.get());
}

}  // namespace service
