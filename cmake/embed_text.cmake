# Writes OUTPUT, a C++ source that defines the std::string_view NAME in NAMESPACE (declared in HEADER)
# with the bytes of INPUT. Run with: cmake -DINPUT=... -DOUTPUT=... ... -P embed_text.cmake
file(READ "${INPUT}" hex HEX)
string(REGEX REPLACE "(................................)" "\\1\n" lines "${hex}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${lines}")
file(WRITE "${OUTPUT}"
"#include \"${HEADER}\"

namespace ${NAMESPACE} {
namespace {

constexpr char ${NAME}Bytes[] = {
${bytes}'\\0'};

}  // namespace

const std::string_view ${NAME}(${NAME}Bytes, sizeof(${NAME}Bytes) - 1);

}  // namespace ${NAMESPACE}
")
