#include "LayoutRenderer.h"

#include "core_images.h"

ImagePtr LayoutRenderer::Render(const LPAGE& /*page*/, PageSize size) {
    ImagePtr picture(Core::create_image(static_cast<uint32_t>(size.width),
                                        static_cast<uint32_t>(size.height),
                                        Core::PIXEL_FORMAT_8888));
    if (picture != nullptr)
        Core::fill_pixels(picture->lock_write(nullptr), 0, 0, static_cast<uint32_t>(size.width),
                          static_cast<uint32_t>(size.height), {0xCD, 0xCD, 0xCD, 0xFF});
    if (picture != nullptr) picture->unlock();
    return picture;
}
