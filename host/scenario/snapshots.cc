#include "host/scenario/snapshots.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "host/scenario/atomic_file.h"
#include "host/scenario/world_source.h"

namespace Kest::Host {
namespace {

constexpr size_t kMostSnapshots = 100;
constexpr size_t kMostBytes = size_t{256} * 1024 * 1024;
constexpr size_t kLongestName = 64;

bool IsGoodName(const std::string& name) {
  const auto isPlain = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' ||
           c == '_';
  };
  return !name.empty() && name.size() <= kLongestName &&
         std::all_of(name.begin(), name.end(), isPlain);
}

Failure NoSuch(const std::string& name) {
  return Failure{"there is no snapshot " + name, 404};
}

}  // namespace

Snapshots::Snapshots(const std::string& stateFolder)
    : folder_(stateFolder.empty() ? "" : stateFolder + "/snapshots") {}

void Snapshots::ReadFolder() {
  if (std::exchange(hasRead_, true) || folder_.empty()) return;
  std::error_code error;
  std::filesystem::create_directories(folder_, error);
  for (const auto& entry : std::filesystem::directory_iterator(folder_, error)) {
    const std::filesystem::path& path = entry.path();
    if (path.extension() != ".json" || !IsGoodName(path.stem().string())) continue;
    byName_[path.stem().string()] = {static_cast<size_t>(entry.file_size(error)), ""};
  }
}

Maybe<Nothing> Snapshots::Put(const std::string& name, const std::string& text) {
  ReadFolder();
  if (!IsGoodName(name)) {
    return Failure{"a snapshot's name is made of at most 64 letters, digits, \"-\" and \"_\"", 400};
  }
  const auto present = byName_.find(name);
  size_t bytes = text.size();
  for (const auto& [other, snapshot] : byName_) bytes += other == name ? 0 : snapshot.bytes;
  if ((present == byName_.end() && byName_.size() == kMostSnapshots) || bytes > kMostBytes) {
    return Failure{"there is no space for another snapshot; remove one", 409};
  }
  if (!folder_.empty()) {
    if (auto written = WriteFileAtomically(PathOf(name), text); !written) return written;
  }
  byName_[name] = {text.size(), folder_.empty() ? text : ""};
  return Nothing{};
}

Maybe<std::string> Snapshots::Get(const std::string& name) {
  ReadFolder();
  const auto found = byName_.find(name);
  if (found == byName_.end()) return NoSuch(name);
  if (folder_.empty()) return found->second.text;
  return ReadTextFile(PathOf(name), "the snapshot");
}

Maybe<Nothing> Snapshots::Remove(const std::string& name) {
  ReadFolder();
  const auto found = byName_.find(name);
  if (found == byName_.end()) return NoSuch(name);
  std::error_code error;
  if (!folder_.empty() && !std::filesystem::remove(PathOf(name), error) && error) {
    return Failure{"Cannot remove the snapshot " + name + ": " + error.message()};
  }
  byName_.erase(found);
  return Nothing{};
}

Json Snapshots::List() {
  ReadFolder();
  Json list = Json::array();
  for (const auto& [name, snapshot] : byName_) {
    list.push_back(Json{{"name", name}, {"bytes", snapshot.bytes}});
  }
  return list;
}

}  // namespace Kest::Host
