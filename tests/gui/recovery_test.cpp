// A killed editor loses nothing it had for a moment: a child process runs the real editor,
// makes changes and is killed; the next start recovers them.
#include <QProcess>
#include <QSettings>
#include <QTest>
#include <QTimer>
#include <clocale>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "GuiFixture.h"
#include "core_images.h"
#include "core_tga.h"
#include "model/QuilletDoc.h"
#include "model/RecoveryFile.h"
#include "qt/EditorMain.h"
#include "shell/ProjectRecovery.h"
#include "texture/TexturePageDoc.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kChildFlag = "--editor-to-kill";

const std::string kProject =
    "<version>1.01</version>\r\n<texture>page.tga\r\n  <region>a\r\n    <left>0</left>\r\n"
    "    <top>0</top>\r\n    <right>8</right>\r\n    <bottom>8</bottom>\r\n  </region>\r\n"
    "</texture>\r\n<layout>\r\n  <layout_width>800</layout_width>\r\n"
    "  <layout_height>600</layout_height>\r\n  <piece_types_fname></piece_types_fname>\r\n"
    "  <piece_texts_fname></piece_texts_fname>\r\n</layout>\r\n";

Core::Colour PixelAt(uint32_t x, uint32_t y) {
    return {static_cast<uint8_t>(x), static_cast<uint8_t>(y), 0x40, 0xFF};
}

void WritePage(const std::string& path) {
    const ImagePtr page(Core::create_image(32, 32, Core::PIXEL_FORMAT_8888));
    for (uint32_t y = 0; y < 32; ++y)
        for (uint32_t x = 0; x < 32; ++x)
            page->set_pixel(x, y, PixelAt(x, y));
    Core::save_tga(*page, path.c_str(), Core::PIXEL_FORMAT_8888);
}

Core::Colour SavedPixel(const std::string& path, uint32_t x, uint32_t y) {
    Core::TgaReader reader;
    reader.buffer.open(path.c_str());
    const ImagePtr page(Core::load_tga(reader, Core::PIXEL_FORMAT_8888));
    return page != nullptr ? page->get_pixel(x, y) : Core::Colour{};
}

std::string CopyBytes(CQuilletDoc& project) {
    std::string bytes;
    EncodeRecoveryCopy(CaptureProject(project), bytes);
    return bytes;
}

// The person in the editor that is killed: moves a region and widens the layout, writes
// what the editor then holds to `expected`, and says so on its output.
void ChangeAndTell(const std::string& expected) {
    CQuilletDoc* project = GetProjectDoc();
    CTexturePageDoc* page = project->OpenTexture(project->records().texture_pages[0].path);
    page->CutRegions();
    page->SetRegionPosition("a", 16, 16);
    project->qlt_file().layout_width = 1024;
    project->SetModifiedFlag(true);
    project->TakeSnapshot();
    project->UpdateAllViews(nullptr);
    std::ofstream(expected, std::ios::binary) << CopyBytes(*project);
    std::printf("changed\n");
    std::fflush(stdout);
}

}  // namespace

class RecoveryTest : public QObject {
    Q_OBJECT

private slots:
    void init() { gui_.Make(); }
    void cleanup() { gui_.Destroy(); }

    void aKilledEditorsChangesAreRecoveredAtTheNextStart() {
        const std::string project = gui_.dir.Write("menu.qlt", kProject);
        WritePage(gui_.dir.File("page.tga"));
        const std::string state = gui_.dir.File("state");
        const std::string config = gui_.dir.File("config");
        const std::string expected = gui_.dir.File("expected.qrc");

        QProcess editor;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_STATE_HOME"), QString::fromStdString(state));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QString::fromStdString(config));
        editor.setProcessEnvironment(environment);
        editor.start(QCoreApplication::applicationFilePath(),
                     {QString::fromLatin1(kChildFlag), QString::fromStdString(project),
                      QString::fromStdString(expected)});
        QVERIFY(editor.waitForStarted());
        QByteArray said;
        const auto changed = [&editor, &said] {
            said += editor.readAllStandardOutput();
            return said.contains("changed") || editor.state() == QProcess::NotRunning;
        };
        QTRY_VERIFY_WITH_TIMEOUT(changed(), 60000);
        QCOMPARE(editor.state(), QProcess::Running);

        // The editor keeps its copy a moment after the change, without being asked.
        const fs::path folder = fs::path(state) / "quillet" / "recovery";
        const std::string unsaved = ReadFile(expected);
        const auto kept = [&folder, &unsaved] {
            std::error_code error;
            for (const auto& entry : fs::directory_iterator(folder, error))
                if (entry.path().extension() == ".qrc" && ReadFile(entry.path()) == unsaved)
                    return true;
            return false;
        };
        QTRY_VERIFY_WITH_TIMEOUT(kept(), 30000);
        editor.kill();
        QVERIFY(editor.waitForFinished());

        // It wrote its recent files when it opened the project, not at the end it never had.
        QSettings recent(QString::fromStdString(config + "/Tallowmere/quillet.conf"),
                         QSettings::IniFormat);
        QCOMPARE(recent.value(QStringLiteral("Recent File List/File1")).toString().toStdString(),
                 project);

        gui_.app->EnableRecovery(folder.string());
        QVERIFY(gui_.app->InitInstance({}, gui_.window.get()));
        QCOMPARE(gui_.ui->choice_boxes.size(), size_t{1});
        CQuilletDoc* recovered = GetProjectDoc();
        QVERIFY(recovered != nullptr);
        QVERIFY(recovered->IsModified());
        QCOMPARE(CopyBytes(*recovered), unsaved);
        QCOMPARE(ReadFile(project), kProject);

        QVERIFY(recovered->DoFileSave());
        QVERIFY(gui_.ui->boxes.empty());
        QVERIFY(ReadFile(project).find("<layout_width>1024</layout_width>") != std::string::npos);
        QVERIFY(SavedPixel(gui_.dir.File("page.tga"), 16, 16) == PixelAt(0, 0));

        QVERIFY(gui_.window->close());
        gui_.app->ExitInstance();
        QVERIFY(!fs::exists(gui_.app->Recovery()->OwnFile()));
    }

private:
    GuiFixture gui_;
};

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == kChildFlag) {
        QApplication application(argc, argv);
        std::setlocale(LC_NUMERIC, "C");
        const std::string expected = argv[3];
        QTimer::singleShot(0, [expected] { ChangeAndTell(expected); });
        return RunEditor({argv[2]});
    }
    return RunGuiTest<RecoveryTest>(argc, argv);
}

#include "recovery_test.moc"
