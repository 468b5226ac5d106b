#include "host/program/manual_page.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>
#include <vector>

#include "host/program/app_contents.h"

namespace Kest::Host {
namespace {

// The characters as they are: no dash becomes a hyphen, no line a request.
std::string Literal(std::string_view text) {
  std::string literal;
  if (!text.empty() && (text[0] == '.' || text[0] == '\'')) literal = "\\&";
  for (const char c : text) {
    switch (c) {
      case '\\':
        literal += "\\e";
        break;
      case '-':
        literal += "\\-";
        break;
      case '\'':
        literal += "\\(aq";
        break;
      case '~':
        literal += "\\(ti";
        break;
      case '|':
        literal += "|\\:";
        break;  // a line may end after it
      default:
        literal += c;
    }
  }
  return literal;
}

std::string Bold(std::string_view text) {
  return "\\fB" + Literal(text) + "\\fR";
}

std::string Italic(std::string_view text) {
  return "\\fI" + Literal(text) + "\\fR";
}

// "--name FILE", and the name alone of what is no option.
std::string Term(const CLI::Option& option) {
  std::string term;
  for (const std::string& name : option.get_snames()) term.append(Bold("-" + name)).append(", ");
  for (const std::string& name : LongNamesOf(option)) term.append(Bold(name)).append(", ");
  if (term.empty()) return Italic(option.get_type_name());
  term.resize(term.size() - 2);
  if (option.get_items_expected_max() == 0) return term;
  return term.append(" ").append(Italic(option.get_type_name()));
}

// The default of a path depends on where the program is.
bool ShowsDefault(const CLI::Option& option) {
  return !option.get_default_str().empty() && option.get_type_name() != "FILE" &&
         option.get_type_name() != "DIR";
}

std::string Options(const CLI::App& app) {
  std::string text;
  for (const CLI::Option* option : app.get_options()) {
    text.append(".TP\n").append(Term(*option)).append("\n");
    text.append(Literal(option->get_description()));
    if (ShowsDefault(*option)) {
      text.append(" (default: ").append(Literal(option->get_default_str())).append(")");
    }
    text += '\n';
  }
  return text;
}

std::string Footer(const std::string& footer) {
  std::string text;
  bool isExample = false;
  for (std::string_view rest = footer; !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    const bool isIndented = line.starts_with(' ');
    if (isIndented != isExample) text += isIndented ? ".EX\n" : ".EE\n";
    if (!isIndented && (isExample || text.empty() || line.starts_with("Ex"))) text += ".PP\n";
    isExample = isIndented;
    text.append(Literal(line)).append("\n");
  }
  return isExample ? text.append(".EE\n") : text;
}

// The line of the synopsis.
std::string Synopsis(const std::string& name, const CLI::App& app) {
  std::string line = Bold(name) + " [" + Italic("OPTION") + "]...";
  for (const CLI::Option* option : app.get_options()) {
    if (!option->get_positional()) continue;
    line.append(" ").append(Italic(option->get_type_name()));
    if (option->get_items_expected_max() > 1) line += "...";
  }
  return line + "\n";
}

using NamedApps = std::vector<std::pair<std::string, const CLI::App*>>;

// With those of the subcommands, by their full names.
NamedApps AllSubcommands(const CLI::App& program) {
  NamedApps all = {{"", &program}};
  for (size_t i = 0; i < all.size(); ++i) {
    const std::string prefix = all[i].first.empty() ? "" : all[i].first + ' ';
    for (const CLI::App* app : SubcommandsOf(*all[i].second)) {
      all.emplace_back(prefix + app->get_name(), app);
    }
  }
  all.erase(all.begin());
  return all;
}

// "runs it" of "Runs it.", for the line by which manual pages are found.
std::string Summary(std::string description) {
  while (description.ends_with('.')) description.pop_back();
  if (!description.empty()) {
    description[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(description[0])));
  }
  return description;
}

}  // namespace

std::string ManualPage(const CLI::App& program) {
  const std::string& name = program.get_name();
  const NamedApps subcommands = AllSubcommands(program);
  std::string page =
      ".TH \"" + Literal(name) + "\" 1 \"\" \"" + Literal(program.version()) + "\"\n";
  page +=
      ".ad l\n.SH NAME\n" + Literal(name) + " \\- " + Literal(Summary(program.get_description()));
  page += "\n.SH SYNOPSIS\n.nf\n" + Synopsis(name, program);
  for (const auto& [command, app] : subcommands) {
    page += Synopsis(std::string(name).append(" ").append(command), *app);
  }
  page += ".fi\n.SH DESCRIPTION\n" + Literal(program.get_description());
  page += "\n.SH OPTIONS\n" + Options(program) + Footer(program.get_footer());
  page += ".SH SUBCOMMANDS\n";
  for (const auto& [command, app] : subcommands) {
    page += ".SS " + Literal(command) + "\n" + Literal(app->get_description()) + "\n";
    page += Options(*app) + Footer(app->get_footer());
  }
  return page;
}

}  // namespace Kest::Host
