// A page file read back by a test of the command line, which runs without the IO manager:
// the bytes are read here and the picture is loaded from memory.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "TempDir.h"
#include "core_images.h"
#include "core_memory_buffer.h"
#include "core_tga.h"

using Picture = std::unique_ptr<Core::Image, decltype(&Core::destroy_image)>;

// The picture in the TGA file at `path` in 32-bit form; null when there is none.
inline Picture LoadPage(const std::string& path) {
    const std::string bytes = ReadFile(path);
    Core::TgaReader reader;
    reader.buffer.attach(
        std::make_shared<Core::MemoryBufferImpl>(std::vector<uint8_t>(bytes.begin(), bytes.end())));
    return {Core::load_tga(reader, Core::PIXEL_FORMAT_8888), Core::destroy_image};
}
