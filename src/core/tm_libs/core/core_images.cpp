#include "core_images.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "core_convert.h"
#include "pixel_memory.h"
#include "pixel_traits.h"

namespace Core {

// The image of one format: only the packing of single pixels differs between formats.
template <PixelFormat F>
class ImageOf final : public Image {
public:
    ImageOf(uint32_t width, uint32_t height)
        : Image(width, height, Detail::PixelTraits<F>::bytes) {}

    PixelFormat get_format() const override { return F; }
    void set_pixel(uint32_t x, uint32_t y, const Colour& colour) override {
        size_t offset = 0;
        if (offset_of(x, y, offset)) Detail::PixelTraits<F>::pack(data() + offset, colour);
    }
    Colour get_pixel(uint32_t x, uint32_t y) const override {
        size_t offset = 0;
        return offset_of(x, y, offset) ? Detail::PixelTraits<F>::unpack(data() + offset) : Colour{};
    }
};

Image::Image(uint32_t width, uint32_t height, uint32_t bytes_per_pixel)
    : width_(width),
      height_(height),
      capacity_(width * height),
      bytes_per_pixel_(bytes_per_pixel),
      data_(Detail::allocate_pixels(size_t{capacity_} * bytes_per_pixel)) {}

Image::~Image() {
    Detail::free_pixels(data_, size_t{capacity_} * bytes_per_pixel_);
}

Size Image::get_size() const {
    return {static_cast<int32_t>(width_), static_cast<int32_t>(height_)};
}

bool Image::offset_of(uint32_t x, uint32_t y, size_t& offset) const {
    if (x >= width_ || y >= height_) return false;
    offset = (size_t{y} * width_ + x) * bytes_per_pixel_;
    return true;
}

PixelsLock Image::lock(const PixelRect* rectangle) {
    const auto stride = static_cast<int32_t>(width_ * bytes_per_pixel_);
    if (rectangle == nullptr) {
        lock_view_ = UntypedPixels(data_, width_, height_, stride);
    } else {
        const uint32_t x = std::min(rectangle->x, width_);
        const uint32_t y = std::min(rectangle->y, height_);
        const uint32_t width = std::min(rectangle->width, width_ - x);
        const uint32_t height = std::min(rectangle->height, height_ - y);
        uint8_t* first =
            data_ == nullptr ? nullptr : data_ + (size_t{y} * width_ + x) * bytes_per_pixel_;
        lock_view_ = UntypedPixels(first, width, height, stride);
    }
    return {&lock_view_, get_format()};
}

PixelsLock Image::lock_read(const PixelRect* rectangle) {
    return lock(rectangle);
}
PixelsLock Image::lock_write(const PixelRect* rectangle) {
    return lock(rectangle);
}
PixelsLock Image::lock_read_write(const PixelRect* rectangle) {
    return lock(rectangle);
}
void* Image::get_data() {
    return data_;
}
bool Image::unlock() {
    return true;
}

void Image::resize(uint32_t width, uint32_t height) {
    const uint64_t pixels = uint64_t{width} * height;
    if (pixels > std::numeric_limits<uint32_t>::max() ||
        uint64_t{width} * bytes_per_pixel_ > std::numeric_limits<int32_t>::max())
        return;
    if (pixels > capacity_) {
        uint8_t* grown = Detail::allocate_pixels(pixels * bytes_per_pixel_);
        if (grown == nullptr) return;
        Detail::free_pixels(data_, size_t{capacity_} * bytes_per_pixel_);
        data_ = grown;
        capacity_ = static_cast<uint32_t>(pixels);
    }
    width_ = width;
    height_ = height;
}

Image* create_image(uint32_t width, uint32_t height, PixelFormat format) {
    const uint32_t bytes = bytes_per_pixel(format);
    if (bytes == 0 || uint64_t{width} * height > std::numeric_limits<uint32_t>::max() ||
        uint64_t{width} * bytes > std::numeric_limits<int32_t>::max())
        return nullptr;
    Image* image = nullptr;
    Detail::with_format(
        format, [&]<PixelFormat F>() { image = new (std::nothrow) ImageOf<F>(width, height); });
    if (image != nullptr && !image->allocated()) {
        delete image;
        return nullptr;
    }
    return image;
}

void destroy_image(Image* image) {
    delete image;
}

Image* copy_image(Image& source, PixelFormat format) {
    const Size size = source.get_size();
    Image* copy =
        create_image(static_cast<uint32_t>(size.width), static_cast<uint32_t>(size.height), format);
    if (copy == nullptr) return nullptr;
    const PixelsLock destination = copy->lock_write(nullptr);
    const PixelsLock from = source.lock_read(nullptr);
    const bool converted = (destination.has_access() || size.width == 0 || size.height == 0) &&
                           convert_pixels(destination, from);
    source.unlock();
    copy->unlock();
    if (!converted) {
        destroy_image(copy);
        return nullptr;
    }
    return copy;
}

Image* copy_image(Image& source) {
    return copy_image(source, source.get_format());
}

}  // namespace Core
