// Describes an API as Python epytext.
#pragma once

#include <string>

#include "binding/help/help_builder.h"

namespace Kest {

// One item for each function, type and event, in their order. Lines end with CR LF; an empty line
// is between items, none inside one. An item is
//   a heading: "function NAME", "struct NAME", "enum NAME" or "event NAME: TYPE of the payload"
//   the description
//   "@param NAME: (optional) DESCRIPTION" and "@type NAME: TYPE" for each argument, or
//   "@ivar NAME: DESCRIPTION" and "@type NAME: TYPE" for each field, or
//   "@cvar NAME: (VALUE) DESCRIPTION" for each enumerator
//   "@rtype: TYPE", "@threadsafe: true", "@async: TYPE", "@size: BYTES", "@tags: TAG, TAG"
// without the lines that do not apply. What follows the heading is an epytext docstring as
// documentation tools read it. In descriptions a leading "-" and all braces are escaped; a
// line break becomes a space.
// Types: the names of binding/types/type_id.h, but "bytearray", "list[TYPE]", "dict[TYPE]", and the
// link "L{NAME}" for a registered type.
std::string WriteEpytext(const ApiRecords& api);

}  // namespace Kest
