// The program's own pictures, drawn as SVG files in qt/icons/: one for each toolbar command,
// the project tree's folder and record, and the application's icon.
//
// A command's drawing has two colours: the ink, drawn as #000000 in the files and replaced
// by the palette's window text when the picture is made, and one accent that reads on light
// and dark palettes alike. Icons hold pixmaps of 16, 24, 32, 48 and 64 pixels (the larger
// ones serve screens of twice the density) in the Normal and Disabled modes; the Disabled
// ink is the palette's disabled window text.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <functional>

class QWidget;

// The picture of a toolbar command (shell/CommandIds.h) inked for `palette`, or a null icon
// for a command that has none.
QIcon CommandIcon(int command, const QPalette& palette);
// The same, inked for the application's palette.
QIcon CommandIcon(int command);
// The desktop theme's picture `theme_name` when there is such a name and the theme has it,
// else CommandIcon(command, palette).
QIcon ThemedCommandIcon(const char* theme_name, int command, const QPalette& palette);
// CommandIcon(command, palette) with a square of `colour` in its bottom right corner, framed
// in the ink: the picture of a command that shows a colour.
QIcon SwatchIcon(int command, const QColor& colour, const QPalette& palette);

// The project tree's nodes, inked for the application's palette, with a Selected mode inked
// in the highlighted text. A folder is closed in its Off state and open in its On state.
QIcon TreeFolderIcon();
QIcon TreeLeafIcon();

// The application's icon at 16 to 256 pixels; its colours are its own, whatever the palette.
QIcon ApplicationIcon();

// Calls `reink` whenever `widget`'s palette changes, for pictures whose ink must follow it.
// The watcher belongs to `widget`.
void FollowPalette(QWidget& widget, std::function<void()> reink);
