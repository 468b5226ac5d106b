// The functions the host calls: start, stop, statistics, and those of the API descriptor. Each
// takes the PluginRuntime as its context, accepts a null one, and lets no exception pass.
#pragma once

#include "plugin/host_interface.h"

namespace Kest {

// Constant, the same for every plugin object.
const KestCallbackTable& CallbackTable();

// Entries of the descriptor; see host_interface.h.
const KestResponse* KEST_ABI HandleRequest(void* context, const KestRequest* request) noexcept;
const KestResponse* KEST_ABI InvokeFunction(void* context, KestText functionName,
                                            const KestValue* arguments,
                                            size_t argumentCount) noexcept;
const KestResponse* KEST_ABI ExplainDecision(void* context, KestText question) noexcept;
void KEST_ABI ReleaseResponse(void* context, const KestResponse* response) noexcept;
void KEST_ABI SetLogging(void* context, int32_t leastLevel, uint32_t outputs) noexcept;

}  // namespace Kest
