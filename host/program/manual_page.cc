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

std::string InFont(const char* font, std::string_view text) {
  return std::string(font).append(Literal(text)).append("\\fR");
}

std::string Bold(std::string_view text) {
  return InFont("\\fB", text);
}

std::string Italic(std::string_view text) {
  return InFont("\\fI", text);
}

// "--name FILE", and the name alone of what is no option.
std::string Term(const CLI::Option& option) {
  std::string term;
  for (const std::string& name : option.get_snames()) {
    term.append(Bold(std::string("-").append(name))).append(", ");
  }
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
    // "Examples:" and "Exit status:" begin a paragraph.
    if (!isIndented && (isExample || text.empty() || line.starts_with("Ex"))) text += ".PP\n";
    isExample = isIndented;
    text.append(Literal(line)).append("\n");
  }
  return isExample ? text.append(".EE\n") : text;
}

// The line of the synopsis.
std::string Synopsis(const std::string& name, const CLI::App& app) {
  std::string line = Bold(name).append(" [").append(Italic("OPTION")).append("]...");
  for (const CLI::Option* option : app.get_options()) {
    if (!option->get_positional()) continue;
    line.append(" ").append(Italic(option->get_type_name()));
    if (option->get_items_expected_max() > 1) line += "...";
  }
  return line.append("\n");
}

using NamedApps = std::vector<std::pair<std::string, const CLI::App*>>;

// With those of the subcommands, by their full names. The first is the program.
NamedApps AllCommands(const CLI::App& program) {
  NamedApps all = {{program.get_name(), &program}};
  for (size_t i = 0; i < all.size(); ++i) {
    const auto [prefix, parent] = all[i];
    for (const CLI::App* app : SubcommandsOf(*parent)) {
      all.emplace_back(std::string(prefix).append(" ").append(app->get_name()), app);
    }
  }
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

std::string Head(const CLI::App& program) {
  const std::string name = Literal(program.get_name());
  std::string head = ".TH \"";
  head.append(name).append("\" 1 \"\" \"").append(Literal(program.version())).append("\"\n");
  head.append(".ad l\n.nh\n.SH NAME\n").append(name).append(" \\- ");
  return head.append(Literal(Summary(program.get_description()))).append("\n");
}

void AppendContents(const CLI::App& app, const char* optionHeading, std::string* page) {
  page->append(Literal(app.get_description())).append("\n").append(optionHeading);
  page->append(Options(app)).append(Footer(app.get_footer()));
}

}  // namespace

std::string ManualPage(const CLI::App& program) {
  const NamedApps commands = AllCommands(program);
  std::string page = Head(program).append(".SH SYNOPSIS\n.nf\n");
  for (const auto& [name, app] : commands) page += Synopsis(name, *app);
  page += ".fi\n.SH DESCRIPTION\n";
  AppendContents(program, ".SH OPTIONS\n", &page);
  page += ".SH SUBCOMMANDS\n";
  for (const auto& [name, app] : commands) {
    if (app == &program) continue;
    page.append(".SS ").append(Literal(name)).append("\n");
    AppendContents(*app, "", &page);
  }
  return page;
}

}  // namespace Kest::Host
