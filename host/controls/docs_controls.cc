#include "host/controls/docs_controls.h"

#include "host/docs/docs_files.h"

namespace Kest::Host {

ControlGroup DocsControls() {
  return {{"GetDocs", [](const HostCall&) { return DocsIndex(); }},
          {"GetDocsFile",
           [](const HostCall& call) { return DocsFile(call.path.find("file")->second); }}};
}

}  // namespace Kest::Host
