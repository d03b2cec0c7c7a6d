// The command numbers of the program: the vocabulary of menus, toolbars and tests.
#pragma once

namespace commands {

constexpr int kFileNew = 57600;
constexpr int kFileOpen = 57601;
constexpr int kFileClose = 57602;
constexpr int kFileSave = 57603;
constexpr int kFileSaveAs = 57604;
constexpr int kFilePrint = 57607;
constexpr int kEditCopy = 57634;
constexpr int kEditCut = 57635;
constexpr int kEditPaste = 57637;
constexpr int kEditUndo = 57643;
constexpr int kEditRedo = 57644;
constexpr int kWindowNew = 57648;
constexpr int kWindowArrange = 57649;
constexpr int kWindowCascade = 57650;
constexpr int kWindowTile = 57651;
constexpr int kAppAbout = 57664;
constexpr int kAppExit = 57665;
constexpr int kHelpTopics = 57667;
constexpr int kContextHelp = 57669;
constexpr int kHelp = 57670;
constexpr int kNextPane = 57680;
constexpr int kPreviousPane = 57681;
// The texture page window.
constexpr int kZoomIn = 32778;
constexpr int kZoomOut = 32779;
constexpr int kImportRegions = 32799;
constexpr int kClearSpace = 32800;
constexpr int kTileByHeightThenWidth = 32804;
constexpr int kTileByArea = 32805;
constexpr int kTileByWidthThenHeight = 32806;
constexpr int kTileByCircumference = 32807;
constexpr int kTileBestFit = 32808;
constexpr int kTileTightest = 32809;
constexpr int kSpacing1 = 32811;
constexpr int kSpacing2 = 32812;
constexpr int kSpacing3 = 32813;
constexpr int kSpacing0 = 32814;
constexpr int kCopyOutsideToNew = 32819;
constexpr int kCopyOutsideToExisting = 32820;
constexpr int kSelectUnusedColour = 32892;
constexpr int kResizePage = 32897;
// The layout page window.
constexpr int kMagnify = 32782;
constexpr int kReduce = 32783;
constexpr int kInsertObject = 32837;
constexpr int kZSort = 32841;
constexpr int kResetScaling = 32855;
constexpr int kEditPiece = 32856;
constexpr int kUndoResize = 32857;
constexpr int kEditSelectedPiece = 32858;
constexpr int kSelectAndMove = 32862;
constexpr int kSelectByGroup = 32863;
constexpr int kCreateEditGroup = 32864;
constexpr int kMagnifyArea = 32870;
constexpr int kAlignLeft = 32877;
constexpr int kAlignHorizontalCentre = 32878;
constexpr int kAlignRight = 32879;
constexpr int kAlignTop = 32881;
constexpr int kAlignVerticalCentre = 32882;
constexpr int kAlignBottom = 32883;
constexpr int kSpaceEvenlyAcross = 32884;
constexpr int kSameWidth = 32885;
constexpr int kSameHeight = 32886;
constexpr int kSameSize = 32887;
constexpr int kSpaceEvenlyDown = 32889;
constexpr int kCentreHorizontally = 32890;
constexpr int kCentreVertically = 32891;
constexpr int kMoveHorizontal = 32893;
constexpr int kMoveVertical = 32894;
constexpr int kClonePiece = 32895;
constexpr int kSnapCentres = 32902;
constexpr int kCopyAttributes = 32904;
constexpr int kPasteAttributes = 32905;

// The project window and the project-level commands of the File menu.
constexpr int kAddTexture = 32771;
constexpr int kCreateTexture = 32772;
constexpr int kAddLayoutKey = 32773;  // Ctrl+L: no handler
constexpr int kCreateLayout = 32774;
constexpr int kImportImageKey = 32776;  // Ctrl+I: no handler
constexpr int kAddArt = 32824;
constexpr int kAddButton = 32825;
constexpr int kAddSlider = 32826;
constexpr int kAddArtOfKind = 32829;
constexpr int kAddButtonOfKind = 32830;
constexpr int kAddSliderOfKind = 32831;
constexpr int kEditObject = 32833;
constexpr int kCreateLayoutFromLayouts = 32834;
constexpr int kCreateTextureFromRoot = 32835;
constexpr int kAddExistingTexture = 32836;
constexpr int kNewTextureFolder = 32840;
constexpr int kEditDimensions = 32843;
constexpr int kAddCommonPath = 32845;
constexpr int kEditDimensionsOfItem = 32848;
constexpr int kAddCommonPathOfItem = 32850;
constexpr int kAddPagePath = 32852;
constexpr int kAddFmv = 32859;
constexpr int kNewFmvFolder = 32861;
constexpr int kAddFont = 32867;
constexpr int kBrowsePieceTypes = 32868;
constexpr int kBrowsePieceTexts = 32869;
constexpr int kAddScrollBox = 32871;
constexpr int kAddScrollBoxOfKind = 32872;
constexpr int kCreateLayoutFromMenus = 32874;
constexpr int kViewMenu = 32875;
constexpr int kCopyMenu = 32876;
constexpr int kReloadPieceFiles = 32896;
constexpr int kCreateTextureInFolder = 32899;
constexpr int kViewTexturePage = 32900;
constexpr int kAddFmvToFolder = 32901;
constexpr int kReloadAndRefresh = 32906;

constexpr int kViewToolbar = 59392;
constexpr int kViewStatusBar = 59393;

}  // namespace commands
