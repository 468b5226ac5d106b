#include "host/docs/docs_files.h"

#include <string>
#include <vector>

#include "host/http/embedded_file.h"
#include "host/http/http_responses.h"
#include "host/url/request_target.h"
#include "host/url/url_text.h"

namespace Kest::Host {
namespace {

constexpr char kFirstPage[] = "/_host/docs/index.html";

struct DocsType {
  std::string_view suffix;
  std::string_view contentType;
};
constexpr DocsType kDocsTypes[] = {{".html", "text/html; charset=utf-8"},
                                   {".css", "text/css; charset=utf-8"},
                                   {".png", "image/png"},
                                   {".svg", "image/svg+xml"}};

struct DocsEntry {
  std::string_view name;
  std::string_view bytes;
};

std::vector<DocsEntry> ReadBundle(std::string_view bundle) {
  const size_t listEnd = bundle.find("\n\n");
  std::string_view list = bundle.substr(0, listEnd + 1);
  std::string_view contents = bundle.substr(listEnd + 2);
  std::vector<DocsEntry> entries;
  while (!list.empty()) {
    std::string_view line = TakeUpTo('\n', &list);
    const size_t size = ParseNumber(TakeUpTo(' ', &line)).value_or(0);
    entries.push_back({line, contents.substr(0, size)});
    contents.remove_prefix(entries.back().bytes.size());
  }
  return entries;
}

}  // namespace

HttpResponse DocsIndex() {
  HttpResponse response;
  response.status = 307;
  response.headers = {{"Location", kFirstPage}};
  return response;
}

HttpResponse DocsFile(std::string_view name) {
  static const std::vector<DocsEntry> entries = ReadBundle(kDocsBundle);
  for (const DocsEntry& entry : entries) {
    if (entry.name != name) continue;
    for (const DocsType& type : kDocsTypes) {
      if (name.ends_with(type.suffix)) return EmbeddedFile(type.contentType, entry.bytes);
    }
  }
  return ProblemResponse(404, "The documentation has no file " + std::string(name) + ".");
}

}  // namespace Kest::Host
