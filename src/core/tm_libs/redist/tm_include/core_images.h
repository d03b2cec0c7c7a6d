// Pictures in memory: one class per uncompressed pixel format behind one interface.
//
// Failure style: null or false, never an exception. Whoever creates an image owns it and
// destroys it with destroy_image. Rows are packed: the stride is the width times the bytes
// per pixel. New and grown buffers are zero-filled.
#pragma once

#include <cstdint>

#include "core_pixels.h"

namespace Core {

class Image {
public:
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    virtual PixelFormat get_format() const = 0;
    virtual Size get_size() const;
    // Pixels outside the picture are not touched: writes are dropped, reads answer zero.
    virtual void set_pixel(uint32_t x, uint32_t y, const Colour& colour) = 0;
    virtual Colour get_pixel(uint32_t x, uint32_t y) const = 0;
    // The whole picture (null rectangle) or a rectangle of it, clipped to the picture. The
    // view is the image's one lock view: a second lock overwrites what the first answered.
    virtual PixelsLock lock_read(const PixelRect* rectangle);
    virtual PixelsLock lock_write(const PixelRect* rectangle);
    virtual PixelsLock lock_read_write(const PixelRect* rectangle);
    virtual void* get_data();
    virtual bool unlock();
    virtual ~Image();
    // New size; the buffer grows when it must (zero-filled) and never shrinks. If it cannot
    // grow, the image stays as it was.
    virtual void resize(uint32_t width, uint32_t height);

protected:
    Image(uint32_t width, uint32_t height, uint32_t bytes_per_pixel);
    // Byte offset of pixel (x, y); false when it lies outside the picture.
    bool offset_of(uint32_t x, uint32_t y, size_t& offset) const;
    bool allocated() const { return data_ != nullptr || capacity_ == 0; }
    uint8_t* data() const { return data_; }

private:
    template <PixelFormat F>
    friend class ImageOf;
    friend Image* create_image(uint32_t width, uint32_t height, PixelFormat format);
    PixelsLock lock(const PixelRect* rectangle);

    UntypedPixels lock_view_;
    uint32_t width_;
    uint32_t height_;
    uint32_t capacity_;
    uint32_t bytes_per_pixel_;
    uint8_t* data_;
};

// A new image of `format` (0 to 7), zero-filled; null for any other format, for sizes
// whose buffer cannot be counted in 32-bit pixels, or when memory runs out.
Image* create_image(uint32_t width, uint32_t height, PixelFormat format);
// Deletes an image; null is allowed.
void destroy_image(Image* image);
// A new image of the source's size in `format` holding the source converted; null on any
// failure.
Image* copy_image(Image& source, PixelFormat format);
Image* copy_image(Image& source);

}  // namespace Core
