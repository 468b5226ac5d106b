// A request that the plugin has sent, kept until its response is due. Threads: one owner at a time.
#pragma once

#include <string>

#include "plugin/text_view.h"

namespace Kest::Host {

struct SentRequest {
  std::string method;
  std::string url;
  std::string contentType;
  std::string body;
  KestCompletion completion;
  void* context;

  static SentRequest Copy(const KestRequest& request, KestCompletion completion, void* context) {
    return {std::string(ToView(request.method)),
            std::string(ToView(request.url)),
            std::string(ToView(request.contentType)),
            std::string(ToView(request.body)),
            completion,
            context};
  }
};

}  // namespace Kest::Host
