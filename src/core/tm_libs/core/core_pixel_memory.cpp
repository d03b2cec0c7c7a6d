#include "pixel_memory.h"

#include <sys/mman.h>

#include <cstdlib>

namespace Core::Detail {
namespace {

constexpr size_t kHugePage = size_t{2} << 20;
// Below this the heap's own reuse is cheaper than a mapping of our own.
constexpr size_t kMappedFrom = 4 * kHugePage;

size_t round_up(size_t bytes, size_t unit) {
    return (bytes + unit - 1) / unit * unit;
}

uint8_t* map_aligned(size_t span) {
    // Map one huge page more than needed, then give back the ends around the aligned span.
    const size_t mapped = span + kHugePage;
    void* start =
        ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED) return nullptr;
    auto* first = static_cast<uint8_t*>(start);
    const size_t lead = round_up(reinterpret_cast<uintptr_t>(first), kHugePage) -
                        reinterpret_cast<uintptr_t>(first);
    if (lead > 0) ::munmap(first, lead);
    ::munmap(first + lead + span, kHugePage - lead);
    // Only advice: without huge pages the memory is as good, only slower to fault in.
    ::madvise(first + lead, span, MADV_HUGEPAGE);
    return first + lead;
}

}  // namespace

uint8_t* allocate_pixels(size_t bytes) {
    if (bytes == 0) return nullptr;
    if (bytes < kMappedFrom) return static_cast<uint8_t*>(std::calloc(bytes, 1));
    return map_aligned(round_up(bytes, kHugePage));
}

void free_pixels(uint8_t* pixels, size_t bytes) {
    if (pixels == nullptr) return;
    if (bytes < kMappedFrom)
        std::free(pixels);
    else
        ::munmap(pixels, round_up(bytes, kHugePage));
}

}  // namespace Core::Detail
