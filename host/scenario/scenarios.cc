#include "host/scenario/scenarios.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/json/json_text.h"
#include "host/scenario/atomic_file.h"
#include "host/world/file/shipped_worlds.h"
#include "host/world/input/field_reader.h"

namespace Kest::Host {
namespace {

constexpr char kKeptWorld[] = "world.json";
constexpr char kKeptStart[] = "start.json";

std::string DescriptionOf(std::string_view name) {
  const auto document = Document::FromYaml(name, ShippedWorld(name));
  if (!document) return "";
  FieldReader fields(document.GetValue());
  return fields.StringOr("description", "");
}

}  // namespace

// ---- Beginning
// -----------------------------------------------------------------------------------

Maybe<Nothing> Scenarios::Start() {
  if (options_.stateFolder.empty()) return Reset();
  std::error_code error;
  std::filesystem::create_directories(options_.stateFolder, error);
  if (error) return Failure{"Cannot use " + options_.stateFolder + ": " + error.message()};
  auto lock = FolderLock::Take(options_.stateFolder);
  if (!lock) return lock.GetFailure();
  lock_ = std::move(lock.GetValue());
  if (!std::filesystem::exists(KeptPath(kKeptWorld), error)) return Reset();
  if (auto start = ReadKeptStart(); !start) return start;
  auto text = ReadTextFile(KeptPath(kKeptWorld), "the world");
  if (!text) return text.GetFailure();
  auto world = Load({KeptPath(kKeptWorld), std::move(text.GetValue())});
  if (!world) return world.GetFailure();
  const WorldChoice& choice = options_.start;
  parts_.log->Write(LogLevel::kAlways,
                    "Goes on in the world that " + options_.stateFolder +
                        " keeps; a reset goes back to the start of " +
                        (choice.file.empty() ? "the scenario " + choice.scenario : choice.file) +
                        ".");
  return parts_.sessions->Begin(std::move(world.GetValue()));
}

Maybe<Nothing> Scenarios::Reset() {
  auto world = LoadStart();
  return world ? BeginAt(std::move(world.GetValue())) : Maybe<Nothing>(world.GetFailure());
}

Maybe<Nothing> Scenarios::Choose(const std::string& scenario) {
  WorldChoice before = std::exchange(options_.start, {.scenario = scenario, .file = ""});
  auto world = LoadStart();
  if (!world) {
    options_.start = std::move(before);
    return world.GetFailure();
  }
  KeepStart();
  return BeginAt(std::move(world.GetValue()));
}

Maybe<Nothing> Scenarios::Restore(const std::string& snapshot) {
  auto text = snapshots_.Get(snapshot);
  if (!text) return text.GetFailure();
  auto world = Load({"snapshot " + snapshot, std::move(text.GetValue())});
  if (!world) return world.GetFailure();
  parts_.scheduler->Drop(this);
  return parts_.sessions->Begin(std::move(world.GetValue()));
}

Maybe<Nothing> Scenarios::BeginAt(std::unique_ptr<World> world) {
  const std::vector<ScenarioStep> steps = world->Steps();
  parts_.scheduler->Drop(this);
  auto begun = parts_.sessions->Begin(std::move(world));
  if (begun) RunSteps(steps);
  return begun;
}

// ---- Reading
// -------------------------------------------------------------------------------------

WorldReading Scenarios::Reading(std::vector<std::string>* warnings) {
  // Files are read for files only: what comes over HTTP extends shipped worlds.
  return {.findBase =
              [this](const std::string& extends, const std::string& from) {
                const bool isFile = std::find(files_.begin(), files_.end(), from) != files_.end();
                return isFile ? FindExtendedWorld(extends, from, &files_)
                              : ReadWorldText({.scenario = extends, .file = ""});
              },
          .seed = options_.seed,
          .warnings = warnings};
}

void Scenarios::Warn(const std::vector<std::string>& warnings) {
  for (const std::string& warning : warnings) parts_.log->Write(LogLevel::kWarning, warning);
}

Maybe<std::unique_ptr<World>> Scenarios::Load(const WorldText& file) {
  std::vector<std::string> warnings;
  auto world = World::Load(file, Reading(&warnings));
  Warn(warnings);
  return world;
}

Maybe<std::unique_ptr<World>> Scenarios::LoadStart() {
  const auto text = ReadWorldText(options_.start);
  if (!text) return text.GetFailure();
  files_.clear();
  if (!options_.start.file.empty()) files_.push_back(options_.start.file);
  return Load(text.GetValue());
}

Json Scenarios::List() const {
  Json list = Json::array();
  for (const std::string_view name : ShippedWorldNames()) {
    const bool isCurrent = options_.start.file.empty() && options_.start.scenario == name;
    list.push_back(
        Json{{"name", name}, {"description", DescriptionOf(name)}, {"current", isCurrent}});
  }
  return list;
}

// ---- Steps
// ---------------------------------------------------------------------------------------

void Scenarios::RunSteps(const std::vector<ScenarioStep>& steps) {
  for (const ScenarioStep& step : steps) {
    if (step.afterMilliseconds == 0) {
      RunStep(step);
      continue;
    }
    parts_.scheduler->PostAfter(std::chrono::milliseconds(step.afterMilliseconds),
                                {.name = "step " + step.method + " " + step.path,
                                 .work = [this, step] { RunStep(step); },
                                 .owner = this});
  }
}

void Scenarios::RunStep(const ScenarioStep& step) {
  const std::string name = step.place + ": the step " + step.method + " " + step.path;
  HttpRequest request;
  request.method = step.method;
  request.target = step.path;
  request.body = step.body;
  const HttpResponse response = call_(request);
  if (response.status < 400) return;
  parts_.log->Write(LogLevel::kError, name + " failed: " + response.body);
}

// ---- Changes while running
// -------------------------------------------------------------------------

Maybe<Nothing> Scenarios::Import(const WorldText& file) {
  PluginSession* const session = parts_.sessions->Current();
  if (session == nullptr) return Failure{"The plugin is not running.", 503};
  std::vector<std::string> warnings;
  const auto change = session->AdoptWorld(file, Reading(&warnings));
  if (!change) return change.GetFailure();
  Warn(warnings);
  const std::vector<ScenarioStep> steps = session->GetWorld().Steps();
  parts_.scheduler->Drop(this);  // the steps to come of the world as it was
  if (change.GetValue() == World::Change::kGameData) {
    auto begun = parts_.sessions->BeginAgain(parts_.sessions->libraryPath());
    if (!begun) return begun;
  } else {
    Refresh();
  }
  RunSteps(steps);
  return Nothing{};
}

// The platform announces no change of the inventory; a retrieval shows it.
void Scenarios::Refresh() {
  parts_.scheduler->Post({.name = "refresh",
                          .work =
                              [this] {
                                PluginSession* const session = parts_.sessions->Current();
                                if (session == nullptr) return;
                                HttpRequest refresh;
                                refresh.method = "POST";
                                refresh.target = "/tav-loot/v1/refresh?force=true";
                                session->Request(refresh);
                              },
                          .owner = this});
}

void Scenarios::FollowFile() {
  const auto text = ReadWorldText(options_.start);
  files_ = {options_.start.file};
  const auto done = text ? Import(text.GetValue()) : Maybe<Nothing>(text.GetFailure());
  if (done) {
    parts_.log->Write(LogLevel::kAlways, options_.start.file + " was saved and is in effect.");
  } else {
    parts_.log->Write(LogLevel::kError, done.GetFailure().text);
  }
}

void Scenarios::FollowPlugin(const Maybe<std::string>& libraryPath) {
  const auto done = libraryPath ? parts_.sessions->BeginAgain(libraryPath.GetValue())
                                : Maybe<Nothing>(libraryPath.GetFailure());
  parts_.log->Write(done ? LogLevel::kAlways : LogLevel::kError,
                    done ? "The rebuilt plugin is loaded." : done.GetFailure().text);
}

// ---- What is kept
// ----------------------------------------------------------------------------------

void Scenarios::Keep(const World& world) {
  if (options_.stateFolder.empty()) return;
  std::string text = world.File();
  if (text == kept_) return;
  const auto written = WriteFileAtomically(KeptPath(kKeptWorld), text);
  if (written) {
    kept_ = std::move(text);
  } else {
    parts_.log->Write(LogLevel::kError, written.GetFailure().text);
  }
}

Maybe<Nothing> Scenarios::ReadKeptStart() {
  std::error_code error;
  if (!std::filesystem::exists(KeptPath(kKeptStart), error)) return Nothing{};
  const auto text = ReadTextFile(KeptPath(kKeptStart), "the start");
  if (!text) return text.GetFailure();
  const auto document = Document::FromJson(KeptPath(kKeptStart), text.GetValue());
  if (!document) return document.GetFailure();
  FieldReader fields(document.GetValue());
  const std::string scenario = fields.String("scenario");
  if (!fields.Finish()) return fields.failure();
  options_.start = {.scenario = scenario, .file = ""};
  return Nothing{};
}

// A scenario that was chosen while the host ran is the start after a restart too.
void Scenarios::KeepStart() {
  if (options_.stateFolder.empty()) return;
  const Json start = Json{{"scenario", options_.start.scenario}};
  const auto written = WriteFileAtomically(KeptPath(kKeptStart), WriteJson(start));
  if (!written) parts_.log->Write(LogLevel::kError, written.GetFailure().text);
}

}  // namespace Kest::Host
