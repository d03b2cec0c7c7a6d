#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include <boost/format.hpp>

#include "core_convert.h"
#include "core_log.h"
#include "core_tga.h"
#include "pixel_traits.h"
#include "tga_byte_source.h"
#include "tga_row_assembler.h"

namespace Core {
namespace {

using Detail::kRightToLeft;
using Detail::kTopToBottom;
using Detail::row_of;
using Detail::TgaByteSource;

constexpr uint64_t kPixelsPerPacket = 128;

struct ImageDeleter {
    void operator()(Image* image) const { destroy_image(image); }
};
using OwnedImage = std::unique_ptr<Image, ImageDeleter>;

// Calls `visit.template operator()<Bytes>()` with a pixel's size in bytes as a constant.
template <typename Visitor>
void with_pixel_bytes(uint32_t bytes, Visitor&& visit) {
    switch (bytes) {
        case 1:
            return visit.template operator()<1>();
        case 2:
            return visit.template operator()<2>();
        case 3:
            return visit.template operator()<3>();
        default:
            return visit.template operator()<4>();
    }
}

// Types 2 and 3: each file row straight into its destination row, converted on the way when
// the formats differ. A file that ends early leaves the rest as it was.
void read_direct(const PixelsLock& destination, TgaByteSource& source, const TgaHeader& header,
                 PixelFormat file_format) {
    const UntypedPixels& view = *destination.view;
    const uint32_t file_bytes = bytes_per_pixel(file_format);
    const uint32_t destination_bytes = bytes_per_pixel(destination.format);
    const uint32_t width = std::min<uint32_t>(header.width, view.width);
    const uint32_t height = std::min<uint32_t>(header.height, view.height);
    const Detail::RowConverter convert = Detail::row_converter(file_format, destination.format);
    const uint64_t row_bytes = uint64_t{header.width} * file_bytes;
    const uint32_t pixels_per_take = TgaByteSource::kWindow / file_bytes;
    for (uint32_t file_row = 0; file_row < header.height && source.remaining() > 0; ++file_row) {
        if (file_row >= height) {
            source.skip(row_bytes);
            continue;
        }
        const auto complete =
            static_cast<uint32_t>(std::min<uint64_t>(width, source.remaining() / file_bytes));
        uint8_t* row =
            row_of(view, header.descriptor & kTopToBottom ? file_row : height - 1 - file_row);
        if (file_format == destination.format) {
            source.copy_to(row, uint64_t{complete} * file_bytes);
        } else {
            for (uint32_t done = 0; done < complete;) {
                const uint32_t count = std::min(complete - done, pixels_per_take);
                const uint8_t* pixels = source.take(count * file_bytes);
                if (pixels == nullptr) break;
                convert(row + size_t{done} * destination_bytes, pixels, count);
                done += count;
            }
        }
        source.skip(row_bytes - uint64_t{complete} * file_bytes);
        if (header.descriptor & kRightToLeft) Detail::reverse_pixels(row, width, destination_bytes);
    }
}

// The header byte of a run-length packet: how many pixels it stands for, and whether one
// element repeats or that many follow. Empty at the end of the file.
struct Packet {
    uint32_t count;
    bool repeated;
};
std::optional<Packet> next_packet(TgaByteSource& source) {
    const uint8_t* packet = source.take(1);
    if (packet == nullptr) return std::nullopt;
    return Packet{(*packet & 127u) + 1, (*packet & 0x80) != 0};
}

// Run-length packets over the whole picture as one stream. A packet that runs past the end
// of the picture is taken whole; what lies past the end is not placed.
template <uint32_t Bytes>
void decode_run_length(TgaByteSource& source, Detail::RowAssembler<Bytes>& rows) {
    while (!rows.done()) {
        const std::optional<Packet> packet = next_packet(source);
        if (!packet) return;
        if (packet->repeated) {
            const uint8_t* pixel = source.take(Bytes);
            if (pixel == nullptr) return;
            rows.repeat(pixel, packet->count);
            continue;
        }
        // A packet cut short by the end of the file gives the pixels it holds whole.
        const auto whole =
            static_cast<uint32_t>(std::min<uint64_t>(packet->count, source.remaining() / Bytes));
        const uint8_t* pixels = source.take(whole * Bytes);
        if (pixels == nullptr) return;
        rows.append(pixels, whole);
        if (whole < packet->count) return;
    }
}

bool read_run_length(const PixelsLock& destination, TgaByteSource& source, const TgaHeader& header,
                     PixelFormat file_format) {
    with_pixel_bytes(bytes_per_pixel(file_format), [&]<uint32_t Bytes>() {
        Detail::RowAssembler<Bytes> rows(destination, header, file_format);
        decode_run_length(source, rows);
        rows.finish();
    });
    return true;
}

// The entries of a colour map, read whole; an index outside the map reads as an all-zero
// entry.
class ColourMap {
public:
    ColourMap(TgaByteSource& source, const TgaHeader& header, uint32_t bytes)
        : first_(header.colour_map_first),
          length_(header.colour_map_length),
          bytes_(bytes),
          entries_((size_t{header.colour_map_length} + 1) * bytes) {
        source.copy_to(entries_.data(), uint64_t{header.colour_map_length} * bytes);
    }
    const uint8_t* entry(uint32_t index) const {
        const int64_t at = int64_t{index} - first_;
        return entries_.data() + (at >= 0 && at < length_ ? at : length_) * bytes_;
    }

private:
    int64_t first_;
    int64_t length_;
    uint32_t bytes_;
    std::vector<uint8_t> entries_;  // and one all-zero entry behind them
};

// Types 1 and 9: indices of one byte or two, one per pixel or in run-length packets.
template <uint32_t Bytes>
void decode_indices(TgaByteSource& source, Detail::RowAssembler<Bytes>& rows, const ColourMap& map,
                    uint32_t index_bytes, bool run_length) {
    const auto index_at = [index_bytes](const uint8_t* at) {
        return index_bytes == 1 ? uint32_t{at[0]} : uint32_t{Detail::load16(at)};
    };
    while (!rows.done()) {
        // Without run length, each index is a packet of one.
        const std::optional<Packet> packet = run_length ? next_packet(source) : Packet{1, false};
        if (!packet) return;
        for (uint32_t read = 0; read < (packet->repeated ? 1 : packet->count); ++read) {
            const uint8_t* index = source.take(index_bytes);
            if (index == nullptr) return;
            const uint8_t* entry = map.entry(index_at(index));
            if (packet->repeated)
                rows.repeat(entry, packet->count);
            else
                rows.append(entry, 1);
        }
    }
}

bool read_colour_mapped(const PixelsLock& destination, TgaByteSource& source,
                        const TgaHeader& header, PixelFormat map_format) {
    if (header.pixel_depth != 8 && header.pixel_depth != 16) return false;
    const uint32_t bytes = bytes_per_pixel(map_format);
    const ColourMap map(source, header, bytes);
    with_pixel_bytes(bytes, [&]<uint32_t Bytes>() {
        Detail::RowAssembler<Bytes> rows(destination, header, map_format);
        decode_indices(source, rows, map, header.pixel_depth / 8u, header.image_type == 9);
        rows.finish();
    });
    return true;
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
    TgaByteSource source(reader);
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
