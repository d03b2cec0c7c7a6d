#include <limits>
#include <vector>

#include "core_atomic_file.h"
#include "core_tga.h"
#include "pixel_rows.h"

namespace Core {

void TgaWriter::write(const void* bytes, size_t count) {
    bytes_.append(static_cast<const char*>(bytes), count);
}

bool TgaWriter::close() {
    std::string reason;
    failed_ = failed_ || !write_file_atomically(path_, bytes_, reason);
    bytes_.clear();
    if (IOManager* manager = IOManager::get()) manager->file_changed(path_);
    return !failed_;
}

bool write_tga(TgaWriter& writer, PixelFormat format, const PixelsLock& source, bool right_to_left,
               bool top_to_bottom) {
    if (format == PIXEL_FORMAT_COUNT || source.format == PIXEL_FORMAT_COUNT ||
        source.view == nullptr)
        return false;
    const UntypedPixels& view = *source.view;
    if (view.width == 0 || view.height == 0) return false;
    // A picture the format cannot describe, or one without pixels, is not written at all.
    if (!is_image_format(source.format) || view.pixels == nullptr ||
        view.width > std::numeric_limits<uint16_t>::max() ||
        view.height > std::numeric_limits<uint16_t>::max())
        return false;

    TgaHeader header;
    make_tga_header(header, static_cast<uint16_t>(view.width), static_cast<uint16_t>(view.height),
                    format, right_to_left, top_to_bottom, nullptr);
    write_tga_header(writer, header);

    const PixelFormat file_format = tga_format(header);
    const uint32_t file_bytes = bytes_per_pixel(file_format);
    const Detail::RowConverter convert = Detail::row_converter(source.format, file_format);
    std::vector<uint8_t> row(size_t{view.width} * file_bytes);
    writer.reserve(row.size() * view.height);
    for (uint32_t written = 0; written < view.height; ++written) {
        // Bottom-up unless asked otherwise: the file's origin is its lower left.
        const uint32_t source_row = top_to_bottom ? written : view.height - 1 - written;
        convert(
            row.data(),
            static_cast<const uint8_t*>(view.pixels) + int64_t{view.stride_in_bytes} * source_row,
            view.width);
        if (right_to_left) {
            for (uint32_t left = 0, right = view.width; left + 1 < right; ++left) {
                --right;
                for (uint32_t byte = 0; byte < file_bytes; ++byte)
                    std::swap(row[size_t{left} * file_bytes + byte],
                              row[size_t{right} * file_bytes + byte]);
            }
        }
        writer.write(row.data(), row.size());
    }
    return true;
}

namespace {

// The whole picture, bottom-up, as every page and picture file is written.
bool write_whole_picture(TgaWriter& writer, Image& image, PixelFormat format) {
    const PixelsLock source = image.lock_read(nullptr);
    const bool written = write_tga(writer, format, source, false, false);
    image.unlock();
    return written;
}

}  // namespace

bool encode_tga(Image& image, PixelFormat format, std::string& bytes) {
    TgaWriter writer({});
    if (!write_whole_picture(writer, image, format)) return false;
    bytes = writer.take_bytes();
    return true;
}

bool save_tga(Image& image, const char* path, PixelFormat format) {
    TgaWriter writer(path);
    // A picture the writer refuses (no pixels, or too large for the format) leaves the old
    // file alone: an empty file in its place would be a page lost.
    return write_whole_picture(writer, image, format) && writer.close();
}

}  // namespace Core
