// The memory behind an image's pixels.
//
// Small pictures come from the heap. Large ones are mapped straight from the system on
// 2 MiB boundaries and marked for huge pages: a 4096x4096 page would otherwise fault in
// 16,384 small pages on its first write, which costs several times the copy that fills it.
// Either way the memory starts zeroed, so no picture ever shows what was there before.
#pragma once

#include <cstddef>
#include <cstdint>

namespace Core::Detail {

// `bytes` of zeroed memory, or null when there is none to be had (or `bytes` is 0).
uint8_t* allocate_pixels(size_t bytes);
// Gives back what allocate_pixels made for the same `bytes`; null is allowed.
void free_pixels(uint8_t* pixels, size_t bytes);

}  // namespace Core::Detail
