#include "DemoProject.h"

#include <filesystem>
#include <iostream>
#include <memory>

#include "QltCommands.h"
#include "core_atomic_file.h"
#include "core_tga.h"
#include "model/ProjectFile.h"
#include "model/RecordIndex.h"
#include "model/qlt_paths.h"

namespace {

namespace fs = std::filesystem;

struct Destroy {
    void operator()(Core::Image* image) const { Core::destroy_image(image); }
};
using OwnedImage = std::unique_ptr<Core::Image, Destroy>;

// A region of a demo page and how it is painted: a gradient from `top` to `bottom`, or for
// icons a disc of `top`.
struct Art {
    std::string name;
    PageRect rect;
    Core::Colour top;
    Core::Colour bottom;
};

uint8_t Mix(uint8_t a, uint8_t b, int32_t at, int32_t of) {
    return static_cast<uint8_t>(a + (int32_t{b} - a) * at / std::max(of - 1, 1));
}

// A panel: a vertical gradient from `top` to `bottom`, a dark rim and a light inner line.
void Panel(Core::Image& page, const PageRect& r, Core::Colour top, Core::Colour bottom) {
    const int32_t height = r.bottom - r.top;
    for (int32_t y = r.top; y < r.bottom; ++y) {
        for (int32_t x = r.left; x < r.right; ++x) {
            const int32_t row = y - r.top;
            Core::Colour c{Mix(top.blue, bottom.blue, row, height),
                           Mix(top.green, bottom.green, row, height),
                           Mix(top.red, bottom.red, row, height), 255};
            const bool rim = x == r.left || y == r.top || x == r.right - 1 || y == r.bottom - 1;
            const bool shine = y == r.top + 1 && x > r.left && x < r.right - 1;
            if (rim) c = {30, 30, 40, 255};
            if (shine) c = {250, 250, 250, 255};
            page.set_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y), c);
        }
    }
}

// A round icon: a filled disc with a soft edge, on transparent ground.
void Disc(Core::Image& page, const PageRect& r, Core::Colour colour) {
    const int32_t cx2 = r.left + r.right - 1;
    const int32_t cy2 = r.top + r.bottom - 1;
    const int32_t radius = (r.right - r.left) - 2;
    for (int32_t y = r.top; y < r.bottom; ++y) {
        for (int32_t x = r.left; x < r.right; ++x) {
            const int32_t dx = 2 * x - cx2;
            const int32_t dy = 2 * y - cy2;
            const int32_t distance = dx * dx + dy * dy;
            const int32_t limit = radius * radius;
            if (distance > limit) continue;
            Core::Colour c = colour;
            c.alpha = distance > limit * 3 / 4 ? 128 : 255;
            page.set_pixel(static_cast<uint32_t>(x), static_cast<uint32_t>(y), c);
        }
    }
}

const std::vector<Art> kMenuArt = {
    {"button_up", {0, 0, 96, 32}, {200, 140, 60, 255}, {120, 70, 20, 255}},
    {"button_over", {0, 32, 96, 64}, {240, 190, 100, 255}, {160, 100, 40, 255}},
    {"button_down", {0, 64, 96, 96}, {110, 60, 20, 255}, {190, 130, 60, 255}},
    {"check_off", {96, 0, 120, 24}, {90, 90, 90, 255}, {50, 50, 50, 255}},
    {"check_over", {96, 24, 120, 48}, {140, 140, 140, 255}, {80, 80, 80, 255}},
    {"check_on", {96, 48, 120, 72}, {60, 180, 60, 255}, {30, 100, 30, 255}},
    {"check_set", {96, 72, 120, 96}, {100, 220, 100, 255}, {50, 140, 50, 255}},
    {"panel", {0, 96, 128, 224}, {70, 50, 40, 230}, {40, 25, 20, 230}},
    {"slider_bar", {128, 0, 140, 128}, {60, 60, 60, 255}, {90, 90, 90, 255}},
    {"slider_thumb", {140, 0, 156, 24}, {220, 220, 220, 255}, {150, 150, 150, 255}},
    {"arrow_up", {140, 24, 156, 40}, {180, 180, 180, 255}, {120, 120, 120, 255}},
    {"arrow_down", {140, 40, 156, 56}, {120, 120, 120, 255}, {180, 180, 180, 255}},
    {"list_frame", {160, 0, 256, 160}, {50, 40, 35, 255}, {30, 25, 20, 255}},
};

const std::vector<Art> kIconArt = {
    {"icon_sound", {0, 0, 32, 32}, {40, 200, 240, 255}, {}},
    {"icon_video", {32, 0, 64, 32}, {240, 120, 40, 255}, {}},
    {"icon_quit", {0, 32, 32, 64}, {40, 40, 220, 255}, {}},
};

bool DrawMenuPage(const std::string& path) {
    OwnedImage page(Core::create_image(256, 256, Core::PIXEL_FORMAT_8888));
    for (const Art& art : kMenuArt)
        Panel(*page, art.rect, art.top, art.bottom);
    return Core::save_tga(*page, path.c_str(), Core::PIXEL_FORMAT_8888);
}

bool DrawIconPage(const std::string& path) {
    OwnedImage page(Core::create_image(64, 64, Core::PIXEL_FORMAT_8888));
    for (const Art& art : kIconArt)
        Disc(*page, art.rect, art.top);
    return Core::save_tga(*page, path.c_str(), Core::PIXEL_FORMAT_8888);
}

UI_REGION Slot(const std::string& slot, const std::string& page, const std::string& region) {
    return {slot, page, region};
}

template <typename Kind>
std::unique_ptr<Kind> WithRegions(const std::string& name, std::vector<UI_REGION> regions) {
    auto object = std::make_unique<Kind>(name);
    object->regions = std::move(regions);
    return object;
}

std::unique_ptr<UI_OBJECT> Slider(const std::string& name, const std::string& page) {
    auto slider = std::make_unique<UI_V_SLIDER>(name);
    slider->parts.push_back(WithRegions<UI_ART>("Art", {Slot("art", page, "slider_bar")}));
    slider->parts.push_back(
        WithRegions<UI_PUSH_BUTTON>("Thumb", {Slot("enabled", page, "slider_thumb")}));
    slider->parts.push_back(
        WithRegions<UI_PUSH_BUTTON>("Decrease", {Slot("enabled", page, "arrow_up")}));
    slider->parts.push_back(
        WithRegions<UI_PUSH_BUTTON>("Increase", {Slot("enabled", page, "arrow_down")}));
    return slider;
}

UI_PIECE MakePiece(const std::string& name, const std::string& type, const std::string& object,
                   int32_t x, int32_t y) {
    UI_PIECE piece;
    piece.name = name;
    piece.piece_identifier = type;
    piece.object_id = object;
    piece.x = x;
    piece.y = y;
    return piece;
}

TPAGE MakePage(const std::string& path, const std::string& folder, const std::vector<Art>& art) {
    TPAGE page;
    page.path = path;
    page.folder = folder;
    for (const Art& each : art)
        page.regions.emplace_back(each.name, each.rect, nullptr);
    return page;
}

// Every kind of object, and three menus whose pieces use every attribute.
ProjectRecords BuildRecords(const fs::path& folder) {
    const std::string menu = (folder / "pages" / "menu.tga").string();
    const std::string icons = (folder / "pages" / "icons.tga").string();
    ProjectRecords records;
    records.texture_pages.push_back(MakePage(icons, "icons", kIconArt));
    records.texture_pages.push_back(MakePage(menu, "menus", kMenuArt));
    records.font_pages.push_back({"body", (folder / "fonts" / "body.bgf").string(), -12});
    records.font_pages.push_back({"title", (folder / "fonts" / "title.ugf").string(), 24});
    FMV_PAGE intro((folder / "movies" / "intro.mpg").string());
    intro.folder = "movies";
    records.fmv_pages.push_back(intro);

    auto& objects = records.ui_objects;
    objects.push_back(WithRegions<UI_ART>("panel", {Slot("art", menu, "panel")}));
    objects.push_back(
        WithRegions<UI_ART>("intro_movie", {Slot("art", intro.path, intro.identifier)}));
    objects.push_back(WithRegions<UI_PUSH_BUTTON>(
        "menu_button",
        {Slot("enabled", menu, "button_up"), Slot("highlighted", menu, "button_over"),
         Slot("selected", menu, "button_down")}));
    objects.push_back(WithRegions<UI_TOGGLE_BUTTON>(
        "check_box", {Slot("enabled", menu, "check_off"), Slot("highlighted", menu, "check_over"),
                      Slot("selected", menu, "check_on"), Slot("checked", menu, "check_set")}));
    objects.push_back(WithRegions<UI_ART>("sound_icon", {Slot("art", icons, "icon_sound")}));
    objects.push_back(
        WithRegions<UI_SCROLL_BOX>("save_list", {Slot("scroll_box", menu, "list_frame")}));
    objects.push_back(Slider("list_slider", menu));
    // A slider lays its parts out by their regions' sizes: the page's regions must be known.
    const RecordIndex index{&records};
    const ScopedRecordLookup scope(index);
    for (auto& object : objects)
        object->Arrange();

    QLT_FILE& qlt = records.qlt_file;
    qlt.common_texture_paths = {"menus"};
    qlt.common_fmv_paths = {"movies"};
    qlt.piece_types_fname = (folder / "data" / "piece_types.txt").string();
    qlt.piece_texts_fname = (folder / "data" / "piece_texts.txt").string();

    LPAGE main_menu{0, "MainMenu", qlt.layout_width, qlt.layout_height, {}, {}, {"movies"}};
    main_menu.pieces.push_back(MakePiece("background", "backdrop", "panel", 20, 20));
    main_menu.pieces.back().scale_x = 6.0f;
    main_menu.pieces.back().scale_y = 4.5f;
    main_menu.pieces.back().locked = true;
    UI_PIECE start = MakePiece("start", "menu_option", "menu_button", 352, 200);
    start.attributes = {"TXT_START", 1, "title", "TIP_START", "Options", 0, "main", "", "", "", ""};
    start.edit_group_id = "buttons";
    main_menu.pieces.push_back(start);
    UI_PIECE quit = MakePiece("quit", "menu_option", "menu_button", 352, 260);
    quit.attributes = {"TXT_QUIT", 1, "title", "TIP_QUIT", "Credits", 0, "main", "", "", "", ""};
    quit.attributes.hot_spot = (folder / "pages" / "hotspot.tga").string();
    quit.edit_group_id = "buttons";
    main_menu.pieces.push_back(quit);
    main_menu.pieces.push_back(MakePiece("intro", "movie", "intro_movie", 600, 40));
    main_menu.pieces.back().object_data = "loop";

    LPAGE options{0, "Options", qlt.layout_width, qlt.layout_height, {}, {"icons"}, {}};
    UI_PIECE sound = MakePiece("sound", "setting", "check_box", 300, 150);
    sound.attributes.text_id = "TXT_SOUND";
    sound.attributes.font_id = "body";
    sound.attributes.align = 0;
    sound.attributes.group_id = "audio";
    sound.attributes.delta = 5;
    options.pieces.push_back(sound);
    options.pieces.push_back(MakePiece("sound_icon", "icon", "sound_icon", 260, 146));
    UI_PIECE saves = MakePiece("saves", "save_list", "save_list", 300, 220);
    saves.attributes.vt_slider = "saves_slider";
    saves.attributes.scroll_menu_id = "MainMenu";
    saves.attributes.text_id = "TXT_SAVES";
    saves.attributes.font_id = "body";
    saves.attributes.align = 2;
    options.pieces.push_back(saves);
    UI_PIECE bar = MakePiece("saves_slider", "scroller", "list_slider", 400, 220);
    bar.scale_y = 1.25f;
    bar.attributes.hz_slider = "";
    bar.attributes.tool_tip_id = "TIP_SCROLL";
    options.pieces.push_back(bar);
    UI_PIECE back = MakePiece("back", "menu_option", "menu_button", 352, 420);
    back.attributes = {"TXT_BACK", 1, "title", "", "MainMenu", 0, "", "", "", "", ""};
    options.pieces.push_back(back);

    LPAGE credits{0, "Credits", qlt.layout_width, qlt.layout_height, {}, {}, {}};
    credits.pieces.push_back(MakePiece("frame", "backdrop", "panel", 200, 100));
    credits.pieces.back().scale_x = 3.0f;
    credits.pieces.back().scale_y = 3.0f;
    UI_PIECE done = MakePiece("done", "menu_option", "menu_button", 352, 500);
    done.attributes = {"TXT_BACK", 1, "title", "", "MainMenu", 0, "", "", "", "", ""};
    credits.pieces.push_back(done);

    qlt.layouts = {main_menu, options, credits};
    return records;
}

bool WriteText(const fs::path& path, const std::string& text) {
    std::string reason;
    return Core::write_file_atomically(path.string(), text, reason);
}

bool WriteProjectFile(const ProjectRecords& records, const fs::path& path) {
    const RecordIndex index{&records};
    const ScopedRecordLookup scope(index);
    SetProjectBaseDir(path.string());
    framework::Archive archive = framework::Archive::ForStoring(path.string());
    WriteProject(archive, records);
    return WriteText(path, archive.Bytes());
}

}  // namespace

int RunDemo(const std::vector<std::string>& arguments) {
    if (arguments.size() != 1) {
        std::cerr << "usage: quillet-cli demo DIR\n";
        return kExitUsage;
    }
    const fs::path folder = fs::absolute(arguments[0]);
    std::error_code error;
    for (const char* sub : {"pages", "data", "fonts", "movies"})
        fs::create_directories(folder / sub, error);
    OwnedImage hot_spot(Core::create_image(96, 32, Core::PIXEL_FORMAT_GREY));
    Core::fill_pixels(hot_spot->lock_write(nullptr), 8, 4, 80, 24, {255, 255, 255, 255});
    const bool written =
        !error && DrawMenuPage((folder / "pages" / "menu.tga").string()) &&
        DrawIconPage((folder / "pages" / "icons.tga").string()) &&
        Core::save_tga(*hot_spot, (folder / "pages" / "hotspot.tga").string().c_str(),
                       Core::PIXEL_FORMAT_GREY) &&
        WriteText(
            folder / "data" / "piece_types.txt",
            "type,name,arguments\r\nart,backdrop,default\r\nart,icon,default\r\nart,movie,loop\r\n"
            "push_btn,menu_option,default\r\ntoggle_btn,setting,default\r\nslider,scroller,"
            "default\r\n"
            "scroll_box,save_list,rows=8\r\n") &&
        WriteText(folder / "data" / "piece_texts.txt",
                  "TXT_BACK\r\nTXT_QUIT\r\nTXT_SAVES\r\nTXT_SOUND\r\nTXT_START\r\nTIP_QUIT\r\nTIP_"
                  "SCROLL\r\n"
                  "TIP_START\r\n") &&
        WriteProjectFile(BuildRecords(folder), folder / "demo.qlt");
    if (!written) {
        std::cerr << "Cannot write the demo project into " << folder.string() << '\n';
        return kExitWrite;
    }
    std::cout << (folder / "demo.qlt").string() << '\n';
    return kExitOk;
}
