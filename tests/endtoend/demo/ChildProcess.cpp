#include "ChildProcess.h"

#include <csignal>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::map<std::string, std::string>& environment) {
  int ends[2];
  if (pipe(ends) != 0) std::abort();
  pid_ = fork();
  if (pid_ == 0) {
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> arguments;
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execv(arguments.front(), arguments.data());
    _exit(127);
  }
  close(ends[1]);
  output_ = ends[0];
}

ChildProcess::~ChildProcess() {
  if (!ended_) kill(pid_, SIGTERM);
  wait();
  close(output_);
}

std::string ChildProcess::readLine() {
  std::string line;
  for (char c; read(output_, &c, 1) == 1 && c != '\n';) line += c;
  return line;
}

std::string ChildProcess::readAll() {
  std::string all;
  char buffer[4096];
  for (ssize_t count; (count = read(output_, buffer, sizeof buffer)) > 0;)
    all.append(buffer, static_cast<std::size_t>(count));
  return all;
}

int ChildProcess::wait() {
  if (ended_) return result_;
  int status = 0;
  waitpid(pid_, &status, 0);
  ended_ = true;
  result_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result_;
}
