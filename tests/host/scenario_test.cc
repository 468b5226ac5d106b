// Worlds as wholes, through the whole host: what is kept, followed and taken up again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "host/world/file/shipped_worlds.h"
#include "tests/host/running_host.h"
#include "tests/support/temporary_folder.h"

namespace Kest::Host {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using Testing::TemporaryFolder;

void WriteFile(const std::string& path, std::string_view text) {
  std::ofstream(path, std::ios::binary) << text;
}

// A host with a plugin that returns what it is asked.
class EchoHost : public RunningHost {
 public:
  explicit EchoHost(HostOptions options) : RunningHost(Completed(std::move(options))) {}

  // The counts of the inventory, once they are as wanted or after a long time.
  std::string AwaitInventory(const std::string& wanted) const {
    std::string inventory;
    for (int tries = 0; tries < 500 && inventory != wanted; ++tries) {
      inventory.clear();
      const Json state = State();
      for (const Json& item : state["inventory"]) {
        inventory += item["lootName"].get<std::string>() + " " + WriteJson(item["count"]) + ";";
      }
      if (inventory != wanted) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return inventory;
  }

 private:
  static HostOptions Completed(HostOptions options) {
    if (options.pluginPath.empty()) options.pluginPath = ECHO_PLUGIN;
    return options;
  }
};

std::string WorldOfKeys(int count) {
  return "name: Keys\ndefinitions: [{lootName: KEY, type: MATERIAL}]\n"
         "player: {inventory: [{lootName: KEY, count: " +
         std::to_string(count) + "}]}\n";
}

TEST(Scenarios, EachBeginsWithItsSteps) {
  const EchoHost host({});
  for (const std::string_view name : ShippedWorldNames()) {
    const std::string request = "POST /_host/scenario/" + std::string(name);
    EXPECT_EQ(host.Ask(request), "{\"scenario\":\"" + std::string(name) + "\"}");
    const Json state = host.State();
    EXPECT_FALSE(state["session"].is_null()) << name;
    EXPECT_EQ(state["phase"], name == "in-game" ? Json("InProgress") : Json());
    EXPECT_EQ(state["inventory"].size() == 5000, name == "collector");
  }
}

TEST(Scenarios, StepsAreCalledInOrderAndLater) {
  const TemporaryFolder folder;
  WriteFile(folder / "world.yaml", WorldOfKeys(1) + R"(steps:
  - {request: POST /_host/inventory, body: {lootName: KEY, delta: 4}}
  - {request: POST /_host/inventory, body: {lootName: none, delta: 4}}
  - {request: PUT /_host/gameflow, body: {phase: Lobby}, afterMilliseconds: 100}
)");
  const EchoHost host({.pluginPath = "", .worldPath = folder / "world.yaml"});
  EXPECT_EQ(host.AwaitInventory("KEY 5;"), "KEY 5;");
  EXPECT_EQ(host.Ask("POST /_host/idle"), R"({"idle":true})");
  EXPECT_EQ(host.State()["phase"], "Lobby");
}

TEST(Scenarios, AWorldThatWasPutAsideComesBack) {
  const EchoHost host({.pluginPath = "", .worldPath = "", .scenario = "empty"});
  host.Ask("POST /_host/inventory", R"({"lootName":"MATERIAL_key","delta":3})");
  EXPECT_THAT(host.Ask("PUT /_host/snapshots/keys"), HasSubstr(R"("name":"keys")"));
  host.Ask("POST /_host/inventory", R"({"lootName":"MATERIAL_key","delta":3})");
  host.Ask("POST /_host/scenario/disabled");
  EXPECT_EQ(host.Ask("POST /_host/snapshots/keys/restore"), R"({"restored":"keys"})");
  EXPECT_EQ(host.AwaitInventory("MATERIAL_key 3;"), "MATERIAL_key 3;");
  EXPECT_EQ(ParseJson(host.Ask("GET /_host/snapshots"))[0]["name"], "keys");
  host.Ask("DELETE /_host/snapshots/keys");
  EXPECT_EQ(host.Ask("GET /_host/snapshots"), "[]");
}

TEST(Scenarios, AFolderKeepsTheWorldAndTheSnapshots) {
  const TemporaryFolder folder;
  const HostOptions options = {.pluginPath = "", .worldPath = "", .stateFolder = folder / "state"};
  std::string file;
  {
    const EchoHost host(options);
    host.Ask("POST /_host/scenario/empty");
    host.Ask("POST /_host/inventory", R"({"lootName":"MATERIAL_key","delta":3})");
    host.Ask("PUT /_host/snapshots/keys");
    host.Ask("POST /_host/login", R"({"summonerId":5})");
    file = host.Ask("GET /_host/world");
    HostLog log(stderr, LogLevel::kNone);
    HostOptions same = options;
    same.pluginPath = ECHO_PLUGIN;
    same.port = 0;
    DevelopmentHost second(same, &log);
    const auto started = second.Start();
    ASSERT_FALSE(started);
    EXPECT_EQ(started.GetFailure().text,
              "The folder " + options.stateFolder + " is in use by another host.");
  }
  {
    // As a host leaves it that is killed while it writes.
    WriteFile(folder / "state/world.json.new", "{\"na");
    const EchoHost host(options);
    EXPECT_EQ(host.Ask("GET /_host/world"), file);
    host.Ask("POST /_host/reset");
    EXPECT_EQ(host.AwaitInventory(""), "") << "of the scenario that was chosen";
    host.Ask("POST /_host/snapshots/keys/restore");
  }
  const EchoHost host(options);
  EXPECT_EQ(host.AwaitInventory("MATERIAL_key 3;"), "MATERIAL_key 3;");
}

TEST(Scenarios, ASavedFileTakesEffectAndABrokenOneDoesNot) {
  const TemporaryFolder folder;
  WriteFile(folder / "base.yaml", WorldOfKeys(1));
  WriteFile(folder / "world.yaml", "extends: base.yaml\nname: Over\n");
  const EchoHost host({.pluginPath = "", .worldPath = folder / "world.yaml", .followsWorld = true});
  EXPECT_EQ(host.AwaitInventory("KEY 1;"), "KEY 1;");
  WriteFile(folder / "world.yaml", "extends: base.yaml\nname: [Over\n");
  WriteFile(folder / "base.yaml", WorldOfKeys(22));
  std::this_thread::sleep_for(std::chrono::seconds(1));
  EXPECT_EQ(host.AwaitInventory("KEY 1;"), "KEY 1;");
  WriteFile(folder / "world.yaml",
            "extends: base.yaml\nname: Over again\nsteps:\n"
            "  - {request: PUT /_host/gameflow, body: {phase: Lobby}}\n");
  EXPECT_EQ(host.AwaitInventory("KEY 22;"), "KEY 22;");
  EXPECT_FALSE(host.State()["session"].is_null()) << "the player stays";
  EXPECT_EQ(host.State()["phase"], "Lobby") << "of the steps";
  std::filesystem::remove(folder / "base.yaml");
  std::string lines;
  for (int tries = 0; tries < 500 && lines.find("is gone") == lines.npos; ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    lines = host.Ask("GET /_host/timeline?kind=log");
  }
  EXPECT_THAT(lines, HasSubstr("base.yaml is gone; what was read of it stays in effect."));
}

TEST(Scenarios, ARebuiltPluginGoesOnInTheSameWorld) {
  const TemporaryFolder folder;
  std::filesystem::copy_file(ECHO_PLUGIN, folder / "plugin.so");
  const EchoHost host({.pluginPath = folder / "plugin.so", .worldPath = "", .followsPlugin = true});
  host.Ask("POST /_host/inventory", R"({"lootName":"CHEST_lantern","delta":30})");
  const std::string inventory = WriteJson(host.State()["inventory"]);
  host.Ask("GET /tav-loot/v1/runs");
  const auto built = [&](const char* text) {
    std::ofstream(folder / "plugin.so", std::ios::binary | std::ios::app) << text;
  };
  WriteFile(folder / "plugin.so", "no library");
  std::string lines;
  for (int tries = 0; tries < 500 && lines.find("Cannot load") == lines.npos; ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    lines = host.Ask("GET /_host/timeline?kind=log");
  }
  EXPECT_THAT(lines, AllOf(HasSubstr("plugin.so: "), Not(HasSubstr("plugin-"))))
      << "it names what was built, and no copy";
  EXPECT_EQ(host.Ask("GET /tav-loot/v1/runs"), "2") << "the loaded one goes on";
  std::filesystem::copy_file(ECHO_PLUGIN, folder / "plugin.so",
                             std::filesystem::copy_options::overwrite_existing);
  built("x");
  std::string runs;
  for (int tries = 0; tries < 500 && runs != "1"; ++tries) {
    runs = host.Ask("GET /tav-loot/v1/runs");
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_EQ(runs, "1");
  EXPECT_EQ(WriteJson(host.State()["inventory"]), inventory);
  EXPECT_FALSE(host.State()["session"].is_null());
}

}  // namespace
}  // namespace Kest::Host
