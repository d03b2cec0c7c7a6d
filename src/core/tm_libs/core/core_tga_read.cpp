#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include <boost/format.hpp>

#include "core_convert.h"
#include "core_log.h"
#include "core_tga.h"
#include "pixel_traits.h"

namespace Core {
namespace {

constexpr uint8_t kRightToLeft = 0x10;
constexpr uint8_t kTopToBottom = 0x20;
constexpr uint64_t kPixelsPerPacket = 128;

struct ImageDeleter {
    void operator()(Image* image) const { destroy_image(image); }
};
using OwnedImage = std::unique_ptr<Image, ImageDeleter>;

// The bytes behind the reader's position, in memory. Every read is bounded by the end.
class ByteSource {
public:
    explicit ByteSource(TgaReader& reader)
        : reader_(reader),
          data_(reader.buffer.data()),
          size_(data_ == nullptr ? 0 : reader.buffer.size()),
          position_(std::min<uint64_t>(reader.buffer.tell(), size_)) {}
    // Leaves the reader behind what was consumed.
    ~ByteSource() { reader_.buffer.seek(position_); }
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    uint64_t remaining() const { return size_ - position_; }
    const uint8_t* here() const { return data_ + position_; }
    void skip(uint64_t count) { position_ += std::min(count, remaining()); }
    // The next `count` bytes, or null when the file ends first.
    const uint8_t* take(uint64_t count) {
        if (remaining() < count) return nullptr;
        const uint8_t* at = here();
        position_ += count;
        return at;
    }

private:
    TgaReader& reader_;
    const uint8_t* data_;
    uint64_t size_;
    uint64_t position_;
};

void reverse_pixels(uint8_t* row, uint32_t count, uint32_t bytes) {
    for (uint32_t left = 0, right = count; left + 1 < right; ++left) {
        --right;
        uint8_t swap[4];
        std::memcpy(swap, row + size_t{left} * bytes, bytes);
        std::memcpy(row + size_t{left} * bytes, row + size_t{right} * bytes, bytes);
        std::memcpy(row + size_t{right} * bytes, swap, bytes);
    }
}

uint8_t* row_of(const UntypedPixels& view, uint32_t row) {
    return static_cast<uint8_t*>(view.pixels) + int64_t{view.stride_in_bytes} * row;
}

// Types 2 and 3: each file row straight into its destination row, converted by the pair's
// own routine. A file that ends early leaves the rest as it was.
void read_direct(const PixelsLock& destination, ByteSource& source, const TgaHeader& header,
                 PixelFormat file_format) {
    const UntypedPixels& view = *destination.view;
    const uint32_t file_bytes = bytes_per_pixel(file_format);
    const uint32_t width = std::min<uint32_t>(header.width, view.width);
    const uint32_t height = std::min<uint32_t>(header.height, view.height);
    const Detail::RowConverter convert = Detail::row_converter(file_format, destination.format);
    const uint64_t row_bytes = uint64_t{header.width} * file_bytes;
    for (uint32_t file_row = 0; file_row < header.height && source.remaining() > 0; ++file_row) {
        const auto complete =
            static_cast<uint32_t>(std::min<uint64_t>(width, source.remaining() / file_bytes));
        if (file_row < height) {
            uint8_t* row =
                row_of(view, header.descriptor & kTopToBottom ? file_row : height - 1 - file_row);
            convert(row, source.here(), complete);
            if (header.descriptor & kRightToLeft)
                reverse_pixels(row, width, bytes_per_pixel(destination.format));
        }
        source.skip(row_bytes);
    }
}

// Run-length packets over the whole picture as one stream: `emit(index, element)` for each
// element, never past `total`. A packet that runs past the end is consumed, not written.
template <typename Emit>
void decode_packets(ByteSource& source, uint64_t total, uint32_t element_bytes, Emit emit) {
    uint64_t index = 0;
    while (index < total) {
        const uint8_t* packet = source.take(1);
        if (packet == nullptr) return;
        const uint32_t count = (*packet & 127u) + 1;
        if (*packet & 0x80) {
            const uint8_t* element = source.take(element_bytes);
            if (element == nullptr) return;
            for (uint32_t repeat = 0; repeat < count && index < total; ++repeat)
                emit(index++, element);
        } else {
            for (uint32_t read = 0; read < count; ++read) {
                const uint8_t* element = source.take(element_bytes);
                if (element == nullptr) return;
                if (index < total) emit(index++, element);
            }
        }
    }
}

// Rows top for bottom, and each row reversed, as the descriptor says, through a scratch row
// as wide as the picture.
void flip(Image& image, uint8_t descriptor) {
    const PixelsLock lock = image.lock_read_write(nullptr);
    const UntypedPixels view = *lock.view;
    image.unlock();
    const uint32_t bytes = bytes_per_pixel(lock.format);
    const size_t row_bytes = size_t{view.width} * bytes;
    if (row_bytes == 0) return;  // a picture without pixels (its buffer is null)
    if (!(descriptor & kTopToBottom)) {
        std::vector<uint8_t> scratch(row_bytes);
        for (uint32_t top = 0, bottom = view.height; top + 1 < bottom; ++top) {
            --bottom;
            std::memcpy(scratch.data(), row_of(view, top), row_bytes);
            std::memcpy(row_of(view, top), row_of(view, bottom), row_bytes);
            std::memcpy(row_of(view, bottom), scratch.data(), row_bytes);
        }
    }
    if (descriptor & kRightToLeft) {
        for (uint32_t row = 0; row < view.height; ++row)
            reverse_pixels(row_of(view, row), view.width, bytes);
    }
    image.unlock();
}

// The pixels decoded into a picture of the file's format go to the destination last. The
// one refused conversion is not reported, as it never was.
bool finish_through(Image& decoded, const PixelsLock& destination, uint8_t descriptor) {
    flip(decoded, descriptor);
    convert_pixels(destination, decoded.lock_read(nullptr));
    decoded.unlock();
    return true;
}

bool read_run_length(const PixelsLock& destination, ByteSource& source, const TgaHeader& header,
                     PixelFormat file_format) {
    OwnedImage decoded(create_image(header.width, header.height, file_format));
    if (!decoded) return false;
    auto* pixels = static_cast<uint8_t*>(decoded->get_data());
    const uint32_t bytes = bytes_per_pixel(file_format);
    decode_packets(source, uint64_t{header.width} * header.height, bytes,
                   [&](uint64_t index, const uint8_t* element) {
                       std::memcpy(pixels + index * bytes, element, bytes);
                   });
    return finish_through(*decoded, destination, header.descriptor);
}

// Types 1 and 9. An index outside the map reads as an all-zero entry.
bool read_colour_mapped(const PixelsLock& destination, ByteSource& source, const TgaHeader& header,
                        PixelFormat map_format) {
    if (header.pixel_depth != 8 && header.pixel_depth != 16) return false;
    const uint32_t bytes = bytes_per_pixel(map_format);
    std::vector<uint8_t> map(size_t{header.colour_map_length} * bytes);
    const uint64_t map_available = std::min<uint64_t>(map.size(), source.remaining());
    if (map_available > 0) std::memcpy(map.data(), source.here(), map_available);
    source.skip(map.size());

    OwnedImage decoded(create_image(header.width, header.height, map_format));
    if (!decoded) return false;
    auto* pixels = static_cast<uint8_t*>(decoded->get_data());
    const uint32_t index_bytes = header.pixel_depth / 8u;
    const auto emit = [&](uint64_t index, const uint8_t* element) {
        const uint32_t value = index_bytes == 1 ? element[0] : Detail::load16(element);
        const int64_t entry = int64_t{value} - header.colour_map_first;
        if (entry >= 0 && entry < header.colour_map_length)
            std::memcpy(pixels + index * bytes, map.data() + entry * bytes, bytes);
    };
    const uint64_t total = uint64_t{header.width} * header.height;
    if (header.image_type == 9) {
        decode_packets(source, total, index_bytes, emit);
    } else {
        for (uint64_t index = 0; index < total; ++index) {
            const uint8_t* element = source.take(index_bytes);
            if (element == nullptr) break;
            emit(index, element);
        }
    }
    return finish_through(*decoded, destination, header.descriptor);
}

// The fewest bytes behind the header that can hold the picture it claims: all of it for the
// uncompressed types, and the best packing run-length allows (128 pixels a packet) for the
// others. A header that claims more is refused before anything large is allocated.
bool is_colour_mapped(const TgaHeader& header) {
    return header.image_type == 1 || header.image_type == 9;
}

uint64_t least_pixel_data(const TgaHeader& header) {
    const bool indexed = is_colour_mapped(header);
    const uint64_t element =
        indexed ? header.pixel_depth / 8u : bytes_per_pixel(tga_format(header));
    const uint64_t map =
        indexed ? uint64_t{header.colour_map_length} * bytes_per_pixel(tga_format(header)) : 0;
    const uint64_t pixels = uint64_t{header.width} * header.height;
    const bool run_length = header.image_type >= 9;
    if (!run_length) return map + pixels * element;
    return map + (pixels + kPixelsPerPacket - 1) / kPixelsPerPacket * (1 + element);
}

bool could_hold(const TgaHeader& header, uint64_t remaining) {
    // Indices of other sizes are refused by the reader anyway: refuse them before a picture
    // of the claimed size is made for nothing.
    if (is_colour_mapped(header) && header.pixel_depth != 8 && header.pixel_depth != 16)
        return false;
    const uint64_t needed = least_pixel_data(header);
    if (needed <= remaining) return true;
    CORE_LOG(system_log(), warning)
        << boost::format(
               "tga: damaged file refused: %1%x%2% type %3% needs %4% bytes of pixel "
               "data, the file holds %5%") %
               header.width % header.height % int{header.image_type} % needed % remaining;
    return false;
}

}  // namespace

bool read_tga_pixels(const PixelsLock& destination, TgaReader& reader, const TgaHeader& header) {
    if (destination.view == nullptr || !is_image_format(destination.format)) return false;
    const PixelFormat file_format = tga_format(header);
    if (file_format == TGA_FORMAT_ERROR) return false;
    const bool empty = destination.view->width == 0 || destination.view->height == 0;
    if (!empty && destination.view->pixels == nullptr) return false;
    ByteSource source(reader);
    switch (header.image_type) {
        case 2:
        case 3:
            if (!empty) read_direct(destination, source, header, file_format);
            return true;
        case 1:
        case 9:
            return read_colour_mapped(destination, source, header, file_format);
        case 10:
        case 11:
            return read_run_length(destination, source, header, file_format);
        default:
            return false;
    }
}

Image* load_tga(TgaReader& reader) {
    const uint64_t start = reader.buffer.tell();
    TgaHeader header;
    read_tga_header(reader, header);
    reader.buffer.seek(start);
    const PixelFormat format = tga_format(header);
    return format == TGA_FORMAT_ERROR ? nullptr : load_tga(reader, format);
}

Image* load_tga(TgaReader& reader, PixelFormat format) {
    const uint64_t start = reader.buffer.tell();
    TgaHeader header;
    read_tga_header(reader, header);
    const uint64_t behind_header = reader.buffer.tell();
    const uint64_t size = reader.buffer.size();
    if (tga_format(header) != TGA_FORMAT_ERROR &&
        could_hold(header, size - std::min(behind_header, size))) {
        if (Image* image = create_image(header.width, header.height, format)) {
            const bool read = read_tga_pixels(image->lock_write(nullptr), reader, header);
            image->unlock();
            if (read) return image;
            destroy_image(image);
        }
    }
    reader.buffer.seek(start);
    return nullptr;
}

bool load_tga_sized(const PixelsLock& destination, int filter, TgaReader& reader) {
    if (destination.view == nullptr) return false;
    const uint64_t start = reader.buffer.tell();
    TgaHeader header;
    read_tga_header(reader, header);
    if (tga_format(header) == TGA_FORMAT_ERROR) {
        reader.buffer.seek(start);
        return false;
    }
    if (header.width == destination.view->width && header.height == destination.view->height) {
        if (read_tga_pixels(destination, reader, header)) return true;
        reader.buffer.seek(start);
        return false;
    }
    reader.buffer.seek(start);
    OwnedImage picture(load_tga(reader, PIXEL_FORMAT_8888));
    if (!picture) return false;
    const bool scaled = scale_pixels(destination, filter, picture->lock_read(nullptr));
    picture->unlock();
    if (!scaled) reader.buffer.seek(start);
    return scaled;
}

}  // namespace Core
