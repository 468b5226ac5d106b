#include "host/http/entity_tag.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace Kest::Host {
namespace {

// The FNV-1a hash of 64 bits; with the length beside it, bodies that differ have different tags.
std::string TagOf(std::string_view body) {
  constexpr char kDigits[] = "0123456789abcdef";
  uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : body) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  std::string tag = "\"" + std::to_string(body.size()) + "-";
  for (int shift = 60; shift >= 0; shift -= 4) tag += kDigits[hash >> shift & 0xF];
  return tag + "\"";
}

// Whether one of a list of tags, or "*", is `tag`. Weak ones count as well, as they do for reads.
bool Names(std::string_view list, std::string_view tag) {
  while (!list.empty()) {
    std::string_view one = list.substr(0, list.find(','));
    list.remove_prefix(std::min(one.size() + 1, list.size()));
    while (one.starts_with(' ')) one.remove_prefix(1);
    while (one.ends_with(' ')) one.remove_suffix(1);
    if (one.starts_with("W/")) one.remove_prefix(2);
    if (one == tag || one == "*") return true;
  }
  return false;
}

}  // namespace

bool OnlyReads(std::string_view method) {
  return method == "GET" || method == "HEAD";
}

void ApplyEntityTag(const HttpRequest& request, HttpResponse* response) {
  if (!OnlyReads(request.method) || response->status != 200 || response->body.empty()) return;
  response->entityTag = TagOf(response->body);
  if (!Names(request.ifNoneMatch, response->entityTag)) return;
  response->status = 304;
  response->contentType.clear();
  response->body.clear();
}

}  // namespace Kest::Host
