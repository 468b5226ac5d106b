#include "host/pages/sibling_pages.h"

#include <utility>

#include "host/http/entity_tag.h"
#include "host/http/http_responses.h"
#include "host/url/request_target.h"
#include "host/url/url_text.h"

namespace Kest::Host {

HttpResponse SiblingPages::Handle(const HttpRequest& request) const {
  const std::string path = DecodePercent(RequestTarget::Split(request.target).path);
  HttpResponse response = Find(path);
  const bool isThere = response.status != 404;
  if (isThere && !OnlyReads(request.method)) return MethodProblem("GET, HEAD");
  return response;
}

HttpResponse SiblingPages::Find(std::string_view path) const {
  if (auto file = assets_.Find(path)) return std::move(*file);
  PluginSession* const session = sessions_->Current();
  if (session == nullptr) return ProblemResponse(503, "The plugin is not running.");
  return session->SiblingPage(path);
}

}  // namespace Kest::Host
