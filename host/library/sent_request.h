// A request that the plugin has sent, kept until its response is due. Threads: one owner at a time.
#pragma once

#include <string>

#include "plugin/host_interface.h"

namespace Kest::Host {

struct SentRequest {
  std::string method;
  std::string url;
  std::string contentType;
  std::string body;
  KestCompletion completion;
  void* context;
};

}  // namespace Kest::Host
