#include <algorithm>
#include <cstring>
#include <limits>

#include "core_file_transaction.h"
#include "core_io.h"
#include "core_tga.h"
#include "pixel_rows.h"

namespace Core {
namespace {

// A picture the format cannot describe, or one without pixels, is not written at all.
bool writable(PixelFormat format, const PixelsLock& source) {
    if (format == PIXEL_FORMAT_COUNT || !is_image_format(source.format) || source.view == nullptr)
        return false;
    const UntypedPixels& view = *source.view;
    return view.pixels != nullptr && view.width != 0 && view.height != 0 &&
           view.width <= std::numeric_limits<uint16_t>::max() &&
           view.height <= std::numeric_limits<uint16_t>::max();
}

// The length of the file write_tga makes of a writable picture of `size`.
size_t file_bytes(Size size, PixelFormat format) {
    TgaHeader header;
    make_tga_header(header, 1, 1, format, false, false, nullptr);
    return kTgaHeaderBytes + size_t{static_cast<uint32_t>(size.width)} *
                                 static_cast<uint32_t>(size.height) *
                                 bytes_per_pixel(tga_format(header));
}

// The whole picture, bottom-up, as every page and picture file is written.
bool write_whole_picture(TgaWriter& writer, Image& image, PixelFormat format) {
    const PixelsLock source = image.lock_read(nullptr);
    const bool written = write_tga(writer, format, source, false, false);
    image.unlock();
    return written;
}

}  // namespace

void TgaWriter::write(const void* bytes, size_t count) {
    if (count > 0) std::memcpy(claim(count), bytes, count);
}

uint8_t* TgaWriter::claim(size_t count) {
    if (used_ + count > std::max(kBufferBytes, count)) flush();
    if (used_ + count > buffer_.size()) {
        // Doubling up to the bound: a small picture never pays for a large buffer.
        const size_t size = std::max(used_ + count, std::min(2 * buffer_.size(), kBufferBytes));
        buffer_.reserve(size);
        buffer_.resize(size);
    }
    uint8_t* place = buffer_.data() + used_;
    used_ += count;
    return place;
}

void TgaWriter::flush() {
    const std::string_view bytes(reinterpret_cast<const char*>(buffer_.data()), used_);
    if (!failed_ && used_ > 0 && !sink_(bytes)) failed_ = true;
    used_ = 0;
}

bool TgaWriter::close() {
    flush();
    return !failed_;
}

bool write_tga(TgaWriter& writer, PixelFormat format, const PixelsLock& source, bool right_to_left,
               bool top_to_bottom) {
    if (!writable(format, source)) return false;
    const UntypedPixels& view = *source.view;
    TgaHeader header;
    make_tga_header(header, static_cast<uint16_t>(view.width), static_cast<uint16_t>(view.height),
                    format, right_to_left, top_to_bottom, nullptr);
    write_tga_header(writer, header);

    const PixelFormat file_format = tga_format(header);
    const uint32_t file_bytes = bytes_per_pixel(file_format);
    const Detail::RowConverter convert = Detail::row_converter(source.format, file_format);
    const auto* pixels = static_cast<const uint8_t*>(view.pixels);
    // Once the file cannot be written there is no point in converting the rest.
    for (uint32_t written = 0; written < view.height && !writer.failed(); ++written) {
        // Bottom-up unless asked otherwise: the file's origin is its lower left.
        const uint32_t source_row = top_to_bottom ? written : view.height - 1 - written;
        uint8_t* row = writer.claim(size_t{view.width} * file_bytes);
        convert(row, pixels + int64_t{view.stride_in_bytes} * source_row, view.width);
        if (right_to_left) Detail::reverse_pixels(row, view.width, file_bytes);
    }
    return true;
}

bool can_save_tga(Image& image, PixelFormat format) {
    const bool can = writable(format, image.lock_read(nullptr));
    image.unlock();
    return can;
}

bool encode_tga(Image& image, PixelFormat format, std::string& bytes) {
    if (!can_save_tga(image, format)) return false;
    std::string encoded;
    encoded.reserve(file_bytes(image.get_size(), format));
    TgaWriter writer([&encoded](std::string_view piece) {
        encoded += piece;
        return true;
    });
    if (!write_whole_picture(writer, image, format) || !writer.close()) return false;
    bytes = std::move(encoded);
    return true;
}

bool stage_tga(FileTransaction& transaction, const std::string& path, Image& image,
               PixelFormat format) {
    return transaction.stage(path, [&image, format](StagedFile& file) {
        TgaWriter writer([&file](std::string_view bytes) { return file.write(bytes); });
        return write_whole_picture(writer, image, format) && writer.close();
    });
}

bool save_tga(Image& image, const char* path, PixelFormat format) {
    // A picture the writer refuses (no pixels, or too large for the format) leaves the old
    // file alone: an empty file in its place would be a page lost.
    if (!can_save_tga(image, format)) return false;
    FileTransaction transaction;
    const bool saved = stage_tga(transaction, path, image, format) && transaction.commit();
    // Readers know the file by the name it was saved under, which may be a link; and after
    // a failure the cache learns what is on disk now.
    if (IOManager* manager = IOManager::get()) manager->file_changed(path);
    return saved;
}

}  // namespace Core
