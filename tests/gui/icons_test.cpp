// The toolbars' pictures, offscreen: every command has a picture of its own, drawn in the
// palette's ink, and the texture page window's buttons show the spacing it tiles with and
// the page's unused colour.
#include <QIcon>
#include <QImage>
#include <QTest>
#include <QToolBar>
#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "GuiFixture.h"
#include "core_images.h"
#include "core_tga.h"
#include "model/QuilletDoc.h"
#include "qt/Icons.h"
#include "qt/LayoutPageWindow.h"
#include "qt/TexturePageWindow.h"
#include "shell/CommandIds.h"
#include "texture/TexturePageDoc.h"

namespace {

using namespace commands;

const std::string kProject =
    "<version>1.01</version>\r\n<texture>page.tga\r\n</texture>\r\n<layout>\r\n"
    "  <layout_width>800</layout_width>\r\n  <layout_height>600</layout_height>\r\n"
    "  <piece_types_fname></piece_types_fname>\r\n  <piece_texts_fname></piece_texts_fname>\r\n"
    "</layout>\r\n";

void WritePage(const std::string& path) {
    const ImagePtr image(Core::create_image(32, 32, Core::PIXEL_FORMAT_8888));
    Core::save_tga(*image, path.c_str(), Core::PIXEL_FORMAT_8888);
}

// The 16 pixel picture of `icon`, not premultiplied.
QImage Picture(const QIcon& icon, QIcon::Mode mode = QIcon::Normal) {
    return icon.pixmap(QSize(16, 16), 1.0, mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

int CoveredPixels(const QImage& picture) {
    int covered = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            covered += qAlpha(picture.pixel(x, y)) >= 128;
    }
    return covered;
}

// Whether `pixel` is the grey of `level`, give or take what smoothing the edges leaves.
bool Near(QRgb pixel, int level) {
    return std::abs(qRed(pixel) - level) <= 3 && std::abs(qGreen(pixel) - level) <= 3 &&
           std::abs(qBlue(pixel) - level) <= 3;
}

QPalette WithInk(const QColor& window, const QColor& ink, const QColor& disabled_ink) {
    QPalette palette(window, window);
    palette.setColor(QPalette::Active, QPalette::WindowText, ink);
    palette.setColor(QPalette::Inactive, QPalette::WindowText, ink);
    palette.setColor(QPalette::Disabled, QPalette::WindowText, disabled_ink);
    return palette;
}

QPalette Light() {
    return WithInk(QColor(0xEF, 0xEF, 0xEF), QColor(0x20, 0x20, 0x20), Qt::gray);
}

QPalette Dark() {
    return WithInk(QColor(0x2A, 0x2A, 0x2E), QColor(0xEE, 0xEE, 0xEE), QColor(0x70, 0x70, 0x70));
}

}  // namespace

class IconsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        // The desktop's theme would answer some commands with its pictures: only ours here.
        QIcon::setThemeSearchPaths({});
        QIcon::setThemeName(QStringLiteral("none"));
        QIcon::setFallbackThemeName(QStringLiteral("none"));
    }
    void init() { gui_.Make(); }
    void cleanup() { gui_.Destroy(); }

    void everyButtonHasAPictureOfItsOwn() {
        WritePage(gui_.dir.File("page.tga"));
        QVERIFY(gui_.app->InitInstance({gui_.dir.Write("ui.qlt", kProject)}, gui_.window.get()));
        TexturePageWindow texture_window;
        LayoutPageWindow layout_window;
        std::vector<std::pair<QString, QImage>> pictures;
        for (const QWidget* window :
             {static_cast<QWidget*>(gui_.window.get()), static_cast<QWidget*>(&texture_window),
              static_cast<QWidget*>(&layout_window)}) {
            const auto* tool_bar =
                window->findChild<QToolBar*>(QString(), Qt::FindDirectChildrenOnly);
            QVERIFY(tool_bar != nullptr);
            for (const QAction* action : tool_bar->actions()) {
                if (action->isSeparator()) continue;
                const QImage picture = Picture(action->icon());
                QVERIFY2(CoveredPixels(picture) >= 10, qPrintable(action->toolTip()));
                pictures.emplace_back(action->toolTip(), picture);
            }
        }
        const auto has = [&pictures](const char* tip) {
            return std::any_of(pictures.begin(), pictures.end(), [tip](const auto& picture) {
                return picture.first == QLatin1String(tip);
            });
        };
        QVERIFY(has("Print") && has("Help"));
        QVERIFY(has("Set spacing on tiling regions to 3 pixels"));
        QVERIFY(has("Snap centres"));
        for (size_t one = 0; one < pictures.size(); ++one) {
            for (size_t other = one + 1; other < pictures.size(); ++other) {
                QVERIFY2(pictures[one].second != pictures[other].second,
                         qPrintable(pictures[one].first + QStringLiteral(" looks like ") +
                                    pictures[other].first));
            }
        }
    }

    void inkFollowsThePalette() {
        for (const int command : {kZoomOut, kSelectAndMove, kAppAbout, kAlignLeft}) {
            const QImage on_light = Picture(CommandIcon(command, Light()));
            const QImage on_dark = Picture(CommandIcon(command, Dark()));
            const QImage disabled = Picture(CommandIcon(command, Dark()), QIcon::Disabled);
            int ink = 0;
            int accent = 0;
            for (int y = 0; y < 16; ++y) {
                for (int x = 0; x < 16; ++x) {
                    const QRgb light = on_light.pixel(x, y);
                    const QRgb dark = on_dark.pixel(x, y);
                    if (qAlpha(light) < 128) continue;
                    QCOMPARE(qAlpha(dark), qAlpha(light));
                    if (qRed(light) == qBlue(light) && qGreen(light) == qBlue(light)) {
                        // The ink, in part of the pixel at the edges of its lines.
                        ++ink;
                        QVERIFY(Near(light, 0x20) && Near(dark, 0xEE));
                        QVERIFY(Near(disabled.pixel(x, y), 0x70));
                    } else if (light == qRgb(0x35, 0x84, 0xE4)) {
                        // The accent is no ink: the same on either palette, greyed when
                        // disabled.
                        ++accent;
                        QCOMPARE(dark, light);
                        QVERIFY(disabled.pixel(x, y) != light);
                    }
                }
            }
            QVERIFY2(ink >= 6 && accent >= 1, qPrintable(QString::number(command)));
        }
        QVERIFY(CommandIcon(kFileClose).isNull());

        // A window given a dark palette inks its buttons again.
        TexturePageWindow window;
        window.setPalette(Light());
        QCOMPARE(Picture(window.Action(kClearSpace)->icon()),
                 Picture(CommandIcon(kClearSpace, Light())));
        window.setPalette(Dark());
        QCOMPARE(Picture(window.Action(kClearSpace)->icon()),
                 Picture(CommandIcon(kClearSpace, Dark())));
    }

    void spacingAndUnusedColourShowOnTheirButtons() {
        const std::string page_path = gui_.dir.File("page.tga");
        WritePage(page_path);
        QVERIFY(gui_.app->InitInstance({gui_.dir.Write("ui.qlt", kProject)}, gui_.window.get()));
        QVERIFY(QTest::qWaitForWindowExposed(gui_.window.get()));
        CTexturePageDoc* page = GetProjectDoc()->OpenTexture(page_path);
        QVERIFY(page != nullptr);
        auto* window =
            qobject_cast<TexturePageWindow*>(gui_.window->MdiArea().activeSubWindow()->widget());
        QVERIFY(window != nullptr);

        const int spacings[] = {kSpacing0, kSpacing1, kSpacing2, kSpacing3};
        const auto pressed = [window, &spacings] {
            std::vector<int> checked;
            for (const int spacing : spacings) {
                if (window->Action(spacing)->isChecked()) checked.push_back(spacing);
            }
            return checked;
        };
        QCOMPARE(pressed(), std::vector<int>{kSpacing0});
        // Chosen from the main window's menu, the spacing is pressed in the window's toolbar.
        gui_.window->Action(kSpacing2)->trigger();
        QCOMPARE(window->Page().View().Spacing(), 2u);
        QCOMPARE(pressed(), std::vector<int>{kSpacing2});
        // Pressed again, it stays pressed.
        window->Action(kSpacing2)->trigger();
        QCOMPARE(pressed(), std::vector<int>{kSpacing2});

        // The swatch's middle, in the bottom right corner of the picture.
        const auto swatch = [window] {
            return Picture(window->Action(kSelectUnusedColour)->icon()).pixel(12, 12);
        };
        QTRY_COMPARE(swatch(), qRgb(0xCD, 0xCD, 0xCD));
        page->SetUnusedColour({0x10, 0x80, 0x20, 0xFF});
        QTRY_COMPARE(swatch(), qRgb(0x20, 0x80, 0x10));
        QVERIFY(gui_.ui->boxes.empty());
    }

private:
    GuiFixture gui_;
};

int main(int argc, char** argv) {
    return RunGuiTest<IconsTest>(argc, argv);
}

#include "icons_test.moc"
