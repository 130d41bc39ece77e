#pragma once

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

/// A program that the test started. Ended and waited for when it goes out of scope.
class ChildProcess {
 public:
  /// `environment` is added to the test's own.
  ChildProcess(const std::vector<std::string>& command, const std::map<std::string, std::string>& environment = {});
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// The next line of its standard output, without the line break; empty once it has closed it.
  std::string readLine();
  /// The rest of its standard output.
  std::string readAll();
  /// Waits for its end: the exit code, or 128 and the signal that ended it.
  int wait();

 private:
  pid_t pid_ = -1;
  int output_ = -1;
  bool ended_ = false;
  int result_ = 0;
};
