#pragma once

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

/// A program that the test started. Ended and waited for when it goes out of scope, or when the test dies.
class ChildProcess {
 public:
  /// What happens to what it writes to standard error.
  enum class Errors { shown, read };

  /// `environment` is added to the test's own; an empty value takes the name away. With Errors::read the lines of
  /// standard error stand among those of standard output. A name without a slash is looked up as a shell does.
  explicit ChildProcess(const std::vector<std::string>& command,
                        const std::map<std::string, std::string>& environment = {}, Errors errors = Errors::shown);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// The next line of its standard output, without the line break; empty once it has closed it.
  std::string readLine();
  /// The rest of its standard output.
  std::string readAll();
  /// Waits for its end: the exit code, or 128 and the signal that ended it.
  int wait();
  /// Does not wait.
  bool hasEnded();
  void send(int signal) const;

 private:
  void remember(int status);

  pid_t pid_ = -1;
  int output_ = -1;
  bool ended_ = false;
  int result_ = 0;
};
