// The files of host/worlds/, placed in the program when it is built.
#pragma once

#include <string_view>

namespace Kest::Host {

extern const std::string_view kSampleWorldText;
extern const std::string_view kEmptyWorldText;
extern const std::string_view kNewPlayerWorldText;
extern const std::string_view kCollectorWorldText;
extern const std::string_view kEveryStatusWorldText;
extern const std::string_view kLateCollectionsWorldText;
extern const std::string_view kDisabledWorldText;
extern const std::string_view kInGameWorldText;
extern const std::string_view kServiceDownWorldText;
extern const std::string_view kLongTextsWorldText;
extern const std::string_view kWorldSchemaText;

}  // namespace Kest::Host
