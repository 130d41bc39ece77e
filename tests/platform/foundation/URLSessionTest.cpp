#include <filesystem>
#include <fstream>

#include "platform/dispatch/Clock.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/URLProtocol.h"
#include "platform/foundation/URLSession.h"
#include "platform/foundation/URLSessionTask.h"

namespace platform {
namespace {

using testing::ElementsAre;

/// A session whose requests are answered by the test, in virtual time.
class URLSessionTest : public testing::Test {
 protected:
  struct Outcome {
    int calls = 0;
    std::optional<Data> data;
    std::optional<HTTPURLResponse> response;
    std::optional<URLError> error;
    double instant = 0;  // since the test began
  };

  URLSession::DataCompletion into(Outcome& outcome) {
    return
        [&outcome](std::optional<Data> data, std::optional<HTTPURLResponse> response, std::optional<URLError> error) {
          EXPECT_FALSE(isMainThread());
          outcome = {outcome.calls + 1, std::move(data), std::move(response), error,
                     CACurrentMediaTime() - Clock::virtualMediaTimeAtStart};
        };
  }
  /// Loads the request and lets an hour pass.
  Outcome load(const URLRequest& request) {
    Outcome outcome;
    session_->dataTask(request, into(outcome))->resume();
    RunLoop::advance(3600);
    EXPECT_EQ(outcome.calls, 1);
    return outcome;
  }
  URLError::Code codeOf(const URLRequest& request) {
    const Outcome outcome = load(request);
    EXPECT_FALSE(outcome.data);
    EXPECT_FALSE(outcome.response);
    return outcome.error ? outcome.error->code() : URLError::unknown;
  }
  static URLRequest request(std::string_view address = "https://tea.example/sdk/init") {
    return URLRequest(*URL::parse(address));
  }

  const VirtualTime time_;
  Ref<URLSession> session_ = URLSession::withConfiguration();
  std::vector<URLRequest> seen_;
  std::function<URLProtocol::Reply(const URLRequest&)> answer_ = [](const URLRequest&) {
    return URLProtocol::Reply::data(200, "tea");
  };
  const URLProtocol::Registration stub_ = URLProtocol::registerHandler([this](const URLRequest& asked) {
    seen_.push_back(asked);
    return answer_(asked);
  });
};

TEST_F(URLSessionTest, SendsTheRequestAsItStandsAndHandsOverTheReply) {
  URLRequest post = request();
  post.setHTTPMethod("POST");
  post.setValue("k", "secret-key");
  post.setHTTPBody("{\"a\":1}");
  answer_ = [](const URLRequest&) { return URLProtocol::Reply::json(500, JSONValue::object({{"statusCode", 200}})); };
  const Outcome outcome = load(post);
  ASSERT_EQ(seen_.size(), 1U);
  EXPECT_EQ(seen_[0].httpMethod(), "POST");
  EXPECT_EQ(seen_[0].httpBody(), "{\"a\":1}");
  EXPECT_EQ(seen_[0].headers(), (HTTPHeaders{{"secret-key", "k"}}));
  EXPECT_EQ(outcome.data, "{\"statusCode\":200}");
  EXPECT_EQ(outcome.response->statusCode(), 500) << "a status is no error";
  EXPECT_EQ(*outcome.response->value("content-type"), "application/json");
  EXPECT_FALSE(outcome.error);
  EXPECT_EQ(outcome.instant, 0);
}

TEST_F(URLSessionTest, DoesNothingUntilATaskIsResumedAndThenItOnce) {
  Outcome outcome;
  const Ref<URLSessionTask> task = session_->dataTask(request(), into(outcome));
  RunLoop::settle();
  EXPECT_EQ(seen_.size(), 0U);
  EXPECT_EQ(task->state(), URLSessionTask::State::suspended);
  task->resume();
  task->resume();
  RunLoop::settle();
  EXPECT_EQ(seen_.size(), 1U);
  EXPECT_EQ(outcome.calls, 1);
  EXPECT_EQ(task->state(), URLSessionTask::State::completed);
}

TEST_F(URLSessionTest, GivesAnEmptyReplyAsEmptyData) {
  answer_ = [](const URLRequest&) { return URLProtocol::Reply::data(204, ""); };
  EXPECT_EQ(load(request()).data, "");
}

TEST_F(URLSessionTest, DeliversADelayedReplyAtItsInstant) {
  answer_ = [](const URLRequest&) { return URLProtocol::Reply::data(200, "late").after(2.5); };
  EXPECT_EQ(load(request()).instant, 2.5);
}

TEST_F(URLSessionTest, TimesOutWhenNothingComes) {
  URLRequest quick = request();
  quick.setTimeoutInterval(10);
  answer_ = [](const URLRequest&) { return URLProtocol::Reply::never(); };
  Outcome outcome = load(quick);
  EXPECT_EQ(outcome.error, URLError(URLError::timedOut));
  EXPECT_EQ(outcome.instant, 10);
  answer_ = [](const URLRequest&) { return URLProtocol::Reply::data(200, "too late").after(10.5); };
  EXPECT_EQ(codeOf(quick), URLError::timedOut);
}

TEST_F(URLSessionTest, ReportsTheFailuresOfTheTransport) {
  answer_ = [](const URLRequest&) { return URLProtocol::Reply::failure(URLError::cannotConnectToHost); };
  const Outcome outcome = load(request());
  EXPECT_EQ(outcome.error, URLError(URLError::cannotConnectToHost));
  EXPECT_EQ(outcome.error->localizedDescription(), "The server could not be reached.");
  answer_ = [](const URLRequest&) {
    URLProtocol::Reply reply;
    reply.closesInMidReply = true;
    return reply;
  };
  EXPECT_EQ(codeOf(request()), URLError::networkConnectionLost);
}

TEST_F(URLSessionTest, CompletesACancelledTaskOnceAndNeverASuspendedOne) {
  answer_ = [](const URLRequest&) { return URLProtocol::Reply::data(200, "late").after(5); };
  Outcome running;
  Outcome suspended;
  const Ref<URLSessionTask> task = session_->dataTask(request(), into(running));
  const Ref<URLSessionTask> never = session_->dataTask(request(), into(suspended));
  task->resume();
  RunLoop::advance(1);
  task->cancel();
  task->cancel();
  never->cancel();
  RunLoop::advance(100);
  EXPECT_EQ(running.calls, 1);
  EXPECT_EQ(running.error, URLError(URLError::cancelled));
  EXPECT_EQ(running.instant, 1);
  EXPECT_EQ(suspended.calls, 0);
}

TEST_F(URLSessionTest, RefusesWhatCouldBeInjectedBeforeAnythingIsSent) {
  const auto withField = [](const std::string& name, const std::string& value) {
    URLRequest spoiled = request();
    spoiled.setValue(value, name);
    return spoiled;
  };
  EXPECT_EQ(codeOf(withField("user-id", "a\r\nHost: evil")), URLError::badRequest);
  EXPECT_EQ(codeOf(withField("user-id", std::string("a\0b", 3))), URLError::badRequest);
  EXPECT_EQ(codeOf(withField("user-id", "a\x7F")), URLError::badRequest);
  EXPECT_EQ(codeOf(withField("user id", "a")), URLError::badRequest);
  URLRequest method = request();
  method.setHTTPMethod("GET / HTTP/1.1\r\n");
  EXPECT_EQ(codeOf(method), URLError::badRequest);
  EXPECT_EQ(codeOf(request("ftp://tea.example/")), URLError::unsupportedURL);
  EXPECT_EQ(codeOf(request("file:///etc/passwd")), URLError::unsupportedURL);
  EXPECT_EQ(codeOf(request("no-scheme")), URLError::unsupportedURL);
  EXPECT_EQ(seen_.size(), 0U);
}

TEST_F(URLSessionTest, BoundsTheReply) {
  URLSessionConfiguration configuration;
  configuration.maximumResponseBytes = 10;
  session_ = URLSession::withConfiguration(configuration);
  answer_ = [](const URLRequest&) { return URLProtocol::Reply::data(200, std::string(10, 'x')); };
  EXPECT_TRUE(load(request()).data);
  answer_ = [](const URLRequest&) { return URLProtocol::Reply::data(200, std::string(11, 'x')); };
  EXPECT_EQ(codeOf(request()), URLError::dataLengthExceedsMaximum);
}

TEST_F(URLSessionTest, FollowsRedirectionsButNotForEver) {
  answer_ = [](const URLRequest& asked) {
    URLProtocol::Reply reply = URLProtocol::Reply::data(302, "moved");
    const int step = std::atoi(asked.url().lastPathComponent().c_str());
    if (step == 3) return URLProtocol::Reply::data(200, "here");
    reply.headers.set("Location", "/" + std::to_string(step + 1));
    return reply;
  };
  const Outcome outcome = load(request("https://tea.example/1"));
  EXPECT_EQ(outcome.data, "here");
  EXPECT_EQ(outcome.response->url().absoluteString(), "https://tea.example/3");
  seen_.clear();
  EXPECT_EQ(codeOf(request("https://tea.example/4")), URLError::httpTooManyRedirects);
  EXPECT_EQ(seen_.size(), 11U) << "the first request and ten redirections";
}

TEST_F(URLSessionTest, SendsTheFileOfAnUpload) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() / "url session test upload";
  std::ofstream(path) << "film";
  URLRequest put = request("https://store.example/film");
  put.setHTTPMethod("PUT");
  Outcome outcome;
  session_->uploadTask(put, URL::fileURL(path.string()), into(outcome))->resume();
  RunLoop::settle();
  EXPECT_EQ(outcome.data, "tea");
  ASSERT_EQ(seen_.size(), 1U);
  EXPECT_EQ(seen_[0].httpBody(), "film");
  std::filesystem::remove(path);
  session_->uploadTask(put, URL::fileURL(path.string()), into(outcome))->resume();
  RunLoop::settle();
  EXPECT_EQ(outcome.error, URLError(URLError::fileDoesNotExist));
  EXPECT_EQ(seen_.size(), 1U);
}

TEST_F(URLSessionTest, KeepsADownloadInATemporaryFileForItsCompletion) {
  std::string path;
  std::string content;
  session_
      ->downloadTask(*URL::parse("https://tea.example/font.otf"),
                     [&](std::optional<URL> file, std::optional<HTTPURLResponse>, std::optional<URLError>) {
                       path = file->path();
                       std::getline(std::ifstream(path), content);
                     })
      ->resume();
  RunLoop::settle();
  EXPECT_EQ(content, "tea");
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(URLSessionTest, AsksTheHandlerThatWasRegisteredLastFirst) {
  std::vector<std::string> asked;
  {
    const auto inner = URLProtocol::registerHandler([&](const URLRequest& one) -> std::optional<URLProtocol::Reply> {
      asked.push_back(one.url().host());
      if (one.url().host() == "mine.example") return URLProtocol::Reply::data(200, "mine");
      return std::nullopt;
    });
    EXPECT_EQ(load(request("http://mine.example/")).data, "mine");
    EXPECT_EQ(load(request("http://other.example/")).data, "tea");
  }
  EXPECT_EQ(load(request("http://mine.example/")).data, "tea");
  EXPECT_THAT(asked, ElementsAre("mine.example", "other.example"));
}

TEST_F(URLSessionTest, LetsGoOfTaskAndCompletionWhenItIsOver) {
  const auto held = std::make_shared<int>(1);
  const Ref<URLSessionTask> task = session_->dataTask(
      request(), [held](std::optional<Data>, std::optional<HTTPURLResponse>, std::optional<URLError>) {});
  ASSERT_GT(held.use_count(), 1);
  task->resume();
  RunLoop::settle();
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_EQ(task.use_count(), 1);
}

}  // namespace
}  // namespace platform
