// A layout page window's logic over a real project on disk: a texture page with the art of
// a few objects, one layout page "Main" of 200 x 100 with the pieces a test asks for, and a
// canvas that records what the window was asked to do.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "layout/LayoutPageView.h"
#include "model/piece_geometry.h"
#include "texture/TexturePageFixture.h"

class RecordingLayoutCanvas : public LayoutPageCanvas {
public:
    Point scroll;
    std::vector<PageRect> invalidated;  // window rectangles, in order
    int invalidate_all = 0;
    int rebuilds_posted = 0;
    bool captured = false;
    LayoutCursor cursor = LayoutCursor::Move;
    PageSize frame;
    int activations = 0;
    int menu_answer = 0;       // what the person picks from the next piece menus
    std::vector<Point> menus;  // where each piece menu was shown
    bool z_sort_opens = true;
    std::vector<std::string> z_sort_names;  // the rows of the last z sort dialog
    int z_sort_closes = 0;

    Point ScrollPosition() const override { return scroll; }
    void SetScrollSizes(int32_t, int32_t) override {}
    void ScrollToPosition(Point position) override { scroll = position; }
    void Invalidate(const PageRect& rect) override { invalidated.push_back(rect); }
    void InvalidateAll() override { ++invalidate_all; }
    void PostRebuild() override { ++rebuilds_posted; }
    void SetCapture() override { captured = true; }
    void ReleaseCapture() override { captured = false; }
    void SetCursor(LayoutCursor shape) override { cursor = shape; }
    void PlaceFrame(int32_t width, int32_t height) override { frame = {width, height}; }
    void ActivateFrame() override { ++activations; }
    int TrackPieceMenu(Point device) override {
        menus.push_back(device);
        return menu_answer;
    }
    bool OpenZSortDialog(ZSortList& list) override {
        if (z_sort_opens) z_sort_names = list.Names();
        return z_sort_opens;
    }
    void CloseZSortDialog() override { ++z_sort_closes; }
};

class StatusLine : public framework::StatusPane {
public:
    std::vector<std::string> texts;
    void SetText(const std::string& text) override { texts.push_back(text); }
};

// One piece of the page file, `width` x `height` pixels at (x, y). `parameters` go into the
// piece's parameters after the size, `tail` after its object.
inline std::string PieceText(const std::string& name, const std::string& object, int x, int y,
                             int width, int height, const std::string& parameters = "",
                             const std::string& tail = "") {
    return "<UI piece>" + name + "\n<identifier>piece</identifier>\n<Parameters>\n<x>" +
           std::to_string(x) + "</x>\n<y>" + std::to_string(y) + "</y>\n<width>" +
           std::to_string(width) + "</width>\n<height>" + std::to_string(height) + "</height>\n" +
           parameters + "</Parameters>\n<object_id>" + object + "</object_id>\n" + tail +
           "</UI piece>\n";
}

// A 10 x 10 art piece.
inline std::string Box(const std::string& name, int x, int y, const std::string& parameters = "",
                       const std::string& tail = "") {
    return PieceText(name, "box", x, y, 10, 10, parameters, tail);
}

inline const std::string kLocked = "<locked>true</locked>\n";

inline std::string EditGroup(const std::string& group) {
    return "<edit_group_id>" + group + "</edit_group_id>\n";
}

class LayoutViewFixture : public TexturePageFixture {
protected:
    static constexpr int kPageWidth = 200;
    static constexpr int kPageHeight = 100;

    // Opens "Main" with these pieces in a window of its own, drawn once. The objects: "box"
    // (art, 10 x 10), "wide" (art, 20 x 10) and "vslider" (a vertical slider, 16 x 40).
    CLayoutPageView& OpenView(const std::string& pieces) {
        page_path = WritePage("page.tga", 64, 64);
        Start();
        project = Open("project.qlt", ProjectFile(pieces));
        EXPECT_NE(project, nullptr);
        project->AddView(tree);
        app.SetStatusPane(&status);
        document = dynamic_cast<CLayoutPageDoc*>(project->OpenLayout("Main"));
        EXPECT_NE(document, nullptr);
        view = std::make_unique<CLayoutPageView>(canvas);
        document->AddView(*view);
        view->OnInitialUpdate();
        view->RebuildIfNeeded();
        return *view;
    }

    UI_PIECE& Piece(const std::string& name) { return document->Page()->FindPiece(name); }
    PageRect RectOf(const std::string& name) { return PieceRect(Piece(name)); }
    Point Corner(const std::string& name) { return {Piece(name).x, Piece(name).y}; }
    std::vector<std::string> Selected() const { return view->Selection().pieces; }
    size_t UndoDepth() const { return project->undo_list.size(); }
    const std::string& LastStatus() const { return status.texts.back(); }

    // Press and release at one point, as the window passes them (device pixels).
    void Click(Point at, bool control = false) {
        view->OnLButtonDown(at, control);
        view->OnLButtonUp(at);
    }
    void Drag(Point from, Point to, bool control = false) {
        view->OnLButtonDown(from, control);
        view->OnMouseMove(to);
        view->OnLButtonUp(to);
    }
    // Clicks the first piece, then adds each other with Control held.
    void Select(const std::vector<std::string>& names) {
        for (size_t index = 0; index < names.size(); ++index) {
            const PageRect r = RectOf(names[index]);
            Click({r.left + 3, r.top + 3}, index > 0);
        }
        ASSERT_EQ(Selected(), names);
    }

    RecordingLayoutCanvas canvas;
    StatusLine status;
    CountingView tree;  // the project's own view, which Undo asks for
    CQuilletDoc* project = nullptr;
    CLayoutPageDoc* document = nullptr;
    std::unique_ptr<CLayoutPageView> view;

private:
    static std::string Region(const std::string& name, const PageRect& r) {
        return "<region>" + name + "\n<left>" + std::to_string(r.left) + "</left>\n<top>" +
               std::to_string(r.top) + "</top>\n<right>" + std::to_string(r.right) +
               "</right>\n<bottom>" + std::to_string(r.bottom) + "</bottom>\n</region>\n";
    }
    static std::string Object(const std::string& name, const std::string& type,
                              const std::string& body) {
        return "<UI object>" + name + "\n<type>" + type + "</type>\n" + body + "</UI object>\n";
    }
    static std::string Slot(const std::string& slot, const std::string& region) {
        return "<UI region>" + slot + "\n<page>page.tga</page>\n<region>" + region +
               "</region>\n</UI region>\n";
    }
    static std::string ProjectFile(const std::string& pieces) {
        const std::string slider = Object("Art", "art", Slot("art", "bar")) +
                                   Object("Thumb", "push_button", Slot("enabled", "knob")) +
                                   Object("Decrease", "push_button", Slot("enabled", "dec")) +
                                   Object("Increase", "push_button", Slot("enabled", "inc"));
        return "<version>1.01</version>\n<texture>page.tga\n" + Region("dec", {0, 0, 16, 10}) +
               Region("bar", {16, 0, 24, 60}) + Region("knob", {24, 0, 40, 20}) +
               Region("inc", {40, 0, 56, 10}) + Region("square", {0, 40, 10, 50}) +
               Region("strip", {24, 40, 44, 50}) + "</texture>\n" +
               Object("box", "art", Slot("art", "square")) +
               Object("wide", "art", Slot("art", "strip")) +
               Object("vslider", "UI_V_Slider", slider) +
               "<layout>\n<layout_width>200</layout_width>\n<layout_height>100</layout_height>\n"
               "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n"
               "<lpage>Main\n" +
               pieces + "</lpage>\n</layout>\n";
    }
};
