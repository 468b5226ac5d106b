#include "host/record/replay.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "host/record/replay_cursor.h"
#include "host/record/replayed_plugin.h"
#include "host/tasks/fiber.h"

namespace Kest::Host {
namespace {

// How often the tasks that are left go on after the comparison.
constexpr int kMostRounds = 10000;

class ReplayRun {
 public:
  ReplayRun(std::unique_ptr<RecordingReader> reader, const ReplayOptions& options)
      : options_(options), cursor_(std::move(reader), options.comparesLog) {}

  Maybe<ReplayOutcome> Run() {
    while (const Crossing* next = cursor_.Peek()) Follow(*next);
    ReplayOutcome outcome = {.crossings = cursor_.Taken(),
                             .sessions = sessions_,
                             .difference = cursor_.Difference(),
                             .isCut = !plugins_.empty()};
    if (!outcome.difference.empty()) outcome.difference += note_;
    outcome.isAbandoned = !EndAll();
    if (!problem_.empty()) return Failure{problem_};
    if (!cursor_.Problem().empty()) return Failure{cursor_.Problem()};
    return outcome;
  }

 private:
  struct Task {
    uint64_t session;
    std::unique_ptr<Fiber> fiber;
  };

  // Does what the host did.
  void Follow(const Crossing& next) {
    if (next.kind == Crossing::Kind::kEnter) {
      if (next.function == kLoad) return Load(next);
      return next.function == kUnload ? Unload(next) : Enter(next);
    }
    const bool goesOn = next.kind == Crossing::Kind::kResume && tasks_.contains(next.task);
    if (!goesOn) return cursor_.Differ("nothing; every task of the plugin waits or has ended");
    const uint64_t task = next.task;
    cursor_.Take();
    Continue(task);
  }

  // The library is opened when it is entered: the one before has been closed by then.
  void Load(const Crossing& load) {
    if (plugins_.contains(load.session)) return cursor_.Fail("this session has begun before");
    plugins_[load.session] = std::make_unique<ReplayedPlugin>(
        load, ReplayedPlugin::Surroundings{.cursor = &cursor_,
                                           .task = [this] { return current_; },
                                           .suspend = [this] { Suspend(); }});
    ++sessions_;
    const Json bits = load.arguments.is_object() ? load.arguments.value("bits", Json()) : Json();
    if (bits != Json(kOwnBits)) {
      note_ = "The recording is of a " + WriteJson(bits) + "-bit host, this one has " +
              std::to_string(kOwnBits) + " bits: lists without an order have another one.\n";
    }
    cursor_.Take();
  }

  void Unload(const Crossing& unload) {
    for (const auto& [number, task] : tasks_) {
      if (task.session != unload.session) continue;
      return cursor_.Differ("task " + std::to_string(number) + " still runs");
    }
    const uint64_t number = unload.number;
    if (plugins_.erase(unload.session) == 0) return cursor_.Fail("this session has not begun");
    cursor_.Take();
    cursor_.MatchLeave(number, kUnload, Json());
  }

  void Enter(const Crossing& next) {
    const auto plugin = plugins_.find(next.session);
    if (plugin == plugins_.end()) return cursor_.Fail("this session has not begun");
    const auto opened = plugin->second->Open(options_.plugin);
    if (!opened) {
      plugins_.erase(plugin);
      problem_ = opened.GetFailure().text;
      return cursor_.Fail(problem_);
    }
    Begin(next.number, next.session, [this, crossing = next, entered = plugin->second.get()] {
      cursor_.Take();
      entered->Enter(crossing);
    });
  }

  void Begin(uint64_t number, uint64_t session, std::function<void()> work) {
    if (spare_ == nullptr) spare_ = std::make_unique<Fiber>();
    spare_->Assign([this, work = std::move(work)] {
      try {
        work();
      } catch (const std::bad_alloc&) {
        cursor_.Fail("out of memory");
      }
    });
    tasks_[number] = {session, std::move(spare_)};
    Continue(number);
  }

  void Continue(uint64_t number) {
    Fiber* const fiber = tasks_[number].fiber.get();
    current_ = number;
    fiber->Resume();
    current_ = 0;
    if (fiber->HasWork()) return;
    spare_ = std::move(tasks_[number].fiber);
    tasks_.erase(number);
  }

  void Suspend() {
    const uint64_t number = current_;
    tasks_[number].fiber->Suspend();
    current_ = number;
  }

  // After the comparison: stops what still runs. False: some of it does not come to its end.
  bool EndAll() {
    uint64_t number = UINT64_MAX;
    for (const auto& [session, plugin] : plugins_) {
      Begin(number--, session, [stopped = plugin.get()] { stopped->Stop(); });
    }
    for (int round = 0; round < kMostRounds && !tasks_.empty(); ++round) {
      std::vector<uint64_t> left;
      for (const auto& [task, running] : tasks_) left.push_back(task);
      for (const uint64_t task : left) Continue(task);
    }
    if (tasks_.empty()) return true;
    for (auto& [task, running] : tasks_) static_cast<void>(running.fiber.release());
    for (auto& [session, plugin] : plugins_) static_cast<void>(plugin.release());
    return false;
  }

  const ReplayOptions options_;
  ReplayCursor cursor_;
  uint64_t sessions_ = 0;
  std::string problem_;
  std::string note_;                                             // for a difference
  std::map<uint64_t, std::unique_ptr<ReplayedPlugin>> plugins_;  // by session
  std::unique_ptr<Fiber> spare_;
  std::map<uint64_t, Task> tasks_;
  uint64_t current_ = 0;
};

}  // namespace

Maybe<ReplayOutcome> Replay(const ReplayOptions& options) {
  auto reader = RecordingReader::Open(options.recording);
  if (!reader) return reader.GetFailure();
  return ReplayRun(std::move(reader.GetValue()), options).Run();
}

}  // namespace Kest::Host
