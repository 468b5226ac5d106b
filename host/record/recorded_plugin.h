// One load of a plugin's library with the recording between it and the host: what the host calls is
// recorded and handed to the plugin, what the plugin calls is handed to the host and recorded.
//
// Threads:  as the C interface's.
// Lifetime: from the handshake until just before the library is closed.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string_view>

#include "host/record/interposed_services.h"
#include "host/record/recorder.h"
#include "plugin/host_interface.h"

namespace Kest::Host {

class RecordedPlugin : public InterposedServices {
 public:
  // `block` as the plugin filled it; all outlive this.
  RecordedPlugin(Recorder* recorder, uint64_t session, const KestHandshakeBlock& block);
  ~RecordedPlugin() override;

  // Puts this in the place of the plugin.
  void ReplaceIn(KestHandshakeBlock* block);

 private:
  struct Entries;  // what the host calls
  class Visit;     // a call of the host, from its begin to its end

  Served Serve(const Call& call) override;
  void Yield() override;
  void OnCompletion(Callback* callback, const KestResponse* response) override;
  void OnDelivery(Callback* callback, KestText name, KestText contentType, KestBytes body) override;
  void OnTask(Callback* callback) override;
  const KestCallbackTable& Callbacks() const { return *block_.callbacks; }
  uint64_t Write(Crossing::Kind kind, std::string_view function,
                 const std::function<void(Crossing*)>& fill) noexcept;
  void NoteResponse(const KestResponse* response, uint64_t number) noexcept;
  uint64_t TakeResponse(const KestResponse* response);

  Recorder* const recorder_;
  const uint64_t session_;
  const KestHandshakeBlock block_;
  KestApiDescriptor api_ = {};
  std::map<const KestResponse*, uint64_t> responses_;  // not released: the calls they came from
};

}  // namespace Kest::Host
