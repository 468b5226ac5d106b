#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/simulation/machine/child_process.h"

namespace Kest::Host {
namespace {

void WriteAll(int file, const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    const ssize_t written = write(file, text.data() + done, text.size() - done);
    if (written <= 0) return;
    done += static_cast<size_t>(written);
  }
}

std::string ReadAll(int file) {
  std::string text;
  char part[4096];
  for (ssize_t size = 0; (size = read(file, part, sizeof(part))) > 0;) {
    text.append(part, static_cast<size_t>(size));
  }
  return text;
}

std::string FailureOf(int status) {
  if (WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS) return {};
  if (WIFEXITED(status)) return "exits with code " + std::to_string(WEXITSTATUS(status));
  const int signal = WTERMSIG(status);
  return signal == SIGXCPU ? "never ends" : std::string("ends with signal: ") + strsignal(signal);
}

}  // namespace

ChildResult RunInChild(const std::function<std::string()>& work, unsigned mostSeconds) {
  int ends[2];
  if (pipe(ends) != 0) return {{}, "no pipe can be had"};
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) return {{}, "no process can be had"};
  if (child == 0) {
    const rlimit limit = {mostSeconds, mostSeconds + 1};
    setrlimit(RLIMIT_CPU, &limit);
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    close(ends[0]);
    WriteAll(ends[1], work());
    std::fflush(nullptr);
    _exit(EXIT_SUCCESS);
  }
  close(ends[1]);
  ChildResult result{ReadAll(ends[0]), {}};
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  result.failure = FailureOf(status);
  return result;
}

}  // namespace Kest::Host
