#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <curl/curl.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>

#include "platform/engine/HttpTransport.h"
#include "platform/engine/curl/ChunkReader.h"
#include "platform/engine/curl/GzipReader.h"
#include "platform/engine/curl/ReplyHead.h"
#include "platform/engine/curl/TlsCheck.h"

namespace platform {

/// One request on its way through libcurl, on a connection of its own, sent once. Everything but `forget` and the
/// constructor runs on the network's thread.
class CurlExchange {
 public:
  using Clock = std::chrono::steady_clock;

  /// `authorities`: a file of trusted ones in place of the machine's, or empty.
  CurlExchange(HttpTransport::Request request, HttpTransport::Completion completion, std::string authorities);
  CurlExchange(const CurlExchange&) = delete;
  CurlExchange& operator=(const CurlExchange&) = delete;

  /// Readies the handle, or says why it cannot be.
  std::optional<URLError::Code> open();
  /// None before `open` and once the exchange is over.
  CURL* easy() const { return easy_.get(); }
  /// When it has taken too long.
  Clock::time_point deadline() const { return std::min(lastProgress_ + idleLimit_, overallDeadline_); }
  /// A turn of the thread begins: goes on with what the last one left. When that fails, the transfer has ended so.
  CURLcode beginTurn();
  /// It had its share of this turn, and more has arrived.
  bool isPaused() const { return isPaused_; }
  /// The transfer has ended: judges it and calls the completion. The handle is in nobody's hands by then.
  void finish(CURLcode result);
  /// Ends it otherwise.
  void fail(URLError::Code code);
  /// The completion will not be called any more. Any thread.
  void forget();

 private:
  struct CloseEasy {
    void operator()(CURL* easy) const { ::curl_easy_cleanup(easy); }
  };
  struct FreeList {
    void operator()(curl_slist* list) const { ::curl_slist_free_all(list); }
  };
  struct FreeAddress {
    void operator()(CURLU* address) const { ::curl_url_cleanup(address); }
  };
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  using File = std::unique_ptr<std::FILE, CloseFile>;

  template <class Value>
  void set(CURLoption option, Value value) {
    isReady_ = ::curl_easy_setopt(easy_.get(), option, value) == CURLE_OK && isReady_;
  }
  std::optional<URLError::Code> openAddress();
  std::optional<URLError::Code> openFiles();
  void setRules();
  void setBody();
  void setHeaders();
  void setSecurity();
  void addHeader(const std::string& line);

  std::size_t takeHeadLine(std::string_view line);
  void readCodings();
  std::size_t takeBody(std::string_view bytes);
  bool unpack(std::string_view bytes);
  bool keep(std::string_view bytes);
  bool isBodyFileAsItWas() const;
  std::size_t giveBody(char* target, std::size_t size);
  bool noteProgress(curl_off_t bytes);
  std::optional<URLError::Code> judge(CURLcode result) const;
  void complete(HttpTransport::Reply reply);

  HttpTransport::Request request_;
  std::mutex mutex_;
  HttpTransport::Completion completion_;  // guarded: taken once, by whoever ends the exchange
  const std::string authorities_;

  std::unique_ptr<CURLU, FreeAddress> address_;
  std::unique_ptr<curl_slist, FreeList> headers_;
  std::unique_ptr<CURL, CloseEasy> easy_;
  File bodyFile_;
  struct stat bodyFileAtFirst_ {};
  curl_off_t bodyLength_ = 0;  // what is left to send
  File replyFile_;
  std::optional<TlsCheck> tlsCheck_;
  bool isReady_ = true;
  bool unpacks_ = true;

  Clock::duration idleLimit_{};
  Clock::time_point lastProgress_;
  Clock::time_point overallDeadline_;
  curl_off_t moved_ = 0;
  std::size_t headBytes_ = 0;
  std::size_t received_ = 0;
  std::size_t unpacked_ = 0;
  std::size_t inThisTurn_ = 0;  // received and unpacked
  bool isPaused_ = false;
  ReplyHead head_;
  bool endsWithConnection_ = false;  // the body does
  bool isBodyReadable_ = true;       // false when it is coded in a way that nobody asked for
  std::optional<ChunkReader> chunks_;
  std::unique_ptr<GzipReader> gzip_;
  std::optional<URLError::Code> failure_;  // why a transfer was broken off from here
  HttpTransport::Reply result_;
};

}  // namespace platform
