#include "RecoveryFile.h"

#include <charconv>
#include <memory>

#include "core_atomic_file.h"
#include "core_memory_buffer.h"
#include "core_tga.h"

namespace {

constexpr std::string_view kFirstLine = "QUILLET RECOVERY 1";

void AppendRecord(std::string& bytes, const std::string& head, std::string_view body) {
    bytes += head;
    bytes += ' ';
    bytes += std::to_string(body.size());
    bytes += '\n';
    bytes += body;
    bytes += '\n';
}

std::string Numbers(std::initializer_list<int64_t> values) {
    std::string line;
    for (const int64_t value : values)
        line += (line.empty() ? "" : " ") + std::to_string(value);
    return line;
}

// A picture without pixels is kept as none: a TGA cannot hold it, and a page rebuilds the
// same without it.
bool HasPixels(const ImagePtr& image) {
    if (image == nullptr) return false;
    const Core::Size size = image->get_size();
    return size.width > 0 && size.height > 0;
}

bool AppendPicture(std::string& bytes, const std::string& head, Core::Image& image) {
    std::string tga;
    if (!Core::encode_tga(image, Core::PIXEL_FORMAT_8888, tga)) return false;
    AppendRecord(bytes, head, tga);
    return true;
}

bool AppendPage(std::string& bytes, const RecoveredPage& page) {
    const PageOutput& output = page.output;
    const Core::Colour& colour = output.unused_colour;
    AppendRecord(bytes, "page", output.path);
    bytes += Numbers({output.save_format, colour.blue, colour.green, colour.red, colour.alpha});
    bytes += '\n';
    if (HasPixels(output.image) && !AppendPicture(bytes, "picture", *output.image)) return false;
    for (const RegionPicture& region : page.regions) {
        if (HasPixels(region.image) &&
            !AppendPicture(bytes, "region " + std::to_string(region.index), *region.image))
            return false;
    }
    return true;
}

// Reads a copy front to back; every length is checked against what is left.
class CopyReader {
public:
    explicit CopyReader(std::string_view bytes) : rest_(bytes) {}

    std::optional<RecoveryCopy> Read(std::string& reason) {
        RecoveryCopy copy;
        if (NextLine() != kFirstLine) return Fail(reason, "not a recovery copy");
        for (;;) {
            const std::optional<Record> record = NextRecord();
            if (!record) return Fail(reason, "damaged at byte " + std::to_string(Offset()));
            if (record->name == "end") return copy;
            if (!Take(copy, *record)) return Fail(reason, "bad " + record->name + " record");
        }
    }

private:
    struct Record {
        std::string name;
        std::vector<int64_t> numbers;  // those between the name and the length
        std::string_view body;
    };

    std::optional<RecoveryCopy> Fail(std::string& reason, const std::string& why) {
        reason = why;
        return std::nullopt;
    }

    size_t Offset() const { return total_ - rest_.size(); }

    // The next line without its end; empty at the end of the bytes.
    std::string_view NextLine() {
        const size_t end = rest_.find('\n');
        if (end == std::string_view::npos) {
            rest_ = {};
            return {};
        }
        const std::string_view line = rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
        return line;
    }

    static std::optional<std::vector<int64_t>> ParseNumbers(std::string_view text) {
        std::vector<int64_t> numbers;
        while (!text.empty()) {
            int64_t value = 0;
            const auto [end, error] =
                std::from_chars(text.data(), text.data() + text.size(), value);
            if (error != std::errc{}) return std::nullopt;
            numbers.push_back(value);
            text.remove_prefix(static_cast<size_t>(end - text.data()));
            if (!text.empty() && text.front() != ' ') return std::nullopt;
            if (!text.empty()) text.remove_prefix(1);
        }
        return numbers;
    }

    std::optional<Record> NextRecord() {
        const std::string_view line = NextLine();
        const size_t space = line.find(' ');
        if (space == std::string_view::npos) return std::nullopt;
        std::optional<std::vector<int64_t>> numbers = ParseNumbers(line.substr(space + 1));
        if (!numbers || numbers->empty() || numbers->back() < 0) return std::nullopt;
        const auto length = static_cast<uint64_t>(numbers->back());
        numbers->pop_back();
        if (length >= rest_.size() || rest_[length] != '\n') return std::nullopt;
        Record record{std::string(line.substr(0, space)), std::move(*numbers),
                      rest_.substr(0, length)};
        rest_.remove_prefix(length + 1);
        return record;
    }

    static ImagePtr DecodePicture(std::string_view tga) {
        Core::TgaReader reader;
        reader.buffer.attach(
            std::make_shared<Core::MemoryBufferImpl>(std::vector<uint8_t>(tga.begin(), tga.end())));
        ImagePtr image(Core::load_tga(reader, Core::PIXEL_FORMAT_8888));
        return HasPixels(image) ? std::move(image) : nullptr;
    }

    static bool ReadStamp(std::string_view line, DiskStamp& stamp) {
        const std::optional<std::vector<int64_t>> numbers = ParseNumbers(line);
        if (!numbers || numbers->size() != 5) return false;
        const std::vector<int64_t>& n = *numbers;
        stamp = {n[0] != 0, static_cast<uint64_t>(n[1]), static_cast<uint64_t>(n[2]), n[3], n[4]};
        return true;
    }

    static bool ReadPageLine(std::string_view line, PageOutput& output) {
        const std::optional<std::vector<int64_t>> numbers = ParseNumbers(line);
        if (!numbers || numbers->size() != 5) return false;
        const std::vector<int64_t>& n = *numbers;
        const auto format = static_cast<Core::PixelFormat>(n[0]);
        if (!Core::is_image_format(format)) return false;
        for (size_t i = 1; i < 5; ++i)
            if (n[i] < 0 || n[i] > 255) return false;
        output.save_format = format;
        output.unused_colour = {static_cast<uint8_t>(n[1]), static_cast<uint8_t>(n[2]),
                                static_cast<uint8_t>(n[3]), static_cast<uint8_t>(n[4])};
        return true;
    }

    static std::string* TextField(RecoveryCopy& copy, const std::string& name) {
        if (name == "project") return &copy.project_path;
        if (name == "title") return &copy.title;
        if (name == "text") return &copy.text;
        return nullptr;
    }

    bool Take(RecoveryCopy& copy, const Record& record) {
        const std::string& name = record.name;
        const std::string_view body = record.body;
        if (std::string* field = TextField(copy, name)) {
            *field = body;
            return true;
        }
        if (name == "stamp") {
            DiskStamp stamp;
            if (!ReadStamp(NextLine(), stamp)) return false;
            copy.stamps.emplace_back(body, stamp);
            return true;
        }
        if (name == "page") {
            RecoveredPage page;
            page.output.path = body;
            if (!ReadPageLine(NextLine(), page.output)) return false;
            copy.pages.push_back(std::move(page));
            return true;
        }
        // Pictures belong to the page before them.
        if (copy.pages.empty()) return false;
        RecoveredPage& page = copy.pages.back();
        if (name == "picture") {
            page.output.image = DecodePicture(body);
            return page.output.image != nullptr;
        }
        if (name == "region" && record.numbers.size() == 1 && record.numbers[0] >= 0 &&
            record.numbers[0] <= UINT32_MAX) {
            ImagePtr image = DecodePicture(body);
            if (image == nullptr) return false;
            page.regions.push_back({static_cast<uint32_t>(record.numbers[0]), std::move(image)});
            return true;
        }
        return false;
    }

    std::string_view rest_;
    size_t total_ = rest_.size();
};

}  // namespace

bool EncodeRecoveryCopy(const RecoveryCopy& copy, std::string& bytes) {
    bytes = kFirstLine;
    bytes += '\n';
    AppendRecord(bytes, "project", copy.project_path);
    AppendRecord(bytes, "title", copy.title);
    AppendRecord(bytes, "text", copy.text);
    for (const auto& [path, stamp] : copy.stamps) {
        AppendRecord(bytes, "stamp", path);
        bytes += Numbers({stamp.exists ? 1 : 0, static_cast<int64_t>(stamp.device),
                          static_cast<int64_t>(stamp.inode), stamp.size, stamp.modified_ns});
        bytes += '\n';
    }
    for (const RecoveredPage& page : copy.pages) {
        if (!AppendPage(bytes, page)) return false;
    }
    AppendRecord(bytes, "end", {});
    return true;
}

std::optional<RecoveryCopy> DecodeRecoveryCopy(std::string_view bytes, std::string& reason) {
    return CopyReader(bytes).Read(reason);
}

bool WriteRecoveryCopy(const std::string& file, const RecoveryCopy& copy, std::string& reason) {
    std::string bytes;
    if (!EncodeRecoveryCopy(copy, bytes)) {
        reason = "a page's picture cannot be kept";
        return false;
    }
    return Core::write_file_atomically(file, bytes, reason);
}

std::optional<RecoveryCopy> ReadRecoveryCopy(const std::string& file, std::string& reason) {
    std::string bytes;
    if (!Core::read_whole_file(file, bytes, reason)) return std::nullopt;
    return DecodeRecoveryCopy(bytes, reason);
}
