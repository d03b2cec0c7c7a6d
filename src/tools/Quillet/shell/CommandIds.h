// The command numbers of the program: the vocabulary of menus, toolbars and tests.
#pragma once

namespace commands {

constexpr int kFileNew = 57600;
constexpr int kFileOpen = 57601;
constexpr int kFileClose = 57602;
constexpr int kFileSave = 57603;
constexpr int kFileSaveAs = 57604;
constexpr int kEditCopy = 57634;
constexpr int kEditCut = 57635;
constexpr int kEditPaste = 57637;
constexpr int kEditUndo = 57643;
constexpr int kEditRedo = 57644;
constexpr int kWindowCascade = 57650;
constexpr int kWindowTile = 57651;
constexpr int kAppAbout = 57664;
constexpr int kAppExit = 57665;
constexpr int kViewToolbar = 59392;
constexpr int kViewStatusBar = 59393;

}  // namespace commands
