#include "TgaCommands.h"

#include <iostream>
#include <memory>
#include <string_view>

#include "QltCommands.h"
#include "core.h"
#include "core_tga.h"

namespace {

constexpr const char* kNotATga = "This file does not contain a valid tga header";

struct Destroy {
    void operator()(Core::Image* image) const { Core::destroy_image(image); }
};
using OwnedImage = std::unique_ptr<Core::Image, Destroy>;

// The name of a format for people: the table's name without its padding blank.
std::string FormatName(Core::PixelFormat format) {
    std::string name = Core::tga_format_name(format);
    while (!name.empty() && name.back() == ' ')
        name.pop_back();
    return name;
}

// "555" ... "GREY", or a number from 0 to 7.
bool ParseFormat(const std::string& text, Core::PixelFormat& format) {
    static constexpr std::string_view kNames[] = {"555", "565",  "1555", "4444",
                                                  "888", "8888", "X888", "GREY"};
    for (int value = 0; value < Core::kImageFormatCount; ++value) {
        if (text == kNames[value] || text == std::to_string(value)) {
            format = static_cast<Core::PixelFormat>(value);
            return true;
        }
    }
    return false;
}

// TGA files have no 565 or 4444 form; the writer stores both as 555.
void WarnOfDroppedBits(Core::PixelFormat format) {
    if (format == Core::PIXEL_FORMAT_565)
        std::cerr << "note: TGA files hold 565 pictures as 555: the lowest bit of green is "
                     "dropped\n";
    if (format == Core::PIXEL_FORMAT_4444)
        std::cerr << "note: TGA files hold 4444 pictures as 555: alpha is dropped\n";
}

bool OpenReader(const std::string& path, Core::TgaReader& reader) {
    Core::init();
    if (reader.buffer.open(path.c_str())) return true;
    std::cerr << "Cannot open " << path << '\n';
    return false;
}

}  // namespace

int RunTgaInfo(const std::vector<std::string>& arguments) {
    if (arguments.size() != 1) {
        std::cerr << "usage: quillet-cli tga info FILE\n";
        return kExitUsage;
    }
    Core::TgaReader reader;
    if (!OpenReader(arguments[0], reader)) return kExitFailure;
    Core::TgaHeader header;
    Core::read_tga_header(reader, header);
    // Bytes that are no TGA header would print as a made-up one: nothing is printed for them.
    if (Core::tga_format(header) != Core::TGA_FORMAT_ERROR) {
        std::cout << "type=" << int{header.image_type} << " width=" << header.width
                  << " height=" << header.height << " depth=" << int{header.pixel_depth}
                  << " descriptor=" << int{header.descriptor}
                  << " format=" << FormatName(Core::tga_format(header)) << '\n';
    }
    reader.buffer.seek(0);
    if (OwnedImage(Core::load_tga(reader))) return kExitOk;
    std::cerr << kNotATga << '\n';
    return kExitFailure;
}

int RunTgaConvert(const std::vector<std::string>& arguments) {
    Core::PixelFormat format = Core::PIXEL_FORMAT_COUNT;
    if (arguments.size() != 3 || !ParseFormat(arguments[2], format)) {
        std::cerr << "usage: quillet-cli tga convert IN OUT FORMAT\n"
                     "FORMAT: 555 565 1555 4444 888 8888 X888 GREY, or 0-7\n";
        return kExitUsage;
    }
    Core::TgaReader reader;
    if (!OpenReader(arguments[0], reader)) return kExitFailure;
    const OwnedImage image(Core::load_tga(reader));
    if (!image) {
        std::cerr << kNotATga << '\n';
        return kExitFailure;
    }
    const Core::Size size = image->get_size();
    if (size.width == 0 || size.height == 0) {
        std::cerr << arguments[0] << " has no pixels; nothing is written to " << arguments[1]
                  << '\n';
        return kExitFailure;
    }
    WarnOfDroppedBits(format);
    if (!Core::save_tga(*image, arguments[1].c_str(), format)) {
        std::cerr << "Cannot write " << arguments[1] << '\n';
        return kExitWrite;
    }
    return kExitOk;
}
