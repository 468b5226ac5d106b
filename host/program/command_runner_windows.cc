#include <windows.h>

#include "host/program/command_runner.h"

namespace Kest::Host {
namespace {

// The console sends its signals to the command as well; here they only must not end the process.
BOOL WINAPI IgnoreSignal(DWORD) {
  return TRUE;
}

// The program that a shell would run: batch files, which many tools are, count as well.
std::string FindProgram(const std::string& name) {
  char path[MAX_PATH];
  for (const char* suffix : {".exe", ".com", ".cmd", ".bat"}) {
    const DWORD size = SearchPathA(nullptr, name.c_str(), suffix, MAX_PATH, path, nullptr);
    if (size > 0 && size < MAX_PATH) return path;
  }
  return {};
}

// As programs take their line apart again: backslashes count double only in front of a quote.
void AppendQuoted(const std::string& argument, std::string* line) {
  if (!line->empty()) line->push_back(' ');
  line->push_back('"');
  size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') line->append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    line->push_back(c);
  }
  line->append(backslashes, '\\');
  line->push_back('"');
}

}  // namespace

CommandRunner::CommandRunner() {
  SetConsoleCtrlHandler(IgnoreSignal, TRUE);
}

Maybe<int> CommandRunner::Run(const std::vector<std::string>& command, const Variables& variables) {
  for (const auto& [name, value] : variables) SetEnvironmentVariableA(name.c_str(), value.c_str());
  const std::string program = FindProgram(command[0]);
  std::string line;
  for (const std::string& argument : command) AppendQuoted(argument, &line);
  STARTUPINFOA startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  if (program.empty() || !CreateProcessA(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0,
                                         nullptr, nullptr, &startup, &process)) {
    return Failure{"Cannot run " + command[0] + ": system error " + std::to_string(GetLastError())};
  }
  CloseHandle(process.hThread);
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  CloseHandle(process.hProcess);
  return static_cast<int>(status);
}

}  // namespace Kest::Host
