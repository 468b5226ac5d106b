// The sizes and times the HTTP server accepts.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace Kest::Host {

struct HttpLimits {
  size_t connections = 256;
  size_t reserved = 8;  // beside them, for controls: a host full of waiting requests can be reset
  uint32_t headBytes = 64 * 1024;
  uint64_t bodyBytes = uint64_t{64} * 1024 * 1024;
  std::chrono::milliseconds idle{60'000};  // between requests, and for one request to arrive whole
  std::chrono::milliseconds reservedIdle{5'000};  // the same on a reserved connection
  std::chrono::milliseconds write{30'000};        // without progress of a response or stream
  std::chrono::milliseconds comment{15'000};      // a silent stream gets a keep-alive comment
};

}  // namespace Kest::Host
