#include "host/record/recorder.h"

#include <utility>

#include "host/record/arguments.h"
#include "host/record/recorded_plugin.h"

namespace Kest::Host {

Maybe<std::unique_ptr<Recorder>> Recorder::Create(const std::string& path,
                                                  std::function<void(std::string_view)> onFailure) {
  auto writer = RecordingWriter::Create(path);
  if (!writer) return writer.GetFailure();
  return std::unique_ptr<Recorder>(
      new Recorder(std::move(writer.GetValue()), std::move(onFailure)));
}

Recorder::Recorder(std::unique_ptr<RecordingWriter> writer,
                   std::function<void(std::string_view)> onFailure)
    : onFailure_(std::move(onFailure)), writer_(std::move(writer)) {}

std::shared_ptr<void> Recorder::Enter(KestLoadFunction load, KestHandshakeBlock* block) {
  taskThread_ = std::this_thread::get_id();
  const KestHandshakeBlock asked = *block;
  load(block);
  uint64_t session = 0;
  {
    const MutexLock lock(mutex_);
    session = ++sessions_;
  }
  const auto version = [](const KestHandshakeBlock& of) {
    return Json{of.major, of.minor, of.patch};
  };
  Write([&] {
    const bool isComplete = block->context != nullptr && block->fullName != nullptr;
    return Crossing{.thread = "task",
                    .session = session,
                    .kind = Crossing::Kind::kEnter,
                    .function = std::string(kLoad),
                    .arguments = {{"version", version(asked)}, {"bits", kOwnBits}},
                    .result = {{"version", version(*block)},
                               {"fullName", isComplete ? BytesJson(block->fullName) : Json()}}};
  });
  if (block->callbacks == nullptr || block->context == nullptr || block->api == nullptr) return {};
  auto plugin = std::make_shared<RecordedPlugin>(this, session, *block);
  plugin->ReplaceIn(block);
  return plugin;
}

uint64_t Recorder::Write(const std::function<Crossing()>& make) noexcept {
  bool hasFailed = false;
  uint64_t number = 0;
  {
    const MutexLock lock(mutex_);
    number = ++number_;
    if (writer_ != nullptr && !WriteLocked(make)) {
      writer_.reset();
      hasFailed = true;
    }
  }
  if (hasFailed) Report();
  return number;
}

void Recorder::Report() noexcept {
  try {
    onFailure_("The recording has ended: it cannot be written any more.");
  } catch (...) {  // no memory for the line either
  }
}

bool Recorder::WriteLocked(const std::function<Crossing()>& make) noexcept {
  try {
    Crossing crossing = make();
    crossing.number = number_;
    if (crossing.kind == Crossing::Kind::kEnter) crossing.task = number_;
    const bool isYield = crossing.function == kYield;
    if (!isYield) ++activity_;
    return writer_->Write(WriteJson(ToJson(crossing)));
  } catch (...) {
    return false;
  }
}

}  // namespace Kest::Host
