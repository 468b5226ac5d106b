#include "binding/types/type_registry.h"

#include <deque>
#include <thread>

#include "tests/binding/binding_samples.h"
#include "tests/support/log_capture.h"

namespace Kest {
namespace {

using namespace Samples;
using ::testing::ElementsAre;
using ::testing::Field;

TEST(TypeNames, NumbersOutsideTheTablesHaveNone) {
  const auto names = [](std::string_view (*name)(uint8_t)) {
    std::string all;
    for (uint8_t i = 0; i < 22; ++i) all += std::string(name(i)) + (i < 21 ? "," : "");
    return all;
  };
  EXPECT_EQ(names(KindName),
            "empty,bool,signed,unsigned,float,string,blob,enum,collection,structure,,,,,,,,,,,,");
  EXPECT_EQ(names(TypeIdName),
            ",bool,int8,uint8,int16,uint16,int32,uint32,int64,uint64,float,double,string,object,"
            "blob,vector,enum,struct,callback,map,,");
  EXPECT_EQ(names(DocumentTagName),
            ",bool,signed,unsigned,float,string,string,blob,blob,collection,structure,,,,,,,,,,,");
}

TEST(StaticType, NameHasItsNamespaceAndTheKeyTextItsDigits) {
  EXPECT_EQ(StaticType::Name<Part>(), "Kest::Samples::Part");
  EXPECT_EQ(StaticType::Name<int>(), "int");
  EXPECT_EQ(StaticType::MemberName<&Part::count>(), "count");
  const TypeKey& key = StaticType::Key<Part>();
  EXPECT_NE(key.number, StaticType::Key<Whole>().number);
  char expected[16];
  std::snprintf(expected, sizeof(expected), "#%08X", key.number);
  EXPECT_EQ(key.String(), expected);
  EXPECT_EQ(Registry().FindByName("Part")->staticKey, &key);
}

TEST(TypeRegistry, RecordsHoldWhatWasDefined) {
  const TypeRecord* whole = Registry().FindByKey(StaticType::Key<Whole>());
  ASSERT_EQ(whole, Registry().FindByName("Whole"));
  EXPECT_EQ(whole->size, sizeof(Whole));
  EXPECT_EQ(whole->nameSpace, "Kest::Samples");
  EXPECT_EQ(whole->registry, &Registry());
  const TypeRecord* part = Registry().FindByName("Part");
  EXPECT_FALSE(part->fields[0].optional);
  EXPECT_TRUE(part->fields[1].optional);

  const TypeIdentifier types[] = {{TypeId::kStruct, TypeId::kNone, part},
                                  {TypeId::kVector, TypeId::kStruct, part},
                                  {TypeId::kMap, TypeId::kStruct, part},
                                  {TypeId::kMap, TypeId::kStruct, part},
                                  {TypeId::kVector, TypeId::kString},
                                  {TypeId::kBlob},
                                  {TypeId::kObject},
                                  {TypeId::kEnum, TypeId::kNone, &GradeRecord()}};
  for (size_t i = 0; i < std::size(types); ++i) {
    EXPECT_EQ(whole->fields[i].type, types[i]) << whole->fields[i].name;
  }
  const Whole value;
  EXPECT_EQ(whole->fields[10].offset, static_cast<size_t>(reinterpret_cast<const char*>(&value.id) -
                                                          reinterpret_cast<const char*>(&value)));
}

TEST(TypeRegistry, FirstRegistrationOfANameWins) {
  TypeRegistry types;
  DefineEnum<Grade>(types, "Grade").Enumerator("A", Grade::kEpic).Tag("x").Description("d");
  DefineEnum<Grade>(types, "Grade").Enumerator("B", Grade::kPlain).Tag("y").Description("e");
  DefineStruct<Part>(types, "Grade").Field<&Part::count>();
  const TypeRecord* grade = types.FindByName("Grade");
  EXPECT_EQ(grade->kind, TypeKind::kEnumeration);
  EXPECT_THAT(grade->enumerators, ElementsAre(Field(&EnumeratorRecord::name, "A")));
  EXPECT_THAT(grade->tags, ElementsAre("x"));
  EXPECT_EQ(grade->description, "d");
  EXPECT_EQ(types.FindByKey(StaticType::Key<Part>()), nullptr);
  EXPECT_EQ(types.Types().size(), 1u);
}

TEST(TypeRegistry, AnotherNameForAKeyLeavesTheKeyToTheFirst) {
  TypeRegistry types;
  LogCapture log;
  const TypeKey key("Native");
  types.RegisterType("First", 1, key, TypeKind::kStructure);
  const TypeBuilder second = types.RegisterType("Second", 1, key, TypeKind::kStructure);
  EXPECT_EQ(types.FindByKey(key)->name, "First");
  EXPECT_THAT(log.Lines(), ElementsAre(" ERROR|| Type Second (Native) conflicts with type First "
                                       "(Native), which was registered before."));
  EXPECT_TRUE(second.HasFailed());
  EXPECT_EQ(types.FindByName("Second"), nullptr);
}

TEST(TypeBuilder, AFailedCallChangesNothingAndEndsTheChain) {
  constexpr TypeKind kEnum = TypeKind::kEnumeration;
  constexpr TypeKind kStruct = TypeKind::kStructure;
  const std::pair<TypeKind, void (*)(TypeBuilder&)> cases[] = {
      {kEnum, [](TypeBuilder& b) { b.AddField({}); }},
      {kStruct, [](TypeBuilder& b) { b.AddEnumerator("x", 1); }},
      {kStruct, [](TypeBuilder& b) { b.AddField({}).AddField({}); }},  // of one name
      {kEnum, [](TypeBuilder& b) { b.AddEnumerator("x", 1).AddEnumerator("x", 2); }},
  };
  for (const auto& [kind, wrong] : cases) {
    TypeRegistry types;
    const TypeKey key("T");
    TypeBuilder builder = types.RegisterType("T", 4, key, kind);
    wrong(builder);
    builder.AddTags({"late"}).SetDescription("late");
    EXPECT_TRUE(builder.HasFailed());
    const TypeRecord* record = types.FindByName("T");
    EXPECT_TRUE(record->tags.empty() && record->description.empty());
    EXPECT_LE(record->fields.size() + record->enumerators.size(), 1u);
    EXPECT_EQ(record->FindEnumerator(2), nullptr);
  }
}

TEST(TypeRegistry, ARegistrationThatIsBrokenOffLeavesItsNameFree) {
  TypeRegistry types;
  DefineEnum<Grade>(types, "Grade").Enumerator("A", Grade::kEpic);
  const auto define = [&types](std::string_view (*makeTag)()) {
    DefineStruct<Part>(types, "Part").Field<&Part::name>().Field<&Part::count>().Tag(makeTag());
  };
  EXPECT_THROW(define([]() -> std::string_view { throw std::bad_alloc(); }), std::bad_alloc);
  EXPECT_EQ(types.FindByName("Part"), nullptr);
  EXPECT_EQ(types.FindByKey(StaticType::Key<Part>()), nullptr);
  EXPECT_EQ(types.Types().size(), 1u);
  define([]() -> std::string_view { return "x"; });
  EXPECT_EQ(types.FindByKey(StaticType::Key<Part>()), types.FindByName("Part"));
  EXPECT_EQ(types.FindByName("Part")->tags.size(), 1u);
}

TEST(TypeRegistry, ThreadsThatRegisterTheSameNamesMakeOneRecordEach) {
  TypeRegistry types;
  constexpr uint32_t kNames = 200;
  std::deque<TypeKey> keys;
  for (uint32_t i = 0; i < kNames; ++i) keys.emplace_back("Type");
  std::atomic<int> firsts = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 10; ++t) {
    threads.emplace_back([&] {
      for (uint32_t i = 0; i < kNames; ++i) {
        const std::string name = "Type" + std::to_string(i);
        firsts += types.RegisterType(name, 1, keys[i], TypeKind::kStructure).IsRepeat() ? 0 : 1;
        EXPECT_EQ(types.FindByName(name), types.FindByKey(keys[i]));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(firsts, static_cast<int>(kNames));
  EXPECT_EQ(types.Types().size(), kNames);
}

TEST(TypeRegistry, EventsComeInTheOrderOfTheirFirstRegistration) {
  TypeRegistry types;
  types.RegisterEvent("OnB", "first", {TypeId::kString});
  types.RegisterEvent("OnA", "", {});
  types.RegisterEvent("OnB", "second", {});
  ASSERT_EQ(types.Events().size(), 2u);
  EXPECT_EQ(types.Events()[0]->name, "OnB");
  EXPECT_EQ(types.FindEvent("OnB")->description, "first");
  EXPECT_EQ(types.FindEvent("OnB")->payload.id, TypeId::kString);
  EXPECT_EQ(types.FindEvent("OnC"), nullptr);
}

}  // namespace
}  // namespace Kest
