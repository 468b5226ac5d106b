// Declares what the calls are given, so that their headers need not include each other.
#pragma once

namespace Kest {
class AppModule;
}

namespace Kest::Client {
class ServiceProxy;
class SiblingClient;
}  // namespace Kest::Client

namespace Kest::Client::Loot {

class ChestNotices;
class ClientConfiguration;
class CollectionSources;
class GrantNotices;
class InboundMessages;
class LootInventory;
class LootPublisher;
class LootRetrieval;
struct LootState;
struct LootSwitch;
class NewPlayerChest;
class PlayerSession;
class SourceReadiness;
class TournamentLogos;
class Transactions;
class WatchedViews;

}  // namespace Kest::Client::Loot
