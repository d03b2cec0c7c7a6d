// Imaging: TGA loads against stb_image, the 64 conversions against memcpy, and saves.
#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench_table.h"
#include "core_atomic_file.h"
#include "core_convert.h"
#include "core_memory_buffer.h"
#include "core_tga.h"
#include "stb_image.h"

namespace {

using namespace Core;

constexpr uint32_t kPage = 4096;
constexpr uint32_t kConvertSide = 2048;

struct Destroy {
    void operator()(Image* image) const { destroy_image(image); }
};
using Owned = std::unique_ptr<Image, Destroy>;

// A page of UI-like art: flat panels with gradients, so run-length packing has something
// to find and plain files are the full size.
Owned MakePage(uint32_t side) {
    Owned page(create_image(side, side, PIXEL_FORMAT_8888));
    auto* pixels = static_cast<Colour*>(page->get_data());
    for (uint32_t y = 0; y < side; ++y) {
        for (uint32_t x = 0; x < side; ++x) {
            const bool panel = ((x / 64) + (y / 64)) % 3 == 0;
            pixels[size_t{y} * side + x] =
                panel ? Colour{40, 60, 80, 255}
                      : Colour{static_cast<uint8_t>(x), static_cast<uint8_t>(y),
                               static_cast<uint8_t>(x ^ y), static_cast<uint8_t>(128 + (x & 127))};
        }
    }
    return page;
}

std::vector<uint8_t> EncodeUncompressed(Image& page) {
    const std::string path =
        (std::filesystem::temp_directory_path() / "quillet-bench-page.tga").string();
    save_tga(page, path.c_str(), PIXEL_FORMAT_8888);
    std::string bytes;
    std::string reason;
    read_whole_file(path, bytes, reason);
    std::filesystem::remove(path);
    return std::vector<uint8_t>(bytes.begin(), bytes.end());
}

// Type 10: runs of equal pixels as repeat packets, the rest as raw packets.
std::vector<uint8_t> EncodeRunLength(const std::vector<uint8_t>& plain) {
    std::vector<uint8_t> file(plain.begin(), plain.begin() + 18);
    file[2] = 10;
    const uint8_t* pixels = plain.data() + 18;
    const size_t count = (plain.size() - 18) / 4;
    for (size_t at = 0; at < count;) {
        size_t run = 1;
        while (at + run < count && run < 128 &&
               std::memcmp(pixels + at * 4, pixels + (at + run) * 4, 4) == 0)
            ++run;
        if (run > 1) {
            file.push_back(static_cast<uint8_t>(0x80 | (run - 1)));
            file.insert(file.end(), pixels + at * 4, pixels + at * 4 + 4);
        } else {
            size_t raw = 1;
            while (at + raw < count && raw < 128 &&
                   std::memcmp(pixels + (at + raw - 1) * 4, pixels + (at + raw) * 4, 4) != 0)
                ++raw;
            file.push_back(static_cast<uint8_t>(raw - 1));
            file.insert(file.end(), pixels + at * 4, pixels + (at + raw) * 4);
            run = raw;
        }
        at += run;
    }
    return file;
}

struct Files {
    std::vector<uint8_t> plain;
    std::vector<uint8_t> run_length;
    static Files& instance() {
        static Files files = [] {
            Owned page = MakePage(kPage);
            Files made;
            made.plain = EncodeUncompressed(*page);
            made.run_length = EncodeRunLength(made.plain);
            return made;
        }();
        return files;
    }
};

// Both loaders read the file from memory as it stands, without a copy of their own.
void LoadOurs(benchmark::State& state, const std::vector<uint8_t>& file) {
    TgaReader reader;
    reader.buffer.attach(std::make_shared<MemoryBufferImpl>(file));
    for (auto _ : state) {
        reader.buffer.seek(0);
        Owned image(load_tga(reader));
        benchmark::DoNotOptimize(image.get());
    }
}

void LoadStb(benchmark::State& state, const std::vector<uint8_t>& file) {
    for (auto _ : state) {
        int width = 0, height = 0, channels = 0;
        stbi_uc* pixels = stbi_load_from_memory(file.data(), static_cast<int>(file.size()), &width,
                                                &height, &channels, 4);
        benchmark::DoNotOptimize(pixels);
        stbi_image_free(pixels);
    }
}

// The floor of a load: a copy of the plain file's bytes into memory already in use.
void BM_CopyPlainFile(benchmark::State& state) {
    const std::vector<uint8_t>& file = Files::instance().plain;
    std::vector<uint8_t> copy(file.size(), 1);
    for (auto _ : state) {
        std::memcpy(copy.data(), file.data(), file.size());
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(BM_CopyPlainFile)->Unit(benchmark::kMillisecond);

void BM_LoadPlain(benchmark::State& state) {
    LoadOurs(state, Files::instance().plain);
}
void BM_StbLoadPlain(benchmark::State& state) {
    LoadStb(state, Files::instance().plain);
}
void BM_LoadRunLength(benchmark::State& state) {
    LoadOurs(state, Files::instance().run_length);
}
void BM_StbLoadRunLength(benchmark::State& state) {
    LoadStb(state, Files::instance().run_length);
}
BENCHMARK(BM_LoadPlain)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StbLoadPlain)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadRunLength)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StbLoadRunLength)->Unit(benchmark::kMillisecond);

void BM_Convert(benchmark::State& state) {
    const auto from = static_cast<PixelFormat>(state.range(0));
    const auto to = static_cast<PixelFormat>(state.range(1));
    Owned source(create_image(kConvertSide, kConvertSide, from));
    Owned target(create_image(kConvertSide, kConvertSide, to));
    std::memset(source->get_data(), 0x5A,
                size_t{kConvertSide} * kConvertSide * bytes_per_pixel(from));
    for (auto _ : state)
        benchmark::DoNotOptimize(
            convert_pixels(target->lock_write(nullptr), source->lock_read(nullptr)));
    state.SetItemsProcessed(state.iterations() * kConvertSide * kConvertSide);
}
BENCHMARK(BM_Convert)
    ->ArgsProduct({benchmark::CreateDenseRange(0, 7, 1), benchmark::CreateDenseRange(0, 7, 1)});

void BM_Memcpy(benchmark::State& state) {
    const size_t bytes = size_t{kConvertSide} * kConvertSide * static_cast<size_t>(state.range(0));
    std::vector<uint8_t> from(bytes, 0x5A), to(bytes);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::DoNotOptimize(to.data());
    }
    state.SetItemsProcessed(state.iterations() * kConvertSide * kConvertSide);
}
BENCHMARK(BM_Memcpy)->Arg(1)->Arg(2)->Arg(3)->Arg(4);

void BM_Save(benchmark::State& state) {
    static Owned page = MakePage(kPage);
    const auto format = static_cast<PixelFormat>(state.range(0));
    const std::string path =
        (std::filesystem::temp_directory_path() / "quillet-bench-save.tga").string();
    for (auto _ : state)
        benchmark::DoNotOptimize(save_tga(*page, path.c_str(), format));
    state.SetBytesProcessed(state.iterations() * int64_t{kPage} * kPage * bytes_per_pixel(format));
    std::filesystem::remove(path);
}
BENCHMARK(BM_Save)
    ->Arg(PIXEL_FORMAT_8888)
    ->Arg(PIXEL_FORMAT_888)
    ->Arg(PIXEL_FORMAT_1555)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(1.0);  // each run ends in a flush to the disk, whose time varies

// The same bytes written the same way, without encoding.
void BM_WriteBytes(benchmark::State& state) {
    const std::string bytes(size_t{kPage} * kPage * static_cast<size_t>(state.range(0)), 'x');
    const std::string path =
        (std::filesystem::temp_directory_path() / "quillet-bench-raw.tga").string();
    std::string reason;
    for (auto _ : state)
        benchmark::DoNotOptimize(write_file_atomically(path, bytes, reason));
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes.size()));
    std::filesystem::remove(path);
}
BENCHMARK(BM_WriteBytes)->Arg(4)->Arg(3)->Arg(2)->Unit(benchmark::kMillisecond)->MinTime(1.0);

std::vector<bench::Figure> Figures() {
    using bench::Figure;
    const auto within = [](double factor) {
        return [factor](double value, double reference) { return value <= reference * factor; };
    };
    std::vector<Figure> figures = {
        {"tga_load_4096_plain", "BM_LoadPlain", "BM_StbLoadPlain",
         Figure::Measure::NanosecondsPerIteration, "not slower than stb_image", within(1.0)},
        {"tga_load_4096_rle", "BM_LoadRunLength", "BM_StbLoadRunLength",
         Figure::Measure::NanosecondsPerIteration, "not slower than stb_image", within(1.0)},
        {"tga_load_4096_plain_floor", "BM_LoadPlain", "BM_CopyPlainFile",
         Figure::Measure::NanosecondsPerIteration, "within 2x of memcpy", within(2.0)},
        {"tga_load_4096_rle_floor", "BM_LoadRunLength", "BM_CopyPlainFile",
         Figure::Measure::NanosecondsPerIteration, "within 4x of memcpy", within(4.0)},
    };
    Figure slowest{"convert_slowest_pair",
                   "",
                   "",
                   Figure::Measure::MegapixelsPerSecond,
                   "at least 1/8 of memcpy of the source bytes",
                   [](double value, double reference) { return value * 8 >= reference; }};
    for (int from = 0; from < kImageFormatCount; ++from) {
        for (int to = 0; to < kImageFormatCount; ++to) {
            if (from == PIXEL_FORMAT_GREY && to == PIXEL_FORMAT_555) continue;  // refused
            const std::string convert =
                "BM_Convert/" + std::to_string(from) + "/" + std::to_string(to);
            const std::string copy =
                "BM_Memcpy/" + std::to_string(bytes_per_pixel(static_cast<PixelFormat>(from)));
            if (from != to) {
                slowest.slowest_of.emplace_back(convert, copy);
                continue;
            }
            figures.push_back(
                {"convert_" + std::to_string(from) + "_to_" + std::to_string(to), convert, copy,
                 Figure::Measure::MegapixelsPerSecond, "within 1.5x of memcpy",
                 [](double value, double reference) { return value * 1.5 >= reference; }});
        }
    }
    figures.push_back(slowest);
    const std::pair<PixelFormat, const char*> saves[] = {
        {PIXEL_FORMAT_8888, "8888"}, {PIXEL_FORMAT_888, "888"}, {PIXEL_FORMAT_1555, "1555"}};
    for (const auto& [format, label] : saves) {
        // A page's own format is a copy per row and must keep up with the disk; the others
        // convert on the way and are reported.
        const bool own = format == PIXEL_FORMAT_8888;
        figures.push_back(
            {std::string("tga_save_4096_") + label, "BM_Save/" + std::to_string(format),
             "BM_WriteBytes/" + std::to_string(bytes_per_pixel(format)),
             Figure::Measure::MegabytesPerSecond, own ? "at least 0.5 of the raw write" : "report",
             [own](double value, double reference) { return !own || value * 2 >= reference; }});
    }
    return figures;
}

}  // namespace

int main(int argc, char** argv) {
    return bench::RunTable(argc, argv, Figures());
}
