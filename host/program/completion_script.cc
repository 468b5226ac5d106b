#include "host/program/completion_script.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <vector>

#include "host/program/app_contents.h"

namespace Kest::Host {
namespace {

constexpr std::string_view kScriptHead = R"(# Completes the arguments of tav-loot-host.
_tav_loot_host() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' is='' i
  # bash takes "--option=value" for three words.
  if [ "$word" = = ]; then word='' is==; fi
  if [ "$before" = = ]; then before=${COMP_WORDS[COMP_CWORD - 2]} is==; fi
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      --)
        if declare -F _command_offset >/dev/null; then _command_offset $((i + 1)); fi
        return
        ;;
)";
constexpr std::string_view kScriptMiddle = R"(    esac
  done
  COMPREPLY=()
  case "$command $before$is" in
)";
constexpr std::string_view kScriptFoot = R"(  esac
}
complete -F _tav_loot_host tav-loot-host
)";

std::string Reply(const std::string& generator) {
  return "mapfile -t COMPREPLY < <(compgen " + generator + R"( -- "$word"))";
}

// What completes a value of that type; empty when nothing does.
std::string ValueReply(std::string type) {
  if (type == "FILE") return "compopt -o filenames; " + Reply("-f");
  if (type == "DIR") return "compopt -o filenames; " + Reply("-d");
  if (std::any_of(type.begin(), type.end(), [](char c) { return c >= 'A' && c <= 'Z'; })) return "";
  std::replace(type.begin(), type.end(), '|', ' ');
  return Reply("-W '" + type + "'");
}

// The lines of the script's second choice: what follows an option that takes a value.
std::string ValueCases(const CLI::App& app, const std::string& command) {
  std::string cases;
  for (const CLI::Option* option : app.get_options()) {
    const std::string type = option->get_type_name();
    const bool isFlag = option->get_items_expected_max() == 0;  // may have a value after "=" only
    if (isFlag && type.find('|') == type.npos) continue;
    for (const std::string& name : LongNamesOf(*option)) {
      const std::string reply = ValueReply(type);
      std::string word = command;
      word.append(" ").append(name);
      cases.append("    ");
      if (!isFlag) cases.append("'").append(word).append("'|");
      cases.append("'").append(word).append("=') ");
      cases.append(reply.empty() ? ":" : reply).append(" ;;\n");
    }
  }
  return cases;
}

// The line for a word that follows no such option.
std::string WordCase(const CLI::App& app, const std::string& command) {
  std::string words;
  std::string values;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : LongNamesOf(*option)) words += name + ' ';
    if (option->get_positional()) values = ValueReply(option->get_type_name());
  }
  for (const CLI::App* subcommand : SubcommandsOf(app)) words += subcommand->get_name() + ' ';
  words.pop_back();
  const std::string reply = Reply("-W '" + words + "'");
  if (values.empty()) return "    '" + command + " '*) " + reply + " ;;\n";
  return "    '" + command + " '*) if [[ $word = -* ]]; then " + reply + "; else " + values +
         "; fi ;;\n";
}

}  // namespace

std::string BashCompletion(const CLI::App& program) {
  std::string script(kScriptHead);
  std::string cases = ValueCases(program, "");
  std::string words = WordCase(program, "");
  for (const CLI::App* subcommand : SubcommandsOf(program)) {
    const std::string& name = subcommand->get_name();
    script.append("      ").append(name).append(") command=").append(name).append(" ;;\n");
    cases += ValueCases(*subcommand, name);
    words += WordCase(*subcommand, name);
  }
  return script.append(kScriptMiddle).append(cases).append(words).append(kScriptFoot);
}

}  // namespace Kest::Host
