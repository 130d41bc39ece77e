#include "platform/engine/curl/CurlExchange.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

constexpr std::size_t longestHead = 256 << 10;  // interim heads and the fields after a body count as well
constexpr std::size_t mostInATurn = 256 << 10;  // then the other exchanges have theirs
constexpr double longestLimit = 1e6;            // seconds

CurlExchange::Clock::duration durationOf(double seconds) {
  const std::chrono::duration<double> bounded(std::clamp(seconds, 0.0, longestLimit));
  return std::chrono::duration_cast<CurlExchange::Clock::duration>(bounded);
}

std::string partOf(CURLU* address, CURLUPart part) {
  char* text = nullptr;
  if (::curl_url_get(address, part, &text, 0) != CURLUE_OK) return {};
  std::string result = text;
  ::curl_free(text);
  return result;
}

/// This very machine, to which no proxy leads.
bool isLoopback(std::string_view host) {
  return host == "localhost" || host.ends_with(".localhost") || host.starts_with("127.") || host == "::1";
}

/// Why libcurl gave up.
URLError::Code codeOf(CURLcode result, CURL* easy) {
  long systemError = 0;
  long connections = 0;
  ::curl_easy_getinfo(easy, CURLINFO_OS_ERRNO, &systemError);
  ::curl_easy_getinfo(easy, CURLINFO_NUM_CONNECTS, &connections);
  switch (result) {
    case CURLE_URL_MALFORMAT:
      return URLError::badURL;
    case CURLE_UNSUPPORTED_PROTOCOL:  // also said of a reply that is no HTTP
      return connections > 0 ? URLError::cannotParseResponse : URLError::unsupportedURL;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return URLError::cannotFindHost;
    case CURLE_COULDNT_CONNECT:
      return systemError == ENETUNREACH ? URLError::notConnectedToInternet : URLError::cannotConnectToHost;
    case CURLE_OPERATION_TIMEDOUT:
      return URLError::timedOut;
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
      return URLError::networkConnectionLost;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
      return URLError::cannotParseResponse;
    case CURLE_FILESIZE_EXCEEDED:
    case CURLE_OUT_OF_MEMORY:  // said of a line of the head that never ends
      return URLError::dataLengthExceedsMaximum;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_ISSUER_ERROR:
      return URLError::serverCertificateUntrusted;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_SHUTDOWN_FAILED:
    case CURLE_NOT_BUILT_IN:
      return URLError::secureConnectionFailed;
    default:
      return URLError::unknown;
  }
}

}  // namespace

CurlExchange::CurlExchange(HttpTransport::Request request, HttpTransport::Completion completion,
                           std::string authorities)
    : request_(std::move(request)), completion_(std::move(completion)), authorities_(std::move(authorities)) {}

// ---- The request

std::optional<URLError::Code> CurlExchange::open() {
  const Clock::time_point now = Clock::now();
  idleLimit_ = durationOf(request_.idleTimeout);
  lastProgress_ = now;
  overallDeadline_ = now + durationOf(request_.overallTimeout > 0 ? request_.overallTimeout : longestLimit);
  easy_.reset(::curl_easy_init());
  if (!easy_) return URLError::unknown;
  std::optional<URLError::Code> reason = openAddress();
  if (!reason) reason = openFiles();
  if (!reason) {
    setRules();
    setBody();
    setHeaders();
    setSecurity();
    if (!isReady_) reason = URLError::secureConnectionFailed;  // a rule that cannot be kept: nothing is sent
  }
  if (reason) easy_.reset();
  return reason;
}

std::optional<URLError::Code> CurlExchange::openAddress() {
  address_.reset(::curl_url());
  if (!address_) return URLError::unknown;
  switch (::curl_url_set(address_.get(), CURLUPART_URL, request_.url.c_str(), CURLU_PATH_AS_IS)) {
    case CURLUE_OK:
      break;
    case CURLUE_UNSUPPORTED_SCHEME:
      return URLError::unsupportedURL;
    default:
      return URLError::badURL;
  }
  std::string host = partOf(address_.get(), CURLUPART_HOST);
  if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
  if (isLoopback(host)) set(CURLOPT_PROXY, "");
  if (partOf(address_.get(), CURLUPART_SCHEME) == "https") tlsCheck_.emplace(std::move(host));
  return std::nullopt;
}

std::optional<URLError::Code> CurlExchange::openFiles() {
  if (!request_.bodyFile.empty()) {
    // Opened so that a pipe, from which nothing may ever come, does not hold up the thread before it is refused.
    const int file = ::open(request_.bodyFile.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) return errno == ENOENT ? URLError::fileDoesNotExist : URLError::cannotOpenFile;
    bodyFile_.reset(::fdopen(file, "rb"));
    if (!bodyFile_) ::close(file);
    struct stat& first = bodyFileAtFirst_;
    if (!bodyFile_ || ::fstat(file, &first) != 0 || !S_ISREG(first.st_mode)) return URLError::cannotOpenFile;
    bodyLength_ = first.st_size;
  }
  if (!request_.replyFile.empty()) {
    replyFile_.reset(std::fopen(request_.replyFile.c_str(), "wbe"));
    if (!replyFile_) return URLError::cannotWriteToFile;
  }
  return std::nullopt;
}

void CurlExchange::setRules() {
  set(CURLOPT_CURLU, address_.get());
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  set(CURLOPT_PATH_AS_IS, 1L);
  set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
  // A connection that was used before is what makes libcurl send again.
  set(CURLOPT_FRESH_CONNECT, 1L);
  set(CURLOPT_FORBID_REUSE, 1L);
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_QUICK_EXIT, 1L);  // a name server that is slow holds up the request that needs it and no other
  set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  set(CURLOPT_HTTP_TRANSFER_DECODING, 0L);  // the pieces of a body are read here
  set(CURLOPT_USERAGENT, "Lumicor");
  const auto longest = static_cast<std::size_t>(std::numeric_limits<curl_off_t>::max());
  const std::size_t limit = std::clamp<std::size_t>(request_.maximumReplyBytes, 1, longest);
  if (request_.method != "HEAD") set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(limit));

  // Their types are those that libcurl calls them with; nothing may be thrown through it, and nothing of this throws
  // but for want of memory, which ends the process.
  using Data = char*;
  set(CURLOPT_HEADERDATA, static_cast<void*>(this));
  set(
      CURLOPT_HEADERFUNCTION, +[](Data data, std::size_t size, std::size_t count, void* self) noexcept {
        return static_cast<CurlExchange*>(self)->takeHeadLine({data, size * count});
      });
  set(CURLOPT_WRITEDATA, static_cast<void*>(this));
  set(
      CURLOPT_WRITEFUNCTION, +[](Data data, std::size_t size, std::size_t count, void* self) noexcept {
        return static_cast<CurlExchange*>(self)->takeBody({data, size * count});
      });
  set(CURLOPT_NOPROGRESS, 0L);
  set(CURLOPT_XFERINFODATA, static_cast<void*>(this));
  set(
      CURLOPT_XFERINFOFUNCTION, +[](void* self, curl_off_t, curl_off_t in, curl_off_t, curl_off_t out) noexcept {
        return static_cast<CurlExchange*>(self)->noteProgress(in + out) ? 0 : 1;
      });
}

void CurlExchange::setBody() {
  const std::string& method = request_.method;
  if (method == "HEAD") {
    set(CURLOPT_NOBODY, 1L);
    return;
  }
  if (bodyFile_) {
    set(CURLOPT_UPLOAD, 1L);
    set(CURLOPT_INFILESIZE_LARGE, bodyLength_);
    set(CURLOPT_READDATA, static_cast<void*>(this));
    set(
        CURLOPT_READFUNCTION, +[](char* target, std::size_t size, std::size_t count, void* self) noexcept {
          return static_cast<CurlExchange*>(self)->giveBody(target, size * count);
        });
  } else if (!request_.body.empty() || method == "POST" || method == "PUT" || method == "PATCH") {
    set(CURLOPT_POST, 1L);
    set(CURLOPT_POSTFIELDS, request_.body.data());
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
  }
  set(CURLOPT_CUSTOMREQUEST, method.c_str());
}

void CurlExchange::addHeader(const std::string& line) {
  curl_slist* const longer = ::curl_slist_append(headers_.get(), line.c_str());
  isReady_ = isReady_ && longer;
  if (!longer) return;
  static_cast<void>(headers_.release());
  headers_.reset(longer);
}

void CurlExchange::setHeaders() {
  const HTTPHeaders& given = request_.headers;
  for (const auto& [name, value] : given) {
    const HTTPHeaders one{{name, ""}};
    if (one.find("Content-Length") || one.find("Transfer-Encoding")) continue;  // the body says so itself
    // A field without a value is written so; with a colon it would mean that the field is to be left out.
    const bool isBlank = value.find_first_not_of(" \t") == std::string::npos;
    addHeader(isBlank ? name + ";" : name + ": " + value);
  }
  const bool hasBody = bodyFile_ || !request_.body.empty();
  if (!given.find("Content-Type")) addHeader(hasBody ? "Content-Type: application/octet-stream" : "Content-Type:");
  if (!given.find("Connection")) addHeader("Connection: close");
  if (!given.find("Expect")) addHeader("Expect:");  // the body follows at once
  unpacks_ = !given.find("Accept-Encoding");
  if (unpacks_) addHeader("Accept-Encoding: gzip");
  set(CURLOPT_HTTPHEADER, headers_.get());
}

void CurlExchange::setSecurity() {
  if (!tlsCheck_) return;
  set(CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
  set(CURLOPT_SSL_VERIFYPEER, 1L);
  set(CURLOPT_SSL_VERIFYHOST, 2L);
  if (!authorities_.empty()) set(CURLOPT_CAINFO, authorities_.c_str());
  // One source of authorities is read once and kept; two are read again for every connection.
  const char* const machines = ::curl_version_info(CURLVERSION_NOW)->cainfo;
  if (machines || !authorities_.empty()) set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
  set(CURLOPT_SSL_CTX_DATA, static_cast<void*>(&*tlsCheck_));
  set(
      CURLOPT_SSL_CTX_FUNCTION, +[](CURL*, void* context, void* check) noexcept {
        return static_cast<const TlsCheck*>(check)->applyTo(context) ? CURLE_OK : CURLE_SSL_CONNECT_ERROR;
      });
}

// ---- What arrives and what leaves

std::size_t CurlExchange::takeHeadLine(std::string_view line) {
  lastProgress_ = Clock::now();
  headBytes_ += line.size();
  if (headBytes_ > longestHead) {
    failure_ = URLError::dataLengthExceedsMaximum;
    return 0;
  }
  if (head_.isComplete()) return line.size();
  head_.addLine(line);
  if (head_.isComplete()) readCodings();
  return line.size();
}

void CurlExchange::readCodings() {
  const int status = head_.statusCode();
  if (request_.method == "HEAD" || status == 204 || status == 304) return;  // whatever it says, no body follows
  using Codings = std::vector<std::string>;
  const Codings ofTransfer = head_.codings("Transfer-Encoding");
  if (ofTransfer == Codings{"chunked"}) {
    chunks_.emplace();
  } else if (!ofTransfer.empty()) {
    isBodyReadable_ = false;
  }
  endsWithConnection_ = !chunks_ && !head_.headers().find("Content-Length");
  if (!unpacks_) return;
  const Codings ofContent = head_.codings("Content-Encoding");
  if (ofContent == Codings{"gzip"} || ofContent == Codings{"x-gzip"}) {
    gzip_ = std::make_unique<GzipReader>();
  } else if (!ofContent.empty()) {
    isBodyReadable_ = false;
  }
}

std::size_t CurlExchange::takeBody(std::string_view bytes) {
  if (inThisTurn_ >= mostInATurn) {
    isPaused_ = true;
    return CURL_WRITEFUNC_PAUSE;
  }
  inThisTurn_ += bytes.size();
  lastProgress_ = Clock::now();
  const auto sink = [this](std::string_view piece) { return unpack(piece); };
  const bool isTaken = isBodyReadable_ && (chunks_ ? chunks_->add(bytes, sink) : unpack(bytes));
  if (isTaken) return bytes.size();
  if (!failure_ && chunks_ && chunks_->hasTooManyRemarks()) failure_ = URLError::dataLengthExceedsMaximum;
  if (!failure_) failure_ = URLError::cannotParseResponse;
  return 0;
}

bool CurlExchange::unpack(std::string_view bytes) {
  received_ += bytes.size();
  if (received_ > request_.maximumReplyBytes) failure_ = URLError::dataLengthExceedsMaximum;
  if (failure_) return false;
  return gzip_ ? gzip_->add(bytes, [this](std::string_view piece) { return keep(piece); }) : keep(bytes);
}

bool CurlExchange::keep(std::string_view bytes) {
  unpacked_ += bytes.size();
  inThisTurn_ += bytes.size();
  if (unpacked_ > request_.maximumReplyBytes) {
    failure_ = URLError::dataLengthExceedsMaximum;
  } else if (!replyFile_) {
    result_.body.append(bytes);
  } else if (std::fwrite(bytes.data(), 1, bytes.size(), replyFile_.get()) != bytes.size()) {
    failure_ = URLError::cannotWriteToFile;
  }
  return !failure_;
}

bool CurlExchange::isBodyFileAsItWas() const {
  struct stat now {};
  const auto& first = bodyFileAtFirst_;
  return ::fstat(::fileno(bodyFile_.get()), &now) == 0 && now.st_nlink > 0 && now.st_size == first.st_size &&
         now.st_mtim.tv_sec == first.st_mtim.tv_sec && now.st_mtim.tv_nsec == first.st_mtim.tv_nsec;
}

std::size_t CurlExchange::giveBody(char* target, std::size_t size) {
  const auto wanted = static_cast<std::size_t>(std::min<curl_off_t>(static_cast<curl_off_t>(size), bodyLength_));
  const std::size_t read = std::fread(target, 1, wanted, bodyFile_.get());
  bodyLength_ -= static_cast<curl_off_t>(read);
  // Asked before the last bytes leave: the server never takes half of one file and half of another for a whole one.
  if ((read > 0 || wanted == 0) && isBodyFileAsItWas()) return read;
  failure_ = URLError::cannotOpenFile;
  return CURL_READFUNC_ABORT;
}

/// False when the time is over. libcurl asks in loops of its own as well, out of which a busy peer does not let it.
bool CurlExchange::noteProgress(curl_off_t bytes) {
  const Clock::time_point now = Clock::now();
  if (bytes != moved_) lastProgress_ = now;
  moved_ = bytes;
  if (now < deadline()) return true;
  if (!failure_) failure_ = URLError::timedOut;
  return false;
}

CURLcode CurlExchange::beginTurn() {
  inThisTurn_ = 0;
  return std::exchange(isPaused_, false) ? ::curl_easy_pause(easy_.get(), CURLPAUSE_CONT) : CURLE_OK;
}

// ---- The end

std::optional<URLError::Code> CurlExchange::judge(CURLcode result) const {
  if (failure_) return failure_;
  if (result != CURLE_OK) return codeOf(result, easy_.get());
  if (!head_.isComplete()) return URLError::networkConnectionLost;  // libcurl takes half a head for a whole one
  if (!head_.isLengthSound()) return URLError::cannotParseResponse;
  // libcurl lets everybody on the way end a connection, and with it the reply. Without TLS nobody could tell.
  if (endsWithConnection_ && tlsCheck_ && !tlsCheck_->isEndAnnounced()) return URLError::networkConnectionLost;
  if (chunks_ && !chunks_->isAtEnd()) return URLError::networkConnectionLost;
  if (gzip_ && !gzip_->isAtEnd()) return URLError::networkConnectionLost;
  return std::nullopt;
}

void CurlExchange::finish(CURLcode result) {
  std::optional<URLError::Code> failure = judge(result);
  if (replyFile_ && std::fclose(replyFile_.release()) != 0 && !failure) failure = URLError::cannotWriteToFile;
  if (failure) return fail(*failure);
  result_.statusCode = head_.statusCode();
  result_.headers = head_.headers();
  complete(std::move(result_));
}

void CurlExchange::fail(URLError::Code code) {
  HttpTransport::Reply reply;
  reply.error = URLError(code);
  complete(std::move(reply));
}

void CurlExchange::complete(HttpTransport::Reply reply) {
  easy_.reset();
  bodyFile_.reset();
  replyFile_.reset();
  result_ = {};
  HttpTransport::Completion completion;
  {
    const std::lock_guard lock(mutex_);
    completion.swap(completion_);
  }
  if (completion) completion(std::move(reply));
}

void CurlExchange::forget() {
  HttpTransport::Completion released;
  const std::lock_guard lock(mutex_);
  released.swap(completion_);
}

}  // namespace platform
