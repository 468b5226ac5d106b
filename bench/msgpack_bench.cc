// MessagePack to a tree and a map of items to MessagePack, against msgpack-cxx: both own the
// strings they read, and the items are packed as one would by hand. One iteration handles the whole
// document, of those of the JSON benchmarks.
#define MSGPACK_NO_BOOST

#include <msgpack.hpp>
#include <string>
#include <string_view>
#include <type_traits>

#include "bench/allocation_counter.h"
#include "bench/comparison.h"
#include "bench/json_data.h"
#include "binding/json/json_adapter.h"
#include "binding/msgpack/msgpack_reader.h"
#include "binding/msgpack/msgpack_writer.h"

namespace Kest::Bench {
namespace {

std::string Pack(const BindingProperty& tree) {
  ConversionContext context(LootRegistry());
  std::string bytes;
  MessagePackWriter writer(&bytes);
  CheckWritten(context, WriteTree(tree, writer), writer);
  writer.Finish(context);
  return bytes;
}

const std::string& SampleBytes() {
  static const std::string bytes = [] {
    ConversionContext context(LootRegistry());
    return Pack(ReadJson(context, SampleText()));
  }();
  return bytes;
}

BindingProperty Unpack(ConversionContext& context, const std::string& bytes) {
  size_t consumed = 0;
  return ReadMessagePack(context, {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()},
                         &consumed);
}

void ReadTree() {
  ConversionContext context(LootRegistry());
  Keep(Unpack(context, SampleBytes()));
  Require(context.Ok(), "MessagePack to tree failed");
}

void ReadMsgpackCxx() {
  // Without a reference function it copies strings into the zone of the handle.
  const msgpack::object_handle tree = msgpack::unpack(SampleBytes().data(), SampleBytes().size());
  Keep(tree.get());
}

using Packer = msgpack::packer<msgpack::sbuffer>;

void PackString(Packer& packer, std::string_view text) {
  packer.pack_str(static_cast<uint32_t>(text.size()));
  packer.pack_str_body(text.data(), static_cast<uint32_t>(text.size()));
}

template <typename T>
void PackMember(Packer& packer, std::string_view name, const T& value) {
  PackString(packer, name);
  if constexpr (std::is_convertible_v<T, std::string_view>) {
    PackString(packer, value);
  } else {
    packer.pack(value);
  }
}

std::string_view Name(Client::Loot::Api::ItemOwnershipStatus status) {
  static constexpr std::string_view kNames[] = {"NONE", "FREE", "RENTAL", "OWNED"};
  return kNames[static_cast<size_t>(status)];
}

void PackItem(Packer& packer, const PlayerLoot& item) {
  packer.pack_map(31);
  PackMember(packer, "lootName", item.lootName);
  PackMember(packer, "lootId", item.lootId);
  PackMember(packer, "refId", item.refId);
  PackMember(packer, "localizedName", item.localizedName);
  PackMember(packer, "localizedDescription", item.localizedDescription);
  PackMember(packer, "itemDesc", item.itemDesc);
  PackMember(packer, "displayCategories", item.displayCategories);
  PackMember(packer, "rarity", item.rarity);
  PackMember(packer, "tags", item.tags);
  PackMember(packer, "type", item.type);
  PackMember(packer, "asset", item.asset);
  PackMember(packer, "tilePath", item.tilePath);
  PackMember(packer, "splashPath", item.splashPath);
  PackMember(packer, "shadowPath", item.shadowPath);
  PackMember(packer, "upgradeLootName", item.upgradeLootName);
  PackMember(packer, "upgradeEssenceName", item.upgradeEssenceName);
  PackMember(packer, "disenchantLootName", item.disenchantLootName);
  PackMember(packer, "itemStatus", Name(item.itemStatus));
  PackMember(packer, "parentItemStatus", Name(item.parentItemStatus));
  PackMember(packer, "redeemableStatus", std::string_view("UNKNOWN"));
  PackMember(packer, "count", item.count);
  PackMember(packer, "rentalGames", item.rentalGames);
  PackMember(packer, "storeItemId", item.storeItemId);
  PackMember(packer, "parentStoreItemId", item.parentStoreItemId);
  PackMember(packer, "value", item.value);
  PackMember(packer, "upgradeEssenceValue", item.upgradeEssenceValue);
  PackMember(packer, "disenchantValue", item.disenchantValue);
  PackMember(packer, "expiryTime", item.expiryTime);
  PackMember(packer, "rentalSeconds", item.rentalSeconds);
  PackMember(packer, "isNew", item.isNew);
  PackMember(packer, "isRental", item.isRental);
}

void PackItems(msgpack::sbuffer* buffer) {
  Packer packer(*buffer);
  packer.pack_map(static_cast<uint32_t>(SampleItems().size()));
  for (const auto& [id, item] : SampleItems()) {
    PackString(packer, id);
    PackItem(packer, item);
  }
}

void ComparePacking(Table& table) {
  std::string bytes;
  const auto pack = [&] {
    bytes.clear();
    ConversionContext context(LootRegistry());
    MessagePackWriter writer(&bytes);
    Read(context, SampleItems(), writer);
    writer.Finish(context);
    Require(context.Ok(), "a map to MessagePack failed");
  };
  msgpack::sbuffer buffer;
  const auto packByPeer = [&] {
    buffer.clear();
    PackItems(&buffer);
    Keep(buffer.data());
  };
  table.Compare("map of 5,000 items to MessagePack", pack, "msgpack-cxx by hand", packByPeer,
                AtLeast(2));
  table.Value("map of 5,000 items to MessagePack: allocations", Allocations(pack), "", 0);
}

}  // namespace

void AddRows(Table& table) {
  ConversionContext check(LootRegistry());
  Require(Pack(Unpack(check, SampleBytes())) == SampleBytes(), "MessagePack was read wrongly");
  table.Compare("MessagePack to tree", ReadTree, "msgpack-cxx, owned strings", ReadMsgpackCxx,
                AtLeast(2));
  table.Value("MessagePack to tree: allocations", Allocations(ReadTree), "", 30);
  ComparePacking(table);
}

}  // namespace Kest::Bench
