#include "host/world_source.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace Kest::Host {
namespace {

constexpr uintmax_t kLargestFile = uintmax_t{64} * 1024 * 1024;

}  // namespace

Maybe<std::unique_ptr<World>> LoadWorld(const std::string& path, uint64_t seed) {
  if (path.empty()) return World::Load(World::SampleText(), "sample.json", seed);
  std::error_code error;
  const uintmax_t size = std::filesystem::file_size(path, error);
  if (error) return Failure{"Cannot read the world " + path + ": " + error.message()};
  if (size > kLargestFile) return Failure{"Cannot read the world " + path + ": it is too large"};
  std::ifstream file(path, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (!file.is_open() || file.bad()) return Failure{"Cannot read the world " + path};
  return World::Load(text, path, seed);
}

}  // namespace Kest::Host
