// A folder whose files are served: real pictures in place of drawn ones.
//
// Threads: any.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/http/http_message.h"

namespace Kest::Host {

class AssetFolder {
 public:
  // `folder` is empty when there is none.
  explicit AssetFolder(std::string folder) : folder_(std::move(folder)) {}

  static constexpr size_t kLargestFile = size_t{32} * 1024 * 1024;

  // The file at that decoded path of a URL below the folder, with the content type of its suffix.
  // Nothing when there is no such file, or when it is outside of the folder by ".." or by a link;
  // 413 when it is too large, 500 when it cannot be read.
  std::optional<HttpResponse> Find(std::string_view path) const;

 private:
  const std::string folder_;
};

}  // namespace Kest::Host
