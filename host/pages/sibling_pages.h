// What a page finds beside the plugin: pictures, and the resources of the sibling plugins. A real
// client has them; here they are files of a folder, resources of the world, and drawn tiles.
//
// Threads: [task] on the scheduler's tasks.
#pragma once

#include <string>

#include "host/http/http_message.h"
#include "host/pages/asset_folder.h"
#include "host/session/session_manager.h"

namespace Kest::Host {

class SiblingPages {
 public:
  // `assets` is the folder of files, which go first; empty for none. `sessions` outlives the pages.
  SiblingPages(std::string assets, SessionManager* sessions)
      : assets_(std::move(assets)), sessions_(sessions) {}

  // 404 for what is not there, 405 for anything but reading.
  HttpResponse Handle(const HttpRequest& request) const;

 private:
  HttpResponse Find(std::string_view path) const;

  const AssetFolder assets_;
  SessionManager* const sessions_;
};

}  // namespace Kest::Host
