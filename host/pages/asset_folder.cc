#include "host/pages/asset_folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "base/ascii.h"
#include "host/http/http_responses.h"

namespace Kest::Host {
namespace {

namespace fs = std::filesystem;

struct SuffixType {
  std::string_view suffix;
  std::string_view contentType;
};

constexpr SuffixType kSuffixTypes[] = {{".avif", "image/avif"},
                                       {".gif", "image/gif"},
                                       {".jpeg", "image/jpeg"},
                                       {".jpg", "image/jpeg"},
                                       {".json", "application/json"},
                                       {".mp3", "audio/mpeg"},
                                       {".mp4", "video/mp4"},
                                       {".ogg", "audio/ogg"},
                                       {".png", "image/png"},
                                       {".svg", "image/svg+xml"},
                                       {".txt", "text/plain; charset=utf-8"},
                                       {".wav", "audio/wav"},
                                       {".webm", "video/webm"},
                                       {".webp", "image/webp"}};

std::string ContentTypeOf(const fs::path& file) {
  std::string suffix = file.extension().string();
  std::transform(suffix.begin(), suffix.end(), suffix.begin(), ToLower);
  for (const SuffixType& known : kSuffixTypes) {
    if (known.suffix == suffix) return std::string(known.contentType);
  }
  return "application/octet-stream";
}

// What would have a meaning of its own to a file system: drives, streams, separators of others.
bool IsPlain(std::string_view path) {
  return path.starts_with('/') &&
         path.find_first_of(std::string_view("\\:\0", 3)) == std::string_view::npos;
}

bool IsBelow(const fs::path& file, const fs::path& folder) {
  const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
  return end == folder.end() && rest != file.end();
}

HttpResponse ReadFile(const fs::path& file) {
  std::error_code error;
  const uintmax_t size = fs::file_size(file, error);
  if (!error && size > AssetFolder::kLargestFile) {
    return ProblemResponse(413, "The file is larger than 32 MiB.");
  }
  std::string bytes(error ? 0 : static_cast<size_t>(size), '\0');
  std::ifstream stream(file, std::ios::binary);
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (error || !stream) return ProblemResponse(500, "The file cannot be read.");
  return {.status = 200, .contentType = ContentTypeOf(file), .body = std::move(bytes)};
}

}  // namespace

std::optional<HttpResponse> AssetFolder::Find(std::string_view path) const {
  if (folder_.empty() || !IsPlain(path)) return std::nullopt;
  std::error_code error;
  const fs::path folder = fs::canonical(folder_, error);
  if (error) return std::nullopt;
  const fs::path file = fs::canonical(folder / fs::path(path.substr(1)), error);
  if (error || !IsBelow(file, folder) || !fs::is_regular_file(file, error)) return std::nullopt;
  return ReadFile(file);
}

}  // namespace Kest::Host
