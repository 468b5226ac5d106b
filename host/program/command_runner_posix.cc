#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

#include "host/program/command_runner.h"

namespace Kest::Host {
namespace {

constexpr int kSignalStatus = 128;
constexpr int kPassedOn[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

sigset_t SignalSet(bool withChild) {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : kPassedOn) sigaddset(&set, signal);
  if (withChild) sigaddset(&set, SIGCHLD);
  return set;
}

// One that came before there was anything to pass it on to, or 0.
int PendingSignal() {
  sigset_t pending;
  sigpending(&pending);
  for (const int signal : kPassedOn) {
    if (sigismember(&pending, signal) == 1) return signal;
  }
  return 0;
}

std::vector<std::string> EnvironmentWith(const CommandRunner::Variables& variables) {
  std::vector<std::string> environment;
  for (char** entry = environ; *entry != nullptr; ++entry) environment.emplace_back(*entry);
  for (const auto& [name, value] : variables) {
    std::string variable = name + "=";
    std::erase_if(environment,
                  [&variable](const std::string& entry) { return entry.starts_with(variable); });
    environment.push_back(variable.append(value));
  }
  return environment;
}

// As the system takes it: with null at its end. Borrows `texts`.
std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// The command begins with signals as they are by default. Returns what went wrong, or 0.
int Spawn(std::vector<std::string> command, std::vector<std::string> environment, pid_t* child) {
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigemptyset(&none);
  sigset_t defaults = SignalSet(false);
  sigaddset(&defaults, SIGPIPE);
  posix_spawnattr_setsigmask(&attributes, &none);
  posix_spawnattr_setsigdefault(&attributes, &defaults);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  const int error = posix_spawnp(child, command[0].c_str(), nullptr, &attributes,
                                 Pointers(command).data(), Pointers(environment).data());
  posix_spawnattr_destroy(&attributes);
  return error;
}

int AwaitEnd(pid_t child) {
  const sigset_t awaited = SignalSet(true);
  for (;;) {
    int status = 0;
    if (waitpid(child, &status, WNOHANG) == child) {
      return WIFSIGNALED(status) ? kSignalStatus + WTERMSIG(status) : WEXITSTATUS(status);
    }
    siginfo_t info;
    const int signal = sigwaitinfo(&awaited, &info);
    // What a terminal sends, the command has got as well.
    if (signal > 0 && signal != SIGCHLD && info.si_code != SI_KERNEL) kill(child, signal);
  }
}

}  // namespace

CommandRunner::CommandRunner() {
  const sigset_t kept = SignalSet(true);
  pthread_sigmask(SIG_BLOCK, &kept, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
}

Maybe<int> CommandRunner::Run(const std::vector<std::string>& command, const Variables& variables) {
  if (const int signal = PendingSignal(); signal != 0) return kSignalStatus + signal;
  pid_t child = 0;
  const int error = Spawn(command, EnvironmentWith(variables), &child);
  if (error != 0) return Failure{"Cannot run " + command[0] + ": " + std::strerror(error)};
  return AwaitEnd(child);
}

}  // namespace Kest::Host
