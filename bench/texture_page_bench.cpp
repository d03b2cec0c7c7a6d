// The whole tile command of the texture page window on a 4096x4096 page of 1,000 regions:
// best fit, every region moved through the project, and the page composed again for the
// screen. The reference is the tiling alone, on the same regions.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>

#include "bench_table.h"
#include "framework/ScriptedUserInterface.h"
#include "model/QuilletDoc.h"
#include "shell/QuilletApp.h"
#include "texture/TexturePageView.h"

namespace {

namespace fs = std::filesystem;

constexpr int32_t kPageSide = 4096;
constexpr int kRegions = 1000;

// A window that is never shown: the view composes its page and nothing else happens.
class HiddenCanvas : public TexturePageCanvas {
public:
    Point ScrollPosition() const override { return {}; }
    void SetScrollSizes(int32_t, int32_t) override {}
    void ScrollToPosition(Point) override {}
    void Invalidate(const PageRect&) override {}
    void InvalidateAll() override {}
    void PostRebuild() override {}
    void SetCapture() override {}
    void ReleaseCapture() override {}
    void SetCursor(CursorShape) override {}
    void StartTimer(int, int) override {}
    void KillTimer(int) override {}
    void PlaceFrame(int32_t, int32_t) override {}
};

// UI art: mostly 8 to 128 pixels a side, one in fifty up to 512.
int32_t ArtSide(std::mt19937& random) {
    const bool large = std::uniform_int_distribution<int>(0, 49)(random) == 0;
    return std::uniform_int_distribution<int32_t>(8, large ? 512 : 128)(random);
}

struct Fixture {
    framework::ScriptedUserInterface ui;
    framework::MemoryProfileStore profile;
    CQuilletApp app{ui, profile};
    fs::path folder = fs::temp_directory_path() / "quillet-texture-bench";
    CTexturePageDoc* page = nullptr;
    HiddenCanvas canvas;
    CTexturePageView view{canvas};

    static Fixture& instance() {
        static Fixture fixture;
        return fixture;
    }

private:
    Fixture() {
        fs::create_directories(folder);
        app.InitInstance({}, nullptr);
        TextureDialogData data;
        data.width = data.height = kPageSide;
        page = GetProjectDoc()->CreateNewTexture((folder / "page.tga").string(), data);
        page->AddView(view);
        std::mt19937 random(6);
        for (int index = 0; index < kRegions; ++index) {
            const int32_t width = ArtSide(random);
            const int32_t height = ArtSide(random);
            const ImagePtr picture(Core::create_image(static_cast<uint32_t>(width),
                                                      static_cast<uint32_t>(height),
                                                      Core::PIXEL_FORMAT_8888));
            page->SetRegion({0, 0, width, height}, "art_" + std::to_string(index), picture.get());
        }
    }
};

void BM_TileCommand(benchmark::State& state) {
    Fixture& fixture = Fixture::instance();
    for (auto _ : state) {
        fixture.view.Tile(TILE_BEST_FIT);
        fixture.view.RebuildIfNeeded();
    }
}
BENCHMARK(BM_TileCommand)->Unit(benchmark::kMillisecond);

void BM_TilingAlone(benchmark::State& state) {
    Fixture& fixture = Fixture::instance();
    for (auto _ : state)
        benchmark::DoNotOptimize(TileRecords(fixture.page->Page().regions, TILE_BEST_FIT, 0,
                                             fixture.page->GetPageSize()));
}
BENCHMARK(BM_TilingAlone)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    using bench::Figure;
    return bench::RunTable(argc, argv,
                           {{"tile_command_4096_1000", "BM_TileCommand", "BM_TilingAlone",
                             Figure::Measure::NanosecondsPerIteration, "<1s",
                             [](double value, double) { return value < 1e9; }}});
}
