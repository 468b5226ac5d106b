#include "fuzz/properties.h"

namespace Kest::Fuzz {

std::span<const Property> Properties() {
  static constexpr Property kProperties[] = {
      {"argument_binding", CheckArgumentBinding},
      {"conversion", CheckConversion},
      {"formatter", CheckFormatter},
      {"json_read", CheckJsonRead},
      {"json_write_read", CheckJsonWriteRead},
      {"msgpack_read", CheckMsgpackRead},
      {"route_match", CheckRouteMatch},
      {"token_load", CheckTokenLoad},
      {"tree_edits", CheckTreeEdits},
      {"yaml_read", CheckYamlRead},
  };
  return kProperties;
}

}  // namespace Kest::Fuzz
