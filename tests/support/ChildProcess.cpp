#include "tests/support/ChildProcess.h"

#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::map<std::string, std::string>& environment, Errors errors) {
  int ends[2];
  if (pipe(ends) != 0) std::abort();
  pid_ = fork();
  if (pid_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    dup2(ends[1], STDOUT_FILENO);
    if (errors == Errors::read) dup2(ends[1], STDERR_FILENO);
    close(ends[0]);
    close(ends[1]);
    for (const auto& [name, value] : environment) {
      value.empty() ? unsetenv(name.c_str()) : setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<char*> arguments;
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments.front(), arguments.data());
    _exit(127);
  }
  close(ends[1]);
  output_ = ends[0];
}

ChildProcess::~ChildProcess() {
  send(SIGTERM);
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
  int status = 0;
  if (!ended_ && waitpid(pid_, &status, 0) == pid_) remember(status);
  return result_;
}

bool ChildProcess::hasEnded() {
  int status = 0;
  if (!ended_ && waitpid(pid_, &status, WNOHANG) == pid_) remember(status);
  return ended_;
}

void ChildProcess::send(int signal) const {
  if (!ended_) kill(pid_, signal);
}

void ChildProcess::remember(int status) {
  ended_ = true;
  result_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
