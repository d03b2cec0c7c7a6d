// Any bytes as a TGA file: every reader path must stay inside the file and the picture.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "core_memory_buffer.h"
#include "core_tga.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Core::TgaReader reader;
    reader.buffer.attach(
        std::make_shared<Core::MemoryBufferImpl>(std::vector<uint8_t>(data, data + size)));
    // In the file's own format, then converted on the way in: both paths of the readers.
    Core::destroy_image(Core::load_tga(reader));
    Core::destroy_image(Core::load_tga(reader, static_cast<Core::PixelFormat>(size % 8)));
    return 0;
}
