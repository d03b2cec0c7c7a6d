// The project model: load, save and snapshot of a large project against plain line-by-line
// reading and writing of the same bytes.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "bench_table.h"
#include "core_atomic_file.h"
#include "framework/ScriptedUserInterface.h"
#include "model/ProjectFile.h"
#include "model/QuilletDoc.h"
#include "model/RecordIndex.h"
#include "model/qlt_paths.h"
#include "shell/ProjectRecovery.h"
#include "shell/QuilletApp.h"

namespace {

namespace fs = std::filesystem;

constexpr int kPages = 200;
constexpr int kRegionsPerPage = 50;
constexpr int kObjects = 2000;
constexpr int kLayouts = 100;
constexpr int kPiecesPerLayout = 200;

// 200 pages of 50 regions, 2,000 objects over them, 100 layouts of 200 pieces.
ProjectRecords BigProject(const fs::path& folder) {
    ProjectRecords records;
    for (int p = 0; p < kPages; ++p) {
        TPAGE page;
        page.path = (folder / ("pages/page" + std::to_string(p) + ".tga")).string();
        page.folder = "folder" + std::to_string(p % 10);
        for (int r = 0; r < kRegionsPerPage; ++r)
            page.regions.emplace_back("region_" + std::to_string(p) + "_" + std::to_string(r),
                                      PageRect{r * 10, 0, r * 10 + 8, 16}, nullptr);
        records.texture_pages.push_back(std::move(page));
    }
    for (int o = 0; o < kObjects; ++o) {
        const int p = o % kPages;
        const std::string page = records.texture_pages[static_cast<size_t>(p)].path;
        const std::string region =
            "region_" + std::to_string(p) + "_" + std::to_string(o % kRegionsPerPage);
        if (o % 2 == 0) {
            auto art = std::make_unique<UI_ART>("object_" + std::to_string(o));
            art->regions.push_back({"art", page, region});
            records.ui_objects.push_back(std::move(art));
        } else {
            auto button = std::make_unique<UI_PUSH_BUTTON>("object_" + std::to_string(o));
            for (const char* slot : {"enabled", "highlighted", "selected"})
                button->regions.push_back({slot, page, region});
            records.ui_objects.push_back(std::move(button));
        }
    }
    for (int l = 0; l < kLayouts; ++l) {
        LPAGE layout;
        layout.name = "layout_" + std::to_string(l);
        layout.texture_paths = {"folder" + std::to_string(l % 10)};
        for (int i = 0; i < kPiecesPerLayout; ++i) {
            UI_PIECE piece;
            piece.name = "piece_" + std::to_string(i);
            piece.piece_identifier = "button";
            piece.object_id = "object_" + std::to_string((l * kPiecesPerLayout + i) % kObjects);
            piece.x = i * 3;
            piece.y = i * 2;
            piece.attributes.text_id = "TXT_" + std::to_string(i);
            piece.attributes.font_id = "body";
            piece.attributes.menu_id = "layout_" + std::to_string((l + 1) % kLayouts);
            layout.pieces.push_back(std::move(piece));
        }
        records.qlt_file.layouts.push_back(std::move(layout));
    }
    return records;
}

struct Fixture {
    framework::ScriptedUserInterface ui;
    framework::MemoryProfileStore profile;
    CQuilletApp app{ui, profile};
    fs::path folder = fs::temp_directory_path() / "quillet-model-bench";
    std::string path = (folder / "big.qlt").string();
    std::string bytes;

    static Fixture& instance() {
        static Fixture fixture;
        return fixture;
    }

private:
    Fixture() {
        fs::create_directories(folder);
        const ProjectRecords records = BigProject(folder);
        const RecordIndex index{&records};
        const ScopedRecordLookup scope(index);
        SetProjectBaseDir(path);
        framework::Archive archive = framework::Archive::ForStoring(path);
        WriteProject(archive, records);
        bytes = archive.TakeBytes();
        std::string reason;
        Core::write_file_atomically(path, bytes, reason);
    }
};

std::unique_ptr<CQuilletDoc> Loaded() {
    auto project = std::make_unique<CQuilletDoc>();
    std::string bytes;
    std::string reason;
    Core::read_whole_file(Fixture::instance().path, bytes, reason);
    framework::Archive archive = framework::Archive::ForLoading(bytes, Fixture::instance().path);
    project->Serialize(archive);
    return project;
}

void BM_Load(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(Loaded());
    state.SetBytesProcessed(state.iterations() *
                            static_cast<int64_t>(Fixture::instance().bytes.size()));
}
BENCHMARK(BM_Load)->Unit(benchmark::kMillisecond);

void BM_ReadLines(benchmark::State& state) {
    for (auto _ : state) {
        std::ifstream stream(Fixture::instance().path);
        std::string line;
        size_t lines = 0;
        while (std::getline(stream, line))
            ++lines;
        benchmark::DoNotOptimize(lines);
    }
    state.SetBytesProcessed(state.iterations() *
                            static_cast<int64_t>(Fixture::instance().bytes.size()));
}
BENCHMARK(BM_ReadLines)->Unit(benchmark::kMillisecond);

void BM_Save(benchmark::State& state) {
    const auto project = Loaded();
    const std::string target = (Fixture::instance().folder / "saved.qlt").string();
    for (auto _ : state)
        benchmark::DoNotOptimize(project->OnSaveDocument(target));
    state.SetBytesProcessed(state.iterations() *
                            static_cast<int64_t>(Fixture::instance().bytes.size()));
}
BENCHMARK(BM_Save)->Unit(benchmark::kMillisecond);

void BM_WriteLines(benchmark::State& state) {
    const std::string& bytes = Fixture::instance().bytes;
    std::vector<std::string> lines;
    for (size_t at = 0; at < bytes.size();) {
        const size_t end = bytes.find('\n', at);
        lines.push_back(bytes.substr(at, end - at));
        at = end == std::string::npos ? bytes.size() : end + 1;
    }
    const std::string target = (Fixture::instance().folder / "lines.qlt").string();
    for (auto _ : state) {
        std::ofstream stream(target, std::ios::binary);
        for (const std::string& line : lines)
            stream << line << '\n';
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes.size()));
}
BENCHMARK(BM_WriteLines)->Unit(benchmark::kMillisecond);

void BM_Snapshot(benchmark::State& state) {
    const auto project = Loaded();
    for (auto _ : state)
        project->TakeSnapshot();
    state.SetBytesProcessed(state.iterations() *
                            static_cast<int64_t>(Fixture::instance().bytes.size()));
}
BENCHMARK(BM_Snapshot)->Unit(benchmark::kMillisecond);

// What the interface's thread does for a recovery copy: the project's text and a copy of a
// changed 2048x2048 page. Encoding and writing happen on the writer's thread.
void BM_RecoveryCapture(benchmark::State& state) {
    const auto project = Loaded();
    PageOutput page;
    page.path = project->records().texture_pages.front().path;
    page.image.reset(Core::create_image(2048, 2048, Core::PIXEL_FORMAT_8888));
    project->KeepPageOutput(std::move(page));
    for (auto _ : state)
        benchmark::DoNotOptimize(CaptureProject(*project));
}
BENCHMARK(BM_RecoveryCapture)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    using bench::Figure;
    return bench::RunTable(
        argc, argv,
        {
            {"qlt_load_big", "BM_Load", "BM_ReadLines", Figure::Measure::MegabytesPerSecond,
             "within 4x", [](double value, double reference) { return value * 4.0 >= reference; }},
            {"qlt_save_big", "BM_Save", "BM_WriteLines", Figure::Measure::MegabytesPerSecond,
             "within 3x", [](double value, double reference) { return value * 3.0 >= reference; }},
            {"qlt_snapshot_big", "BM_Snapshot", "BM_WriteLines",
             Figure::Measure::NanosecondsPerIteration, "<60ms",
             [](double value, double) { return value < 60e6; }},
            {"recovery_capture_big", "BM_RecoveryCapture", "BM_Snapshot",
             Figure::Measure::NanosecondsPerIteration, "<50ms",
             [](double value, double) { return value < 50e6; }},
        });
}
