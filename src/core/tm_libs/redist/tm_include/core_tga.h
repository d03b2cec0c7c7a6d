// TGA files: every picture of the suite is one. Types 1, 2, 3, 9, 10 and 11 are read;
// writing gives uncompressed, bottom-up files of type 2 or 3.
//
// Failure style: null or false. A refused file leaves the reader where it was. No read goes
// past the file and no write past a picture, whatever a header says.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core_buffers.h"
#include "core_images.h"

namespace Core {

class FileTransaction;

// What a file holds; the values are those of PixelFormat.
constexpr PixelFormat TGA_FORMAT_555 = PIXEL_FORMAT_555;
constexpr PixelFormat TGA_FORMAT_1555 = PIXEL_FORMAT_1555;
constexpr PixelFormat TGA_FORMAT_888 = PIXEL_FORMAT_888;
constexpr PixelFormat TGA_FORMAT_8888 = PIXEL_FORMAT_8888;
constexpr PixelFormat TGA_FORMAT_X888 = PIXEL_FORMAT_X888;
constexpr PixelFormat TGA_FORMAT_GREY = PIXEL_FORMAT_GREY;
constexpr PixelFormat TGA_FORMAT_ERROR = PIXEL_FORMAT_COUNT;

// The fixed fields of a header in a file; its id follows them.
constexpr size_t kTgaHeaderBytes = 18;

struct TgaHeader {
    uint8_t id_length = 0;
    uint8_t colour_map_type = 0;
    uint8_t image_type = 0;
    uint16_t colour_map_first = 0;
    uint16_t colour_map_length = 0;
    uint8_t colour_map_bits = 0;
    uint16_t x_origin = 0;
    uint16_t y_origin = 0;
    uint16_t width = 0;
    uint16_t height = 0;
    uint8_t pixel_depth = 0;
    uint8_t descriptor = 0;  // bits 0-3 alpha bits, bit 4 right-to-left, bit 5 top-to-bottom
    char id[256] = {};
};

// Reads through the IO manager, so a picture may come from a loose file or a pack.
struct TgaReader {
    InputBuffer buffer;
};

// Hands a file on to a sink a few rows at a time, so that no copy of a whole picture is ever
// made: what is written gathers in a buffer of at most kBufferBytes (more only for a single
// write larger than that, which no TGA row is), and goes to the sink whenever the buffer is
// full and at close. Once the sink fails, later writes are dropped and failed() stays set.
class TgaWriter {
public:
    // Takes the next bytes of the file; false when they cannot be written.
    using Sink = std::function<bool(std::string_view bytes)>;
    // Room for the widest row a TGA file holds, 65,535 pixels of four bytes.
    static constexpr size_t kBufferBytes = 256 * 1024;

    explicit TgaWriter(Sink sink) : sink_(std::move(sink)) {}
    void write(const void* bytes, size_t count);
    // The next `count` bytes of the file, to be filled in place before the writer is used
    // again.
    uint8_t* claim(size_t count);
    // Hands what is left to the sink; false when any of the file could not be written.
    bool close();
    bool failed() const { return failed_; }
    // The buffer's size, which only grows: within kBufferBytes unless one write was larger.
    size_t buffer_size() const { return buffer_.size(); }

private:
    void flush();

    Sink sink_;
    std::vector<uint8_t> buffer_;
    size_t used_ = 0;
    bool failed_ = false;
};

// The 18 bytes and the id; bytes missing from a short file read as 0.
void read_tga_header(TgaReader& reader, TgaHeader& header);
// The format a header describes, or TGA_FORMAT_ERROR.
PixelFormat tga_format(const TgaHeader& header);
// Reads the pixels behind a header just read into `destination`.
bool read_tga_pixels(const PixelsLock& destination, TgaReader& reader, const TgaHeader& header);
// A new picture in the file's own format, or null (and the reader back where it was). An
// uncompressed file shorter than its header says is refused as damaged (the reason goes to
// "system.log"); a run-length one must hold at least one packet for each 128 pixels.
Image* load_tga(TgaReader& reader);
// A new picture in `format`, or null (and the reader back where it was).
Image* load_tga(TgaReader& reader, PixelFormat format);
// Reads a picture into `destination`, scaling it with `filter` if the sizes differ.
bool load_tga_sized(const PixelsLock& destination, int filter, TgaReader& reader);

// Whether save_tga writes `image` as a file of `format`: not when the picture has no pixels
// or is larger than a TGA file can describe.
bool can_save_tga(Image& image, PixelFormat format);
// Writes `image` to `path` as a file of `format`. False, with the file at `path` left as it
// was, when can_save_tga refuses the picture or the file cannot be written.
bool save_tga(Image& image, const char* path, PixelFormat format);
// Stages the file save_tga would write in `transaction`, for a caller that replaces it
// together with others; false as save_tga is, with the transaction's failure saying why.
bool stage_tga(FileTransaction& transaction, const std::string& path, Image& image,
               PixelFormat format);
// The bytes save_tga would write, for a caller that keeps them in memory; false (and `bytes`
// untouched) for the pictures save_tga refuses.
bool encode_tga(Image& image, PixelFormat format, std::string& bytes);
bool write_tga(TgaWriter& writer, PixelFormat format, const PixelsLock& source, bool right_to_left,
               bool top_to_bottom);
void make_tga_header(TgaHeader& header, uint16_t width, uint16_t height, PixelFormat format,
                     bool right_to_left, bool top_to_bottom, const char* id);
void write_tga_header(TgaWriter& writer, const TgaHeader& header);

// "TGA_FORMAT_555 ", ... by format value; "TGA_FORMAT_ERROR" for every value without a TGA
// form.
const char* tga_format_name(PixelFormat format);

}  // namespace Core
