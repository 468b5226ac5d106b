#include "host/program/host_option_definitions.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <limits>
#include <utility>
#include <vector>

#include "host/clock/time_text.h"
#include "host/http/request_guard.h"
#include "host/program/terminal.h"
#include "host/url/request_target.h"
#include "host/world/file/shipped_worlds.h"

namespace Kest::Host {
namespace {

#if defined(_WIN32)
constexpr char kPluginFile[] = "vwm-be-tav-loot.dll";
#else
constexpr char kPluginFile[] = "vwm-be-tav-loot.so";
#endif

template <typename Number>
std::string IsInteger(const std::string& text) {
  constexpr uint64_t kMost = std::numeric_limits<Number>::max();
  const auto number = ParseNumber(text);
  return number && *number <= kMost
             ? ""
             : "must be an integer from 0 to " + std::to_string(kMost) + ", found " + text;
}

std::string IsTime(const std::string& text) {
  return ParseTime(text) ? "" : "must be " + std::string(kTimeRule) + ", found " + text;
}

std::string IsClock(const std::string& text) {
  return text == "real" || ParseTime(text)
             ? ""
             : "must be real or " + std::string(kTimeRule) + ", found " + text;
}

// Puts the number of one of the words in its place, for an enumeration.
template <typename Value>
CLI::Validator OneOf(const std::vector<std::pair<std::string, Value>>& words) {
  return CLI::Validator(
      [words](std::string& text) {
        std::string known;
        for (const auto& [word, value] : words) {
          if (word == text) {
            text = std::to_string(static_cast<int>(value));
            return std::string();
          }
          known.append(known.empty() ? "" : ", ").append(word);
        }
        return "must be one of " + known + ", found " + text;
      },
      "");
}

std::string IsScenario(const std::string& text) {
  std::string known;
  for (const std::string_view name : ShippedWorldNames()) {
    if (name == text) return "";
    known.append(known.empty() ? "" : ", ").append(name);
  }
  return "must be one of " + known + ", found " + text;
}

// Puts an origin in the place of what is clearly meant for one.
std::string IsOrigin(std::string& text) {
  const auto origin = ReadOrigin(text);
  if (!origin) return "must be an origin such as https://shop.test:3000, found " + text;
  text = *origin;
  return "";
}

// "sample|empty|...", as completion reads it.
std::string ScenarioNames() {
  std::string names;
  for (const std::string_view name : ShippedWorldNames()) {
    names.append(names.empty() ? "" : "|").append(name);
  }
  return names;
}

// Returns the option that names a world file.
CLI::Option* AddWorldChoice(CLI::App& app, HostOptions* options) {
  CLI::Option* const world =
      app.add_option("--world", options->worldPath, "The world file")->type_name("FILE");
  app.add_option("--scenario", options->scenario, "A world inside the program")
      ->type_name(ScenarioNames())
      ->check(IsScenario)
      ->excludes(world)
      ->capture_default_str();
  return world;
}

void AddSeedOption(CLI::App& app, HostOptions* options) {
  app.add_option("--seed", options->seed, "Start of the world's random numbers")
      ->type_name("NUMBER")
      ->check(IsInteger<uint64_t>)
      ->capture_default_str();
}

CLI::Option* AddClockOption(CLI::App& app, const char* description, HostOptions* options) {
  return app
      .add_option_function<std::string>(
          "--clock",
          [options](const std::string& text) {
            const auto time = ParseTime(text);
            options->clock = time ? ClockSetting{ClockMode::kFrozen, 1, time} : ClockSetting{};
          },
          description)
      ->type_name("TIME");
}

void AddWorldOptions(CLI::App& app, HostOptions* options) {
  CLI::Option* const world = AddWorldChoice(app, options);
  app.add_flag("--watch", options->followsWorld, "A saved world file takes effect at once")
      ->needs(world);
  app.add_option("--state", options->stateFolder,
                 "Keeps the world in this folder and goes on with it after a restart")
      ->type_name("DIR");
  AddSeedOption(app, options);
  AddClockOption(app,
                 "The time the plugin lives in: real, or a time at which it is frozen, such as "
                 "2030-01-01T12:00:00Z",
                 options)
      ->check(IsClock)
      ->default_str("real");
  app.add_flag("!--no-login", options->signsIn,
               "The player is signed in by POST /_host/login only");
}

void AddNetworkOptions(CLI::App& app, HostOptions* options) {
  app.add_option("--address", options->address, "The address to listen on")
      ->type_name("ADDRESS")
      ->capture_default_str();
  app.add_option("--port", options->port, "The port to listen on, 0 for any free one")
      ->type_name("NUMBER")
      ->check(IsInteger<uint16_t>)
      ->capture_default_str();
  app.add_option("--assets", options->assetFolder,
                 "A folder of pictures: a page finds FOLDER/fe/x.png at /fe/x.png")
      ->type_name("DIR")
      ->check(CLI::ExistingDirectory.description(""));
  app.add_option("--allow-origin", options->allowedOrigins,
                 "A page of this origin may use the host, too, for example https://shop.test:3000; "
                 "repeatable")
      ->type_name("ORIGIN")
      ->transform(CLI::Validator(IsOrigin, ""))
      ->take_all();
}

void AddAuditOption(CLI::App& app, HostOptions* options) {
  app.add_flag("--audit{on}", options->audit,
               "Compares what the plugin returns with what it published whenever the host is idle; "
               "with =strict the first finding ends the host")
      ->type_name("on|strict")
      ->transform(OneOf<AuditMode>({{"on", AuditMode::kOn}, {"strict", AuditMode::kStrict}}));
}

void AddLogOptions(CLI::App& app, HostOptions* options) {
  options->log.isColoured = ShowsColours(stderr);
  CLI::Option* const level =
      app.add_option("--log-level", options->log.least,
                     "Least level of the lines on standard error; none: nothing at all")
          ->type_name("okay|warning|error|always|none")
          ->transform(OneOf<LogLevel>({{"okay", LogLevel::kOkay},
                                       {"warning", LogLevel::kWarning},
                                       {"error", LogLevel::kError},
                                       {"always", LogLevel::kAlways},
                                       {"none", LogLevel::kNone}}));
  CLI::Option* const quiet =
      app.add_flag("--quiet", options->log.onlyErrors, "Only errors on standard error");
  app.add_flag_callback(
         "--verbose", [log = &options->log] { log->isVerbose = log->requests = true; },
         "The plugin's lines of level okay and a line for each request, too")
      ->excludes(level)
      ->excludes(quiet);
  quiet->excludes(level);
  app.add_flag("--log-requests", options->log.requests,
               "A line for each request: time, method, path, status, milliseconds");
}

}  // namespace

void AddPluginOption(CLI::App& app, const std::string& folder, std::string* path) {
  *path = folder + kPluginFile;
  app.add_option("--plugin", *path, "The plugin library, beside the program by default")
      ->type_name("FILE")
      ->capture_default_str();
}

void AddHostOptions(CLI::App& app, const std::string& folder, HostOptions* options) {
  AddPluginOption(app, folder, &options->pluginPath);
  app.add_flag("--watch-plugin", options->followsPlugin,
               "A rebuilt plugin library is loaded in the place of the present one");
  app.add_option(
         "--record", options->recordPath,
         "Writes all that passes between the plugin and the host to this file, to be replayed")
      ->type_name("FILE");
  AddWorldOptions(app, options);
  AddNetworkOptions(app, options);
  AddAuditOption(app, options);
  AddLogOptions(app, options);
}

void AddRepeatableOptions(CLI::App& app, const std::string& folder, HostOptions* options) {
  AddPluginOption(app, folder, &options->pluginPath);
  AddWorldChoice(app, options);
  AddSeedOption(app, options);
  AddClockOption(app, "The time at which the plugin is started", options)
      ->check(IsTime)
      ->default_str(FormatTime(options->clock.now.value_or(0)));
}

}  // namespace Kest::Host
