#pragma once

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "service/http/Http.h"

namespace service {

/// Appends every HTTP exchange to a file, one JSON object a line, with the secret key left out. Any thread; a line is
/// in the file before its response is sent. A full disk loses lines, never a request.
class ExchangeLog {
 public:
  using Now = std::function<std::int64_t()>;

  /// Throws LoadError when the file cannot be written. `now` is the time in milliseconds since 1970.
  ExchangeLog(const std::filesystem::path& file, Now now);

  void add(const HttpExchange& exchange);

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::mutex mutex_;
  std::unique_ptr<std::FILE, Close> file_;
  Now now_;
};

}  // namespace service
