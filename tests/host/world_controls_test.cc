#include "tests/host/world_testing.h"

namespace Kest::Host {
namespace {

using Lines = std::vector<std::string>;

using WorldControls = WorldTest;

TEST_F(WorldControls, WrongInputIsExplainedAndChangesNothing) {
  SignIn();
  struct Case {
    const char* method;
    const char* path;
    const char* body;
    const char* answer;
  };
  const Case kCases[] = {
      {"GET", "/", "", "404 there is no control of an empty name"},
      {"GET", "/weather", "", "404 there is no control /weather"},
      {"GET", "/world/more", "", "404 there is no control /world/more"},
      {"POST", "/world", "", "405 this control takes GET, not POST"},
      {"GET", "/configuration/Enabled", "", "405 this control takes PUT, DELETE, not GET"},
      {"POST", "/login", "{", "400 body:1:2: Missing a name for object member."},
      {"POST", "/login", "[]", "400 body:1:1: expected an object, found a list"},
      {"POST", "/login", R"({"summonerId": -1})",
       "400 body:1:16: \"summonerId\" must be a whole number from 0 on, not a whole number"},
      {"POST", "/login", R"({"summoner": 1})", "400 body:1:2: unknown member \"summoner\""},
      {"PUT", "/summoner", "{}", "400 body:1:1: member \"summonerLevel\" is missing"},
      {"PUT", "/gameflow", R"({"phase": "Asleep"})",
       "400 body:1:11: \"Asleep\" is no phase of a game"},
      {"PUT", "/configuration/Enabled", "", "400 body:1:1: The document is empty."},
      {"PUT", "/configuration/a%FFb", "1",
       "400 the name of a configuration value is made of letters and digits"},
      {"DELETE", "/configuration/Nothing", "", "404 there is no configuration value Nothing"},
      {"PUT", "/collections/hats/1", "{}", "404 there is no collection hats"},
      {"PUT", "/collections/champions/9", "{}", "404 9 is not among the champions"},
      {"PUT", "/collections/champions/1x", "{}", "404 1x is not among the champions"},
      {"PUT", "/collections/summoner-icons/5", R"({"owned": true, "rented": true})",
       "400 body:1:17: unknown member \"rented\""},
      {"POST", "/inventory", R"({"lootName": "X", "delta": 1})",
       "400 body:1:1: unknown loot name \"X\""},
      {"POST", "/inventory", R"({"lootName": "CHEST_reed", "delta": -5})",
       "400 body:1:37: the count would become -1"},
      {"POST", "/inventory", R"({"lootName": "CHEST_reed", "delta": 2147483647})",
       "400 body:1:37: the count would become 2147483651"},
      {"POST", "/messages", R"({"name": "nothing"})",
       "400 body:1:10: this world has no message \"nothing\""},
      {"POST", "/messages", R"({"name": "grant", "as": "song"})",
       "400 body:1:25: \"as\" is \"object\" or \"text\""},
      {"POST", "/login-packet", R"({"simpleMessages": [{"body": 1, "params": ["x"]}]})",
       "400 body:1:30: \"body\" and \"params\" exclude each other"},
      {"PUT", "/token", "{}", "400 body:1:1: member \"token\" is missing"},
      {"PUT", "/service/getMoon", "{}", "404 the platform has no service method getMoon"},
      {"PUT", "/service/getClientConfiguration", R"({"status": "NO"})",
       "400 body:1:12: the result of getClientConfiguration has no status word"},
      {"PUT", "/service/redeemPlayerLoot", R"({"latency": -1})",
       "400 body:1:13: \"latency\" must lie between 0 and 600000"},
  };
  const std::string before = Control("GET", "/world");
  for (const Case& c : kCases) {
    SCOPED_TRACE(std::string(c.method) + " " + c.path + " " + c.body);
    EXPECT_EQ(Control(c.method, c.path, c.body), c.answer);
    EXPECT_EQ(Events(), Lines());
  }
  EXPECT_EQ(Control("GET", "/world"), before);
}

TEST_F(WorldControls, OnlyAChangeIsAnnounced) {
  SignIn();
  const std::string configuration = "/tav-platform-config/v1/namespaces/LootConfig/";
  const std::string inventories = "/tav-collections/v1/inventories/70/";
  struct Case {
    const char* method;
    const char* path;
    const char* body;
    Lines events;
  };
  const Case kCases[] = {
      // one after the other
      {"PUT", "/configuration/Enabled", "true", {}},
      {"PUT", "/configuration/Enabled", "false", {"Update " + configuration + "Enabled"}},
      {"PUT", "/configuration/Enabled", " false ", {}},
      {"PUT", "/configuration/PxhEnabled", "\"maybe\"", {"Create " + configuration + "PxhEnabled"}},
      {"DELETE", "/configuration/PxhEnabled", "", {"Delete " + configuration + "PxhEnabled"}},
      {"PUT", "/collections/champions/1", R"({"owned": true})", {}},
      {"PUT",
       "/collections/champions/2",
       R"({"rented": true})",
       {"Update /tav-champions/v1/inventories/70/champions-minimal"}},
      {"PUT",
       "/collections/summoner-icons/5",
       R"({"owned": true})",
       {"Update " + inventories + "summoner-icons"}},
      {"PUT",
       "/collections/emotes/7",
       R"({"freeToPlayReward": true})",
       {"Update /tav-inventory/v1/inventory/emotes"}},
      {"PUT", "/collections/tournament-logos/42", R"({"owned": true})", {}},
      {"PUT", "/gameflow", R"({"phase": "Lobby"})", {"Create /tav-gameflow/v1/session"}},
      {"PUT", "/gameflow", R"({"phase": "Lobby"})", {}},
      {"PUT", "/gameflow", "", {"Delete /tav-gameflow/v1/session"}},
      {"PUT", "/gameflow", R"({"phase": null})", {}},
      {"PUT", "/summoner", R"({"summonerLevel": 9})", {}},
      {"PUT",
       "/summoner",
       R"({"summonerLevel": 10})",
       {"Update /tav-summoner/v1/current-summoner"}},
      {"POST", "/inventory", R"({"lootName": "EMOTE_7", "delta": 1})", {}},
      {"POST", "/login", "", {}},
      {"POST",
       "/login-packet",
       R"({"simpleMessages": []})",
       {"Update /tav-login/v1/login-data-packet"}},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(std::string(c.method) + " " + c.path + " " + c.body);
    EXPECT_EQ(world_->Control(c.method, c.path, c.body).status, 200);
    EXPECT_EQ(Events(), c.events);
  }
  EXPECT_EQ(*world_->Resource("/tav-inventory/v1/inventory/emotes"),
            R"([{"itemId":7,"ownershipType":"F2P"}])");
  EXPECT_EQ(Inventory().at("EMOTE_7"), 1);
}

TEST_F(WorldControls, ASessionComesAndGoesWithItsResources) {
  EXPECT_EQ(Events(), Lines()) << "a world starts without news";
  EXPECT_EQ(world_->Resource("/tav-login/v1/session"), std::nullopt);
  EXPECT_EQ(Control("POST", "/login"), R"({"summonerId":70,"accountId":80})");
  const Lines in = Events();
  ASSERT_EQ(in.size(), 9u);
  EXPECT_EQ(in.front(), "Create /tav-login/v1/session");
  EXPECT_EQ(in.back(), "Update /tav-login/v1/session") << "everything else is there before";
  EXPECT_EQ(*world_->Resource("/tav-login/v1/session"),
            R"({"state":"SUCCEEDED","summonerId":70,"accountId":80})");

  // Another account: the session is never deleted in between.
  EXPECT_EQ(Control("POST", "login", R"({"summonerId": 71, "accountId": 0})"),
            R"({"summonerId":71,"accountId":0})");
  for (const std::string& line : Events()) EXPECT_NE(line, "Delete /tav-login/v1/session");
  EXPECT_EQ(world_->Request("GET", "/tav-champions/v1/inventories/70/skins-minimal", "", "").status,
            404);
  EXPECT_EQ(world_->Request("GET", "/tav-champions/v1/inventories/71/skins-minimal", "", "").status,
            200);

  EXPECT_EQ(Control("POST", "/logout"), R"({"wasSignedIn":true})");
  const Lines out = Events();
  EXPECT_EQ(out.front(), "Update /tav-login/v1/session");
  EXPECT_EQ(out.back(), "Delete /tav-login/v1/session");
  EXPECT_EQ(Control("POST", "/logout"), R"({"wasSignedIn":false})");
  EXPECT_EQ(Events(), Lines());
}

TEST_F(WorldControls, AMessageIsPushedAsObjectOrAsText) {
  const std::string name =
      "OnSvdsEvent_com.kestgames.platform.messaging.persistence.SimpleDialogMessage";
  Control("POST", "/messages", R"({"name": "grant"})");
  Control("POST", "/messages", R"({"name": "grant", "as": "text"})");
  Control("POST", "/messages",
          R"({"subtopic": "a.b", "typeName": "T", "clientId": "c", "body": 1})");
  const std::vector<WorldEvent> events = world_->TakeEvents();
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(events[0].name, name);
  EXPECT_EQ(Part(Parse(events[0].payload), "typeName"), "\"championMasteryLootGrant\"");
  EXPECT_EQ(Part(Parse(events[0].payload), "body"), R"({"gameId":3,"lootName":"CHEST_reed"})");
  EXPECT_EQ(*Parse(events[1].payload).Find("body")->AsText(),
            R"({"gameId":3,"lootName":"CHEST_reed"})");
  EXPECT_EQ(events[2].payload, R"({"clientId":"c","subtopic":"a.b","typeName":"T","body":1})");
}

TEST_F(WorldControls, TheSignedInventoryAnswersItsTokenOrTheOneThatWasSet) {
  SignIn();
  const auto ask = [&](std::string_view query) {
    const WorldAnswer answer =
        world_->Request("GET", "/tav-inventory/v1/signedInventory" + std::string(query), "", "");
    return answer.status == 200 ? answer.body : std::to_string(answer.status);
  };
  const char* kQuery = "?inventoryTypes=%5B%22TOURNAMENT_LOGO%22,%22HAT%22%5D";
  Control("PUT", "/collections/tournament-logos/42", R"({"owned": true})");
  // {"alg":"none","typ":"JWT"} . {"sub":"70","items":{"TOURNAMENT_LOGO":[{"inventoryType":
  // "TOURNAMENT_LOGO","payload":{"rewardSpec":{"name":"42"}}}]}} . unsigned sample
  const std::string token =
      "eyJhbGciOiJub25lIiwidHlwIjoiSldUIn0=."
      "eyJzdWIiOiI3MCIsIml0ZW1zIjp7IlRPVVJOQU1FTlRfTE9HTyI6W3siaW52ZW50b3J5VHlwZSI6IlRPVVJOQU1FTlRf"
      "TE9H"
      "TyIsInBheWxvYWQiOnsicmV3YXJkU3BlYyI6eyJuYW1lIjoiNDIifX19XX19."
      "dW5zaWduZWQgc2FtcGxl";
  EXPECT_EQ(ask(kQuery), "{\"TOURNAMENT_LOGO\":\"" + token + "\"}");
  Control("PUT", "/token", R"({"token": "a..b"})");
  EXPECT_EQ(ask(kQuery), R"({"TOURNAMENT_LOGO":"a..b"})");
  Control("PUT", "/token", R"({"token": null})");
  EXPECT_EQ(ask(kQuery), "{}");
  Control("DELETE", "/token");
  EXPECT_EQ(ask("?a=b&inventoryTypes=[\"HAT\"]"), "{}");
  EXPECT_EQ(ask("") + ask("?inventoryTypes=[1]") + ask("?inventoryTypes=%5"), "400400400");
}

}  // namespace
}  // namespace Kest::Host
