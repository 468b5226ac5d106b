#include "host/scenario/world_source.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "host/world/file/shipped_worlds.h"

namespace Kest::Host {
namespace {

constexpr uintmax_t kLargestFile = uintmax_t{64} * 1024 * 1024;

Failure NoSuchScenario(const std::string& name) {
  std::string message = "there is no scenario " + name + "; known are";
  for (const std::string_view known : ShippedWorldNames()) message.append(" ").append(known);
  return Failure{std::move(message), 404};
}

}  // namespace

Maybe<std::string> ReadTextFile(const std::string& path, std::string_view what) {
  const std::string cannot = "Cannot read " + std::string(what) + " " + path;
  std::error_code error;
  const uintmax_t size = std::filesystem::file_size(path, error);
  if (error) return Failure{cannot + ": " + error.message()};
  if (size > kLargestFile) return Failure{cannot + ": it is too large"};
  std::ifstream file(path, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (!file.is_open() || file.bad()) return Failure{cannot};
  return text;
}

Maybe<WorldText> ReadWorldText(const WorldChoice& choice) {
  if (choice.file.empty()) {
    const std::string_view text = ShippedWorld(choice.scenario);
    if (text.empty()) return NoSuchScenario(choice.scenario);
    return WorldText{choice.scenario, std::string(text)};
  }
  auto text = ReadTextFile(choice.file, "the world");
  if (!text) return text.GetFailure();
  return WorldText{choice.file, std::move(text.GetValue())};
}

Maybe<WorldText> FindExtendedWorld(const std::string& extends, const std::string& from,
                                   std::vector<std::string>* read) {
  if (const std::string_view shipped = ShippedWorld(extends); !shipped.empty()) {
    return WorldText{extends, std::string(shipped)};
  }
  const std::string path = (std::filesystem::path(from).parent_path() / extends).string();
  read->push_back(path);
  return ReadWorldText({.scenario = "", .file = path});
}

}  // namespace Kest::Host
