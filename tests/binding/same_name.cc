#include "binding/convert/define_struct.h"
#include "tests/binding/binding_samples.h"

namespace Kest::Samples {
namespace {

// Another one than that of define_struct_test.cc.
struct Point {
  std::string name;
  int64_t x = 0;
};

}  // namespace

void RegisterOtherPoint(TypeRegistry& types) {
  DefineStruct<Point>(types, "OtherPoint").Fields<&Point::name, &Point::x>();
}

}  // namespace Kest::Samples
