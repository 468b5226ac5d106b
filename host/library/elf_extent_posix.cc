#include "host/library/elf_extent_posix.h"

#include <link.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <limits>

namespace Kest::Host {
namespace {

using FileHeader = ElfW(Ehdr);
using SegmentHeader = ElfW(Phdr);

constexpr unsigned char kOwnClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;

template <typename Value>
bool ReadAt(std::ifstream& file, uint64_t offset, Value* value) {
  file.clear();
  file.seekg(static_cast<std::streamoff>(offset));
  return file.read(reinterpret_cast<char*>(value), sizeof *value).good();
}

uint64_t EndOf(uint64_t offset, uint64_t size) {
  constexpr uint64_t kMost = std::numeric_limits<uint64_t>::max();
  return size > kMost - offset ? kMost : offset + size;
}

bool IsOwn(const FileHeader& header) {
  return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
         header.e_ident[EI_CLASS] == kOwnClass && header.e_phentsize == sizeof(SegmentHeader);
}

}  // namespace

std::optional<uint64_t> ElfExtent(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  FileHeader header;
  if (!ReadAt(file, 0, &header) || !IsOwn(header)) return std::nullopt;
  const uint64_t sections = uint64_t{header.e_shnum} * header.e_shentsize;
  uint64_t end = std::max(EndOf(header.e_phoff, uint64_t{header.e_phnum} * sizeof(SegmentHeader)),
                          EndOf(header.e_shoff, sections));
  SegmentHeader segment;
  for (uint64_t i = 0; i < header.e_phnum; ++i) {
    if (!ReadAt(file, header.e_phoff + i * sizeof segment, &segment)) break;  // `end` is beyond it
    end = std::max(end, EndOf(segment.p_offset, segment.p_filesz));
  }
  return end;
}

}  // namespace Kest::Host
