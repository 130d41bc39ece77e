#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "service/Service.h"
#include "service/TasksCommand.h"
#include "service/base/Json.h"
#include "service/base/LoadError.h"

namespace {

service::Service* running = nullptr;

extern "C" void stopRunning(int) { running->stop(); }

void stopOnSignals(service::Service& service) {
  running = &service;
  struct sigaction action {};
  action.sa_handler = &stopRunning;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  // A closed standard output or error must not end the service.
  std::signal(SIGPIPE, SIG_IGN);
}

/// A file's name may hold anything; what is printed stays one line.
void print(std::string line) {
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
  }
  std::fprintf(stderr, "lumicor-service: %s\n", line.c_str());
}

int complain(const char* what, int code) {
  print(what);
  return code;
}

int serve(const service::Arguments& arguments) {
  service::Service service(arguments);
  for (const std::string& warning : service.warnings()) print("warning: " + warning);
  stopOnSignals(service);
  std::printf("lumicor-service: listening on %s\n", service.address().c_str());
  std::fflush(stdout);
  service.run();
  std::signal(SIGINT, SIG_IGN);
  std::signal(SIGTERM, SIG_IGN);
  return 0;
}

}  // namespace

int main(int count, char** words) {
  try {
    if (count > 1 && std::string_view(words[1]) == "tasks") {
      service::runTasksCommand({words + 2, static_cast<std::size_t>(count - 2)});
      return 0;
    }
    const auto arguments = service::Arguments::parse({words + 1, static_cast<std::size_t>(count > 0 ? count - 1 : 0)});
    if (!arguments.wantsHelp) return serve(arguments);
    std::fputs(service::Arguments::usage(), stdout);
    return 0;
  } catch (const service::LoadError& error) {
    return complain(error.what(), 2);
  } catch (const service::JsonError& error) {
    return complain(error.what(), 1);
  } catch (const std::exception& error) {
    return complain(error.what(), 1);
  }
}
