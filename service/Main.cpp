#include <csignal>
#include <cstdio>
#include <exception>

#include "service/Service.h"
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

int serve(const service::Arguments& arguments) {
  service::Service service(arguments);
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
    const auto arguments = service::Arguments::parse({words + 1, static_cast<std::size_t>(count > 0 ? count - 1 : 0)});
    if (!arguments.wantsHelp) return serve(arguments);
    std::fputs(service::Arguments::usage(), stdout);
    return 0;
  } catch (const service::LoadError& error) {
    std::fprintf(stderr, "lumicor-service: %s\n", error.what());
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "lumicor-service: cannot go on: %s\n", error.what());
    return 1;
  }
}
