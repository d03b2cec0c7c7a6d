// The layout page window on a 1920x1440 menu of 500 pieces over 40 regions of one texture
// page: the whole page drawn anew with the region pictures already cut, against a plain copy
// of the page's pixels; and one step of dragging a piece, against the full redraw it avoids.
#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <random>
#include <vector>

#include "bench_table.h"
#include "core_atomic_file.h"
#include "core_tga.h"
#include "framework/ScriptedUserInterface.h"
#include "layout/LayoutPageView.h"
#include "model/ProjectFile.h"
#include "model/QuilletDoc.h"
#include "model/RecordIndex.h"
#include "model/piece_geometry.h"
#include "model/qlt_paths.h"
#include "shell/QuilletApp.h"

namespace {

namespace fs = std::filesystem;

constexpr int32_t kPageWidth = 1920;
constexpr int32_t kPageHeight = 1440;
constexpr int kRegions = 40;
constexpr int kPieces = 500;
constexpr int32_t kCell = 128;  // each region has a cell of its own on the texture page
constexpr int kColumns = 8;
const char* const kLayoutName = "Menu";

// A window that is never shown: the view draws its page and nothing else happens.
class HiddenCanvas : public LayoutPageCanvas {
public:
    Point ScrollPosition() const override { return {}; }
    void SetScrollSizes(int32_t, int32_t) override {}
    void ScrollToPosition(Point) override {}
    void Invalidate(const PageRect&) override {}
    void InvalidateAll() override {}
    void PostRebuild() override {}
    void SetCapture() override {}
    void ReleaseCapture() override {}
    void SetCursor(LayoutCursor) override {}
    void PlaceFrame(int32_t, int32_t) override {}
    void ActivateFrame() override {}
    int TrackPieceMenu(Point) override { return 0; }
    bool OpenZSortDialog(ZSortList&) override { return false; }
    void CloseZSortDialog() override {}
};

// UI art from 16 to 127 pixels a side, each in its own cell.
PageRect RegionRect(int index) {
    const int32_t left = (index % kColumns) * kCell;
    const int32_t top = (index / kColumns) * kCell;
    return {left, top, left + 16 + (index * 37) % 112, top + 16 + (index * 53) % 112};
}

// Art as a game has it: opaque bodies with soft, half-transparent rims and clear corners.
bool DrawTexturePage(const std::string& path) {
    const ImagePtr page(Core::create_image(kColumns * kCell, (kRegions / kColumns) * kCell,
                                           Core::PIXEL_FORMAT_8888));
    for (int index = 0; index < kRegions; ++index) {
        const PageRect r = RegionRect(index);
        for (int32_t y = r.top; y < r.bottom; ++y) {
            for (int32_t x = r.left; x < r.right; ++x) {
                const bool corner =
                    (x - r.left < 3 || r.right - x <= 3) && (y - r.top < 3 || r.bottom - y <= 3);
                const bool rim = x == r.left || y == r.top || x == r.right - 1 || y == r.bottom - 1;
                const auto shade = static_cast<uint8_t>(index * 6);
                const Core::Colour colour = corner ? Core::Colour{}
                                            : rim  ? Core::Colour{0x20, 0x20, 0x20, 0x80}
                                                   : Core::Colour{shade, static_cast<uint8_t>(y),
                                                                 static_cast<uint8_t>(x), 0xFF};
                page->set_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y), colour);
            }
        }
    }
    return Core::save_tga(*page, path.c_str(), Core::PIXEL_FORMAT_8888);
}

UI_REGION Slot(const std::string& page, int index) {
    return {"art", page, "region_" + std::to_string(index)};
}

template <typename Kind>
std::unique_ptr<UI_OBJECT> WithSlots(const std::string& name, std::vector<UI_REGION> slots) {
    auto object = std::make_unique<Kind>(name);
    object->regions = std::move(slots);
    return object;
}

// Mostly art, six three-state buttons and a slider, all over the one page.
void AddObjects(ProjectRecords& records, const std::string& page) {
    for (int index = 0; index < 30; ++index)
        records.ui_objects.push_back(
            WithSlots<UI_ART>("art_" + std::to_string(index), {Slot(page, index)}));
    for (int index = 30; index < 36; ++index)
        records.ui_objects.push_back(WithSlots<UI_PUSH_BUTTON>(
            "button_" + std::to_string(index),
            {Slot(page, index), Slot(page, index + 1), Slot(page, index + 2)}));
    auto slider = std::make_unique<UI_V_SLIDER>("slider");
    slider->parts.push_back(WithSlots<UI_ART>("Art", {Slot(page, 36)}));
    slider->parts.push_back(WithSlots<UI_PUSH_BUTTON>("Thumb", {Slot(page, 37)}));
    slider->parts.push_back(WithSlots<UI_PUSH_BUTTON>("Decrease", {Slot(page, 38)}));
    slider->parts.push_back(WithSlots<UI_PUSH_BUTTON>("Increase", {Slot(page, 39)}));
    records.ui_objects.push_back(std::move(slider));
}

std::string ObjectOf(int index) {
    if (index % 10 < 7) return "art_" + std::to_string(index % 30);
    if (index % 10 < 9) return "button_" + std::to_string(30 + index % 6);
    return "slider";
}

// 500 pieces anywhere on the page at scales up to 1.5; one in ten locked. The last piece
// lies on top and is not locked: the drag takes it.
LPAGE Menu(const QLT_FILE& qlt) {
    LPAGE menu{0, kLayoutName, qlt.layout_width, qlt.layout_height, {}, {}, {}};
    std::mt19937 random(11);
    for (int index = 0; index < kPieces; ++index) {
        UI_PIECE piece;
        piece.name = "piece_" + std::to_string(index);
        piece.piece_identifier = "art";
        piece.object_id = ObjectOf(index);
        piece.x = std::uniform_int_distribution<int32_t>(0, kPageWidth - 200)(random);
        piece.y = std::uniform_int_distribution<int32_t>(0, kPageHeight - 200)(random);
        piece.scale_x = std::uniform_real_distribution<float>(1.0f, 1.5f)(random);
        piece.scale_y = std::uniform_real_distribution<float>(1.0f, 1.5f)(random);
        piece.locked = index % 10 == 3;
        menu.pieces.push_back(std::move(piece));
    }
    return menu;
}

bool WriteProjectFile(const fs::path& folder, const std::string& path) {
    const std::string page = (folder / "menu.tga").string();
    if (!DrawTexturePage(page)) return false;
    ProjectRecords records;
    TPAGE texture;
    texture.path = page;
    for (int index = 0; index < kRegions; ++index)
        texture.regions.emplace_back("region_" + std::to_string(index), RegionRect(index), nullptr);
    records.texture_pages.push_back(std::move(texture));
    AddObjects(records, page);
    records.qlt_file.layout_width = kPageWidth;
    records.qlt_file.layout_height = kPageHeight;
    const RecordIndex index{&records};
    const ScopedRecordLookup scope(index);
    for (auto& object : records.ui_objects)
        object->Arrange();
    records.qlt_file.layouts.push_back(Menu(records.qlt_file));
    SetProjectBaseDir(path);
    framework::Archive archive = framework::Archive::ForStoring(path);
    WriteProject(archive, records);
    std::string reason;
    return Core::write_file_atomically(path, archive.TakeBytes(), reason);
}

// The project opened as the editor opens it, with the menu's window open over a hidden
// canvas and drawn once, so that every region picture is cut.
struct Fixture {
    framework::ScriptedUserInterface ui;
    framework::MemoryProfileStore profile;
    CQuilletApp app{ui, profile};
    fs::path folder = fs::temp_directory_path() / "quillet-layout-bench";
    CQuilletDoc* project = nullptr;
    CLayoutPageDoc* document = nullptr;
    HiddenCanvas canvas;
    CLayoutPageView view{canvas};

    static Fixture& instance() {
        static Fixture fixture;
        return fixture;
    }

    const LPAGE& Page() const { return *document->Page(); }

private:
    Fixture() {
        fs::create_directories(folder);
        const std::string path = (folder / "menu.qlt").string();
        if (!WriteProjectFile(folder, path)) std::abort();
        app.InitInstance({}, nullptr);
        project = dynamic_cast<CQuilletDoc*>(app.OpenDocumentFile(path));
        document = project == nullptr
                       ? nullptr
                       : dynamic_cast<CLayoutPageDoc*>(project->OpenLayout(kLayoutName));
        if (document == nullptr) std::abort();
        document->AddView(view);
        view.OnInitialUpdate();
        view.OnUpdate(nullptr, 0, nullptr);
        view.RebuildIfNeeded();
    }
};

void BM_LayoutRebuild(benchmark::State& state) {
    Fixture& fixture = Fixture::instance();
    LayoutRenderer renderer;
    const PageSize size = fixture.document->GetPageSize();
    // The region pictures are cut once, as in a window, which also draws over its last page.
    ImagePtr page = renderer.Render(fixture.Page(), size);
    for (auto _ : state)
        page = renderer.Render(fixture.Page(), size, std::move(page));
    benchmark::DoNotOptimize(page.get());
}
BENCHMARK(BM_LayoutRebuild)->Unit(benchmark::kMillisecond);

void BM_LayoutPageCopy(benchmark::State& state) {
    const size_t bytes = size_t{kPageWidth} * kPageHeight * sizeof(Core::Colour);
    std::vector<uint8_t> from(bytes, 0xCD);
    std::vector<uint8_t> to(bytes);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_LayoutPageCopy)->Unit(benchmark::kMillisecond);

// The mouse held on the top piece and moved back and forth by one pixel: each step moves the
// piece and refreshes its outline; the page is drawn again only when the button is let go.
void BM_LayoutDragStep(benchmark::State& state) {
    Fixture& fixture = Fixture::instance();
    const PageRect top = PieceRect(fixture.Page().pieces.back());
    const Point grip{(top.left + top.right) / 2, (top.top + top.bottom) / 2};
    fixture.view.OnLButtonDown(grip, false);
    if (!fixture.view.IsDragging()) {
        state.SkipWithError("pressing on the top piece did not start a drag");
        return;
    }
    int32_t step = 0;
    for (auto _ : state) {
        step ^= 1;
        fixture.view.OnMouseMove({grip.x + step, grip.y + step});
    }
    fixture.view.OnLButtonUp(grip);
    fixture.view.RebuildIfNeeded();
}
BENCHMARK(BM_LayoutDragStep)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    using bench::Figure;
    return bench::RunTable(argc, argv,
                           {
                               {"layout_rebuild_500", "BM_LayoutRebuild", "BM_LayoutPageCopy",
                                Figure::Measure::NanosecondsPerIteration, "<10ms",
                                [](double value, double) { return value < 10e6; }},
                               {"layout_drag_step", "BM_LayoutDragStep", "BM_LayoutRebuild",
                                Figure::Measure::NanosecondsPerIteration, "<1ms",
                                [](double value, double) { return value < 1e6; }},
                           });
}
