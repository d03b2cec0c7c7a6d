// The records of a project. Records refer to one another by name or path, never by
// pointer, so lists may be re-sorted or reloaded freely.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core_images.h"

// Owns a Core image and destroys it with destroy_image.
struct ImageDeleter {
    void operator()(Core::Image* image) const { Core::destroy_image(image); }
};
using ImagePtr = std::unique_ptr<Core::Image, ImageDeleter>;

struct Point {
    int32_t x = 0;
    int32_t y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

// The size of a page in pixels.
struct PageSize {
    int32_t width = 0;
    int32_t height = 0;
    friend bool operator==(const PageSize&, const PageSize&) = default;
};

// A rectangle in page pixels; right and bottom are exclusive.
struct PageRect {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
    friend bool operator==(const PageRect&, const PageRect&) = default;
};

// A named rectangle of a texture page. It owns its pictures: copies clone them.
struct TREGION {
    std::string name;
    PageRect rect;
    ImagePtr image;          // the pixels while the page is edited; null when read from a file
    ImagePtr display_image;  // `image` in 32-bit form for drawing; null without `image`

    TREGION() = default;
    // Clones `picture` (which may be null).
    TREGION(std::string region_name, const PageRect& region_rect, Core::Image* picture);
    TREGION(const TREGION& other);
    TREGION& operator=(const TREGION& other);
    TREGION(TREGION&&) = default;
    TREGION& operator=(TREGION&&) = default;

    // Takes a clone of `picture` and prepares its display copy.
    void SetImage(Core::Image* picture);
};

// A texture page: a .tga of the game known by its absolute path, and its regions.
struct TPAGE {
    std::string path;
    std::string folder;            // workspace folder; empty directly under "Textures"
    std::vector<TREGION> regions;  // in insertion order, never sorted

    // Appends a region; a region of that name goes first. False when one was replaced.
    bool AddRegion(const PageRect& rect, const std::string& name, Core::Image* picture);
    bool RemoveRegion(const std::string& name);
    // The region `name`; reports "TPage region not found" and answers an empty record when
    // there is none.
    TREGION& FindRegion(const std::string& name);
    // Moves the region's top-left corner to (x, y); its size stays.
    void MoveRegion(const std::string& name, int32_t x, int32_t y);
};

// A font file of the game and the id that pieces use for it.
struct FONT_PAGE {
    std::string identifier;
    std::string path;  // absolute, .bgf or .ugf
    int32_t lf_height = 0;
};

// A movie file of the game, with the rectangle it takes where a region would stand.
struct FMV_PAGE {
    std::string identifier;
    std::string path;    // absolute; the record's identity
    std::string folder;  // workspace folder; empty directly under "FMVs"
    PageRect rect;

    FMV_PAGE() = default;
    // A new record: 0, 0, 64, 64, no folder, and the identifier from the file name.
    explicit FMV_PAGE(const std::string& movie_path);
};

// The identifier of a movie: the text behind the last '/' or '', full stops made
// underscores ("/m/intro.mpg" gives "intro_mpg").
std::string FmvIdentifier(const std::string& path);

// The data a piece carries for the game. Empty texts and 0 are "not set".
struct PIECE_ATTRIBUTES {
    std::string text_id;
    int32_t align = 0;  // 0 left, 1 centre, 2 right
    std::string font_id;
    std::string tool_tip_id;
    std::string menu_id;  // the next menu of a push button
    int32_t delta = 0;
    std::string group_id;
    std::string hot_spot;  // absolute path
    std::string hz_slider;
    std::string vt_slider;
    std::string scroll_menu_id;  // the menu of a scroll box: the second <menu_id>
    friend bool operator==(const PIECE_ATTRIBUTES&, const PIECE_ATTRIBUTES&) = default;
};

// A placed use of a UI object on a layout page. It has no stored size: its rectangle comes
// from its object and its scales.
struct UI_PIECE {
    std::string name;
    std::string piece_identifier;
    std::string object_id;
    std::string object_data;
    int32_t x = 0;
    int32_t y = 0;
    float scale_x = 1.0f;
    float scale_y = 1.0f;
    PIECE_ATTRIBUTES attributes;
    std::string edit_group_id;
    bool locked = false;
};

// One game menu: its pieces in z order, first drawn first.
struct LPAGE {
    uint32_t reserved = 0;  // 0 in every page; nothing reads it
    std::string name;
    int32_t width = 0;  // copies of the project's layout size
    int32_t height = 0;
    std::vector<UI_PIECE> pieces;
    std::vector<std::string> texture_paths;
    std::vector<std::string> fmv_paths;

    // The piece `piece_name`; reports "Piece not found" and answers an empty record when absent.
    UI_PIECE& FindPiece(const std::string& piece_name);
    int PieceIndex(const std::string& piece_name) const;  // -1 when absent
    bool PieceExists(const std::string& piece_name) const { return PieceIndex(piece_name) >= 0; }
    void AddPiece(const UI_PIECE& piece) { pieces.push_back(piece); }
    void MovePiece(const std::string& piece_name, int32_t x, int32_t y);
    void ReplacePiece(const std::string& piece_name, const UI_PIECE& piece);
    // Multiplies the scales, reporting factors that are not above 0, and keeps the piece
    // at least as large as its object's minimum size.
    void RescalePiece(const std::string& piece_name, float fx, float fy);
    void RemovePiece(const std::string& piece_name);
    void ClearText(const std::string& piece_name);
    void AddTexturePath(const std::string& folder) { texture_paths.push_back(folder); }
    void AddFmvPath(const std::string& folder) { fmv_paths.push_back(folder); }
    void RemoveTexturePath(const std::string& folder);
    void RemoveFmvPath(const std::string& folder);
    // Takes name, size, pieces and both path lists of `other`.
    void AssignFrom(const LPAGE& other);
};

// A kind of piece, from the piece types file.
struct PIECE_TYPE {
    std::string name;       // what a piece's piece_identifier holds
    std::string arguments;  // the file's third column, kept as it is
    bool in_use = false;    // a piece of the project uses it
};

// The project's <layout> section: page size, piece files, common paths and layouts.
struct QLT_FILE {
    int32_t layout_width = 800;
    int32_t layout_height = 600;
    std::string piece_types_fname;  // absolute; empty while none is loaded
    std::vector<PIECE_TYPE> art_types;
    std::vector<PIECE_TYPE> push_button_types;
    std::vector<PIECE_TYPE> toggle_button_types;
    std::vector<PIECE_TYPE> slider_types;
    std::vector<PIECE_TYPE> scroll_box_types;
    std::string piece_texts_fname;  // absolute; empty while none is loaded
    std::vector<std::string> piece_texts;
    std::vector<std::string> common_texture_paths;
    std::vector<std::string> common_fmv_paths;
    std::vector<LPAGE> layouts;

    // The page `name`; reports "Layout page not found" and answers an empty record.
    LPAGE& FindPage(const std::string& name);
    // The page `name`, or null; nothing is reported.
    const LPAGE* PageNamed(const std::string& name) const;
    bool PageExists(const std::string& name) const { return PageNamed(name) != nullptr; }
    // The piece of a page, softly: null for a missing page, without a report; a missing
    // piece of a page that exists is reported ("Piece not found") and answers null too.
    UI_PIECE* FindPiece(const std::string& page_name, const std::string& piece_name);
    // The piece's place on its page from 0; -1 when the page or the piece is missing.
    int PieceIndex(const std::string& page_name, const std::string& piece_name) const;
};
