#include "binding/convert/define_struct.h"

#include "binding/convert/convert.h"
#include "tests/binding/binding_samples.h"
#include "tests/support/log_capture.h"

namespace Kest::Samples {

void RegisterOtherPoint(TypeRegistry& types);  // in same_name.cc

namespace {

using ::testing::ElementsAre;

struct Point {
  int32_t x = 0;
};
struct Line {
  std::vector<Point> points;
  Point end;
};

TEST(DefineStruct, TypesOfOneNameInTwoFilesAreTwoTypes) {
  TypeRegistry types;
  RegisterOtherPoint(types);
  DefineStruct<Point>(types, "Point").Fields<&Point::x>();
  const TypeRecord* point = types.FindByName("Point");
  const TypeRecord* other = types.FindByName("OtherPoint");
  ASSERT_TRUE(point != nullptr && other != nullptr);
  EXPECT_EQ(point->staticKey->name, other->staticKey->name);
  EXPECT_EQ(IdentifyType<Point>(types).record, point);
  ConversionContext context(types);
  Point target;
  Assign(context, "point", Tree(R"({"x":5,"name":"a"})"), &target);
  EXPECT_EQ(target.x, 5);
}

TEST(DefineStruct, MisuseIsLoggedWithTypeAndField) {
  TypeRegistry types;
  LogCapture log;
  DefineStruct<Line>(types, "Line").Fields<&Line::end, &Line::points>();
  DefineStruct<Point>(types, "Point").Fields<&Point::x, &Point::x>().Field<&Point::x>("y");
  DefineStruct<Point>(types, "Point").Fields<&Point::x>();  // again: no misuse
  DefineStruct<Part>(types, "Point").Fields<&Part::count>();
  const std::string name(StaticType::Name<Point>());
  const std::string later = " holds a type that is not registered. Register that one first.";
  EXPECT_THAT(
      log.Lines(),
      ElementsAre(
          " ERROR|| Type Line: field \"end\" (" + name + ")" + later,
          " ERROR|| Type Line: field \"points\" (std::vector<" + name + ">)" + later,
          " ERROR|| Type Point: \"x\" is a duplicate. The rest of its registration is dropped.",
          " ERROR|| Type Point (Kest::Samples::Part) conflicts with type Point (" + name +
              "), which was registered before."));
  EXPECT_EQ(types.FindByName("Point")->fields.size(), 1u);
}

}  // namespace
}  // namespace Kest::Samples
