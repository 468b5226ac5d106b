#include "host/simulation/simulation.h"

#include <utility>

#include "host/audit/json_digest.h"
#include "host/simulation/checks/checks.h"
#include "host/simulation/machine/plugin_memory.h"
#include "host/simulation/simulation_world.h"

namespace Kest::Host {
namespace {

constexpr size_t kMostRuns = 20'000;  // between two quiet points; a busy one takes hundreds
constexpr uint64_t kMostAfterStep = 12;
constexpr std::string_view kInventoryPath = "/tav-loot/v2/player-loot-map";
constexpr std::string_view kRefresh = "/tav-loot/v1/refresh?force=true";

std::unique_ptr<World> MakeWorld(uint64_t seed) {
  auto world = World::Load(kSimulationWorldText, "simulation.json", seed);
  return std::move(world.GetValue());
}

// Without what a plugin that saw less cannot know: which items are new, and how often it published.
uint64_t ComparableDigest(const PluginReply& reply) {
  std::string text = reply.body;
  for (size_t at = 0; (at = text.find("\"isNew\":true", at)) != std::string::npos;) {
    text.replace(at, 12, "\"isNew\":false");
  }
  return DigestJson(text, ArrayOrder::kIgnored);
}

}  // namespace

Simulation::Simulation(const Script& script, Plugin plugin, std::FILE* trace)
    : script_(script),
      pluginCode_(plugin),
      trace_(trace),
      world_(MakeWorld(script.seed)),
      host_(world_.get(), &scheduler_, this, script.inOrder),
      plugin_(&host_, &scheduler_) {
  world_->SetClock([this] { return scheduler_.Now(); });
}

SimulationOutcome Simulation::Run() {
  SimulationOutcome outcome;
  SeededRandom random(script_.seed);
  Begin(random);
  for (const Step& step : script_.steps) {
    ++outcome.step;
    SeededRandom ofStep(step.random);
    if (trace_ != nullptr) std::fprintf(trace_, "%zu: %s\n", outcome.step, WriteStep(step).c_str());
    Do(step, ofStep);
    stepSum_ += published_.TakeTrace();
    outcome.hash = Mix(outcome.hash, std::exchange(stepSum_, 0));
    if (findings_.First()) break;
  }
  PluginMemory::Recover();
  outcome.allocationFailed = PluginMemory::HasFailed();
  if (!findings_.First()) CompareWithFreshPlugin(random);
  if (!findings_.First()) End(random);
  outcome.finding = findings_.First();
  return outcome;
}

int64_t Simulation::BlocksKeptByALoad(KestLoadFunction load) {
  const Script script{1, true, {Step()}};
  const int64_t before = PluginMemory::LiveBlocks();
  Simulation(script, {load, -1}, nullptr).Run();
  return PluginMemory::LiveBlocks() - before;
}

// ---- What happens ------------------------------------------------------------------------------

void Simulation::Note(std::string_view what, std::string_view about, uint64_t digest) {
  stepSum_ += Mix(DigestText(what), Mix(DigestText(about), digest));
  Print(what, about, digest);
}

void Simulation::Print(std::string_view what, std::string_view about, uint64_t digest) {
  if (trace_ == nullptr) return;
  std::fprintf(trace_, "  %8lld %.*s %.*s %llx\n", static_cast<long long>(scheduler_.Now()),
               static_cast<int>(what.size()), what.data(), static_cast<int>(about.size()),
               about.data(), static_cast<unsigned long long>(digest));
}

void Simulation::OnPublish(std::string_view path, int32_t eventType, std::string_view json) {
  published_.Take(path, eventType, json);
  if (trace_ != nullptr) Print("publish", path, PublishedState::Digest(path, json));
}

void Simulation::OnLog(int32_t level, std::string_view line) {
  log_.Take(level, line);
  Print("log", line.substr(0, line.find_last_not_of('\n') + 1), static_cast<uint64_t>(level));
}

void Simulation::OnResource(std::string_view path, std::optional<std::string_view> data) {
  inputs_.TakeResource(path, data);
  Note("resource", path, DigestText(data.value_or("")));
}

void Simulation::OnRequest(std::string_view method, std::string_view url) {
  inputs_.TakeRequest(url);
  Note(method, url, 0);
}

void Simulation::OnResponse(std::string_view method, std::string_view url, int32_t status) {
  inputs_.TakeResponse(url, status);
  Note(method, url, static_cast<uint64_t>(status));
}

// ---- Steps -------------------------------------------------------------------------------------

void Simulation::Do(const Step& step, SeededRandom& random) {
  switch (step.kind) {
    case StepKind::kAsk:
      Ask(step);
      break;
    case StepKind::kPlatform:
      ControlPlatform(step);
      break;
    case StepKind::kWait:
      scheduler_.Advance(step.number, random, kMostRuns);
      break;
    case StepKind::kResponse:
      SetResponse(step);
      return;
    case StepKind::kRefuse:
      log_.NoteFault(kFaultRefused);
      host_.RefuseNextRequest();
      return;
    case StepKind::kMemory:
      log_.NoteFault(kFaultMemory);
      PluginMemory::FailAt(static_cast<uint64_t>(step.number) + 1);
      return;
    case StepKind::kCap:
      log_.NoteFault(kFaultMemory);
      PluginMemory::RefuseAbove(static_cast<size_t>(step.number));
      return;
    case StepKind::kRestart:
      End(random);
      if (!findings_.First()) Begin(random);
      break;
    case StepKind::kQuiet:
      CheckQuiet(random);
      break;
  }
  for (uint64_t runs = random.Below(kMostAfterStep); runs > 0; --runs) scheduler_.RunOne(random);
}

void Simulation::Ask(const Step& step) {
  inputs_.TakeAsk(step.path);
  plugin_.Ask(
      step.method, step.path, step.body,
      [this, path = step.path, isDeletion = step.method == "DELETE"](const PluginReply& reply) {
        if (isDeletion && reply.status < 300) inputs_.TakeDeletion(path);
        Note("reply " + std::to_string(reply.status), path,
             DigestJson(reply.body, ArrayOrder::kIgnored));
        if (reply.status == 200 && DigestJson(reply.body) == 0) {
          findings_.Add("a response of status 200 has a JSON body", path,
                        reply.body.substr(0, 200));
        }
      });
}

void Simulation::ControlPlatform(const Step& step) {
  const WorldResponse response = host_.Control(step.method, step.path, step.body);
  const bool changesInventory = step.path == "/inventory" ||
                                step.path.starts_with("/definitions/") ||
                                step.path.starts_with("/recipes/");
  if (changesInventory && response.status == 200) host_.Ledger().NoteUntold();
  if (step.path == "/login" && response.status == 200) inputs_.NoteLoginPacket();
  if (step.path == "/logout" || step.path == "/login") log_.NoteFault(kFaultSignedOut);
  if (step.path == "/messages") log_.NoteFault(kFaultMessage);
  if (step.path == "/token") log_.NoteFault(kFaultToken);
  if (step.path.starts_with("/service/")) log_.NoteFault(kFaultService);
  Note("control", step.path, static_cast<uint64_t>(response.status));
}

void Simulation::SetResponse(const Step& step) {
  using Kind = ResponseFault::Kind;
  const Kind kind = step.method == "lost"    ? Kind::kLost
                    : step.method == "twice" ? Kind::kTwice
                                             : Kind::kLate;
  host_.SetNextResponse({kind, step.number});
}

void Simulation::Begin(SeededRandom& random) {
  published_.Reset();
  inputs_.Reset();
  PlatformState()["session"].is_null() ? log_.NoteFault(kFaultSignedOut)
                                       : inputs_.NoteLoginPacket();
  host_.Ledger().Reset();
  blocksBefore_ = PluginMemory::LiveBlocks();
  if (!plugin_.Load(pluginCode_.load)) {
    PluginMemory::Recover();  // a load that found no memory may be repeated
    if (!PluginMemory::HasFailed() || !plugin_.Load(pluginCode_.load)) {
      findings_.Add("the plugin loads", "a context", "none");
      return;
    }
  }
  plugin_.Start();
  for (uint64_t runs = random.Below(kMostAfterStep); runs > 0; --runs) scheduler_.RunOne(random);
}

void Simulation::End(SeededRandom& random) {
  if (!plugin_.HasStarted()) BecomeQuiet(random);  // stop comes after start has returned
  log_.NoteFault(kFaultStop);
  plugin_.Stop();
  for (size_t runs = 0; runs < kMostRuns && !plugin_.HasStopped(); ++runs) {
    if (!scheduler_.RunOne(random)) break;
  }
  if (!plugin_.HasStopped() || scheduler_.WaitingTasks() > 0) {
    findings_.Add("stop ends, and every task with it", "no task that waits",
                  std::to_string(scheduler_.WaitingTasks()) + " tasks that wait");
    return;
  }
  if (!host_.SubscribedNames().empty()) {
    findings_.Add("stop drops every subscription", "none", host_.SubscribedNames().front());
  }
  host_.Close();
  log_.Check(&findings_);
  const int64_t kept = PluginMemory::LiveBlocks() - blocksBefore_;
  if (pluginCode_.keptBlocks >= 0 && kept != pluginCode_.keptBlocks) {
    findings_.Add("stop frees what the plugin took",
                  std::to_string(pluginCode_.keptBlocks) + " blocks kept on purpose",
                  std::to_string(kept) + " blocks");
  }
}

// ---- Quiet points ------------------------------------------------------------------------------

void Simulation::BecomeQuiet(SeededRandom& random) {
  if (scheduler_.RunUntilQuiet(random, kMostRuns)) return;
  findings_.Add("the plugin comes to rest",
                "nothing is due after " + std::to_string(kMostRuns) + " turns",
                "there is always something due");
}

PluginReply Simulation::AskNow(std::string_view method, std::string_view path,
                               SeededRandom& random) {
  const auto reply = std::make_shared<PluginReply>();  // it may come after this call, or never
  plugin_.Ask(std::string(method), std::string(path), "",
              [reply](const PluginReply& given) { *reply = given; });
  BecomeQuiet(random);
  return *reply;
}

std::map<std::string, PluginReply, std::less<>> Simulation::ReadAll(SeededRandom& random) {
  std::map<std::string, PluginReply, std::less<>> responses;
  const auto read = [&](std::string_view path) {
    responses.emplace(path, AskNow("GET", path, random));
  };
  for (const std::string_view path : kSwitchPaths) read(path);
  if (published_.version() == 0 || !isRecovered_) return responses;
  for (const std::string_view path : kInventoryPaths) read(path);
  return responses;
}

Json Simulation::PlatformState() {
  return ParseJson(world_->Control("GET", "/state", "").body);
}

// After a failed allocation the plugin may not have started, and what it holds is right after the
// next retrieval.
void Simulation::Recover(SeededRandom& random) {
  if (!plugin_.HasStarted()) {
    End(random);
    if (findings_.First()) return;
    Begin(random);
    BecomeQuiet(random);
  }
  isRecovered_ = AskNow("POST", kRefresh, random).body == "\"SUCCESS\"";
}

void Simulation::CheckQuiet(SeededRandom& random) {
  BecomeQuiet(random);
  PluginMemory::Recover();
  if ((log_.Faults() & kFaultMemory) != 0) Recover(random);
  if (!plugin_.HasStarted() && !findings_.First()) {
    findings_.Add("the plugin starts", "start returns true", "it does not");
  }
  if (findings_.First()) return;
  inputs_.Settle();
  QuietState state{.published = published_,
                   .inputs = inputs_,
                   .responses = ReadAll(random),
                   .platform = PlatformState(),
                   .held = HeldCounts(world_->Held())};
  for (const std::string_view question : kQuestions) {
    state.explanations.emplace(question, plugin_.Explain(question));
  }
  state.knowsAll = host_.Ledger().PluginKnowsAll();
  state.openAsks = plugin_.OpenAsks();
  state.openRequests = host_.OpenRequests();
  state.waitingTasks = scheduler_.WaitingTasks();
  state.lostResponses = host_.LostResponses();
  state.subscriptions = host_.SubscribedNames();
  CheckAll(state, &findings_);
  inputs_.TakeShownGrants(ShownGrants(state));
  log_.Check(&findings_);
}

// A plugin that starts now and reads everything once must response as the one that was there all
// the time, when both have just read the inventory.
void Simulation::CompareWithFreshPlugin(SeededRandom& random) {
  BecomeQuiet(random);
  const bool mayDiffer = (log_.Faults() & (kFaultRefused | kFaultToken | kFaultMemory)) != 0;
  const Json platform = PlatformState();
  const Json& configuration = platform["configuration"];
  const bool isEnabled =
      configuration.value("Enabled", false) && configuration.value("PxhEnabled", false);
  if (mayDiffer || platform["session"].is_null() || !isEnabled) return;
  if (AskNow("POST", kRefresh, random).status != 200) return;
  const auto responses = ReadAll(random);
  End(random);
  if (findings_.First()) return;
  Begin(random);
  BecomeQuiet(random);
  if (AskNow("POST", kRefresh, random).status != 200) return;
  if (PlatformState()["newPlayerChestGranted"] != platform["newPlayerChestGranted"]) return;
  for (const auto& [path, reply] : ReadAll(random)) {
    const auto earlier = responses.find(path);
    const bool dependsOnHistory = path == kInventoryPath || path.ends_with("-notifications") ||
                                  path.ends_with("/loot-grants") ||
                                  path.ends_with("/new-player-check-done");
    if (dependsOnHistory || earlier == responses.end()) continue;
    if (ComparableDigest(earlier->second) == ComparableDigest(reply)) continue;
    findings_.Add("a fresh plugin responds the same", path + " " + reply.body,
                  earlier->second.body);
  }
}

}  // namespace Kest::Host
