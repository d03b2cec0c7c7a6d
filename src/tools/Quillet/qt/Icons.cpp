#include "Icons.h"

#include <QEvent>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QWidget>
#include <algorithm>
#include <initializer_list>

#include "shell/CommandIds.h"

namespace {

using namespace commands;

// The colours the drawings are made in; the accent is also the colour they are shown in.
const QByteArray kInkInFiles = QByteArrayLiteral("#000000");
const QByteArray kAccentInFiles = QByteArrayLiteral("#3584e4");
const QColor kAccent(0x35, 0x84, 0xe4);

constexpr int kSizes[] = {16, 24, 32, 48, 64};

struct Drawing {
    int command;
    const char* file;  // in qt/icons/, without ".svg"
};

constexpr Drawing kDrawings[] = {
    {kFileNew, "file-new"},
    {kFileOpen, "file-open"},
    {kFileSave, "file-save"},
    {kEditCut, "edit-cut"},
    {kEditCopy, "edit-copy"},
    {kEditPaste, "edit-paste"},
    {kFilePrint, "file-print"},
    {kAppAbout, "help-about"},
    {kContextHelp, "help-contextual"},
    // The texture page window.
    {kImportRegions, "texture-import"},
    {kCopyOutsideToNew, "texture-outside-new"},
    {kCopyOutsideToExisting, "texture-outside-existing"},
    {kZoomIn, "zoom-in"},
    {kZoomOut, "zoom-out"},
    {kResizePage, "texture-resize"},
    {kSelectUnusedColour, "texture-unused-colour"},
    {kClearSpace, "texture-clear"},
    {kSpacing0, "spacing-0"},
    {kSpacing1, "spacing-1"},
    {kSpacing2, "spacing-2"},
    {kSpacing3, "spacing-3"},
    {kTileBestFit, "tile-best-fit"},
    {kTileTightest, "tile-tightest"},
    {kTileByArea, "tile-by-area"},
    {kTileByHeightThenWidth, "tile-height-width"},
    {kTileByWidthThenHeight, "tile-width-height"},
    {kTileByCircumference, "tile-circumference"},
    // The layout page window.
    {kSelectAndMove, "layout-select"},
    {kMoveHorizontal, "layout-move-horizontal"},
    {kMoveVertical, "layout-move-vertical"},
    {kSelectByGroup, "layout-select-group"},
    {kMagnifyArea, "layout-magnify-area"},
    {kMagnify, "layout-magnify"},
    {kReduce, "layout-reduce"},
    {kInsertObject, "layout-insert-object"},
    {kClonePiece, "layout-clone"},
    {kUndoResize, "layout-undo-resize"},
    {kEditSelectedPiece, "layout-edit-piece"},
    {kZSort, "layout-z-sort"},
    {kCreateEditGroup, "layout-edit-group"},
    {kCentreHorizontally, "layout-centre-horizontally"},
    {kCentreVertically, "layout-centre-vertically"},
    {kAlignLeft, "layout-align-left"},
    {kAlignHorizontalCentre, "layout-align-centre"},
    {kAlignRight, "layout-align-right"},
    {kAlignTop, "layout-align-top"},
    {kAlignVerticalCentre, "layout-align-middle"},
    {kAlignBottom, "layout-align-bottom"},
    {kSpaceEvenlyAcross, "layout-space-across"},
    {kSpaceEvenlyDown, "layout-space-down"},
    {kSameWidth, "layout-same-width"},
    {kSameHeight, "layout-same-height"},
    {kSameSize, "layout-same-size"},
    {kSnapCentres, "layout-snap-centres"},
};

const char* DrawingOf(int command) {
    for (const Drawing& drawing : kDrawings) {
        if (drawing.command == command) return drawing.file;
    }
    return nullptr;
}

QByteArray LoadDrawing(const char* file) {
    QFile svg(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(file)));
    if (!svg.open(QIODevice::ReadOnly)) return {};
    return svg.readAll();
}

QColor Mix(const QColor& one, const QColor& other, double share_of_other) {
    const auto mix = [share_of_other](int a, int b) {
        return static_cast<int>(a + (b - a) * share_of_other + 0.5);
    };
    return QColor(mix(one.red(), other.red()), mix(one.green(), other.green()),
                  mix(one.blue(), other.blue()));
}

// The two colours of a drawing shown in `mode`.
struct Inks {
    QColor ink;
    QColor accent;
};

Inks InksFor(const QPalette& palette, QIcon::Mode mode) {
    switch (mode) {
        case QIcon::Disabled:
            return {palette.color(QPalette::Disabled, QPalette::WindowText),
                    Mix(kAccent, palette.color(QPalette::Disabled, QPalette::Window), 0.55)};
        case QIcon::Selected: {
            // On the highlight the accent would vanish: it becomes a shade between the two.
            const QColor text = palette.color(QPalette::Active, QPalette::HighlightedText);
            return {text, Mix(text, palette.color(QPalette::Active, QPalette::Highlight), 0.45)};
        }
        case QIcon::Normal:
        case QIcon::Active:
            break;
    }
    return {palette.color(QPalette::Active, QPalette::WindowText), kAccent};
}

// Draws `svg` with the placeholder colours replaced by `inks`, `size` pixels square; the
// ink's own transparency, which a palette may give it, applies to the whole drawing.
QImage Render(const QByteArray& svg, int size, const Inks& inks) {
    QByteArray text = svg;
    // Through markers, so that an ink that happens to be the accent's colour stays the ink.
    text.replace(kInkInFiles, QByteArrayLiteral("@ink@"));
    text.replace(kAccentInFiles, QByteArrayLiteral("@accent@"));
    text.replace(QByteArrayLiteral("@ink@"), inks.ink.name(QColor::HexRgb).toLatin1());
    text.replace(QByteArrayLiteral("@accent@"), inks.accent.name(QColor::HexRgb).toLatin1());
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(text);
    if (!renderer.isValid()) return image;
    QPainter painter(&image);
    painter.setOpacity(inks.ink.alphaF());
    renderer.render(&painter, QRectF(0, 0, size, size));
    return image;
}

// A square of `colour` framed in the ink, in the bottom right corner of `image`: seven
// sixteenths of its side, where the drawings of colour commands leave room for it.
void PaintSwatch(QImage& image, const QColor& colour, const QColor& ink) {
    const int size = image.width();
    const int side = size * 7 / 16;
    const int frame = std::max(1, size / 16);
    const QRect outer(size - side, size - side, side, side);
    QPainter painter(&image);
    painter.fillRect(outer, ink);
    painter.fillRect(outer.adjusted(frame, frame, -frame, -frame), colour);
}

// An icon of `svg` at every size in each of `modes`, in `state`, added to `icon`.
void AddDrawing(QIcon& icon, const QByteArray& svg, const QPalette& palette,
                std::initializer_list<QIcon::Mode> modes, QIcon::State state = QIcon::Off,
                const QColor& swatch = QColor()) {
    for (const QIcon::Mode mode : modes) {
        const Inks inks = InksFor(palette, mode);
        for (const int size : kSizes) {
            QImage image = Render(svg, size, inks);
            if (swatch.isValid()) PaintSwatch(image, swatch, inks.ink);
            icon.addPixmap(QPixmap::fromImage(image), mode, state);
        }
    }
}

QIcon DrawnCommandIcon(int command, const QPalette& palette, const QColor& swatch) {
    const char* file = DrawingOf(command);
    if (file == nullptr) return {};
    QIcon icon;
    AddDrawing(icon, LoadDrawing(file), palette, {QIcon::Normal, QIcon::Disabled}, QIcon::Off,
               swatch);
    return icon;
}

QIcon TreeIcon(const char* closed, const char* open) {
    const QPalette palette = QGuiApplication::palette();
    const std::initializer_list<QIcon::Mode> kModes = {QIcon::Normal, QIcon::Disabled,
                                                       QIcon::Selected};
    QIcon icon;
    AddDrawing(icon, LoadDrawing(closed), palette, kModes, QIcon::Off);
    if (open != nullptr) AddDrawing(icon, LoadDrawing(open), palette, kModes, QIcon::On);
    return icon;
}

class PaletteWatcher : public QObject {
public:
    PaletteWatcher(QWidget& widget, std::function<void()> reink)
        : QObject(&widget), reink_(std::move(reink)) {
        widget.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange) reink_();
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> reink_;
};

}  // namespace

QIcon CommandIcon(int command, const QPalette& palette) {
    return DrawnCommandIcon(command, palette, QColor());
}

QIcon CommandIcon(int command) {
    return CommandIcon(command, QGuiApplication::palette());
}

QIcon ThemedCommandIcon(const char* theme_name, int command, const QPalette& palette) {
    QIcon drawn = CommandIcon(command, palette);
    if (theme_name == nullptr) return drawn;
    return QIcon::fromTheme(QString::fromLatin1(theme_name), drawn);
}

QIcon SwatchIcon(int command, const QColor& colour, const QPalette& palette) {
    return DrawnCommandIcon(command, palette, colour);
}

QIcon TreeFolderIcon() {
    return TreeIcon("tree-folder", "tree-folder-open");
}

QIcon TreeLeafIcon() {
    return TreeIcon("tree-record", nullptr);
}

QIcon ApplicationIcon() {
    QSvgRenderer renderer(QStringLiteral(":/icons/quillet.svg"));
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter, QRectF(0, 0, size, size));
        painter.end();
        icon.addPixmap(QPixmap::fromImage(image));
    }
    return icon;
}

void FollowPalette(QWidget& widget, std::function<void()> reink) {
    new PaletteWatcher(widget, std::move(reink));
}
