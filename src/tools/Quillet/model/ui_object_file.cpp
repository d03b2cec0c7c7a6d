// The file records of UI objects and the builders that read them by type tag.
#include "qlt_errors.h"
#include "qlt_paths.h"
#include "qlt_syntax.h"
#include "ui_objects.h"

namespace {

constexpr size_t kObjectTagLength = 11;  // "<UI object>"
constexpr size_t kRegionTagLength = 11;  // "<UI region>"

UI_REGION ReadUiRegion(Archive& archive, const std::string& first_line) {
    UI_REGION region;
    region.name = TextAfter(first_line, kRegionTagLength);
    region.page = ReadTaggedValue<NOT_A_UI_REGION>(archive, "<page>", "</page>");
    MakeAbsolutePath(region.page);
    region.region = ReadTaggedValue<NOT_A_UI_REGION>(archive, "<region>", "</region>");
    std::string line;
    ReadTrimmedLine(archive, line);
    if (line != "</UI region>") throw BAD_TAG();
    return region;
}

void WriteUiRegion(Archive& archive, const UI_REGION& region) {
    std::string page = region.page;
    MakeRelativePath(page);
    WriteOpenLine(archive, "<UI region>", region.name);
    WriteTagLine(archive, "<page>", page, "</page>");
    WriteTagLine(archive, "<region>", region.region, "</region>");
    WriteCloseLine(archive, "</UI region>");
}

// One region in a catch: a broken region is dropped and reading goes on.
void ReadRegionInto(Archive& archive, const std::string& line, std::vector<UI_REGION>& regions) {
    try {
        regions.push_back(ReadUiRegion(archive, line));
    } catch (const NOT_A_UI_REGION&) {
    } catch (const BAD_TAG&) {
    }
}

// Art and scroll boxes: one region, then the close line, else `BadKind`.
template <typename BadKind>
void ReadSingleRegion(Archive& archive, std::string& line, std::vector<UI_REGION>& regions) {
    ReadTrimmedLine(archive, line);
    ReadRegionInto(archive, line, regions);
    ReadTrimmedLine(archive, line);
    if (line != "</UI object>") throw BadKind();
}

// Only the first region goes to the file; one that is gone leaves its slot, empty.
void WriteFirstRegion(Archive& archive, const std::vector<UI_REGION>& regions, const char* slot) {
    WriteUiRegion(archive, regions.empty() ? UI_REGION{slot, {}, {}} : regions.front());
}

template <typename Kind>
class KindBuilder : public UI_OBJECT_BUILDER {
public:
    std::unique_ptr<UI_OBJECT> Build(Archive& archive, std::string& line,
                                     const std::string& name) const override {
        auto object = std::make_unique<Kind>(name);
        ReadContentOf(*object, archive, line);
        object->Arrange();
        return object;
    }
};

std::map<std::string, const UI_OBJECT_BUILDER*>& BuilderMap() {
    static std::map<std::string, const UI_OBJECT_BUILDER*> builders;
    return builders;
}

}  // namespace

void UI_OBJECT::Write(Archive& archive) const {
    WriteOpenLine(archive, "<UI object>", Name());
    WriteTagLine(archive, "<type>", TypeTag(), "</type>");
    WriteContent(archive);
    WriteCloseLine(archive, "</UI object>");
}

void UI_ART::ReadContent(Archive& archive, std::string& line) {
    ReadSingleRegion<BAD_ART>(archive, line, regions);
}

void UI_ART::WriteContent(Archive& archive) const {
    WriteFirstRegion(archive, regions, "art");
}

void UI_SCROLL_BOX::ReadContent(Archive& archive, std::string& line) {
    ReadSingleRegion<BAD_SCROLL_BOX>(archive, line, regions);
}

void UI_SCROLL_BOX::WriteContent(Archive& archive) const {
    WriteFirstRegion(archive, regions, "scroll_box");
}

void UI_BUTTON::ReadContent(Archive& archive, std::string& line) {
    ReadTrimmedLine(archive, line);
    while (line != "</UI object>") {
        ReadRegionInto(archive, line, regions);
        ReadAwaitedLine(archive, line);
    }
}

void UI_BUTTON::WriteContent(Archive& archive) const {
    for (const UI_REGION& region : regions)
        WriteUiRegion(archive, region);
}

void UI_SLIDER::ReadContent(Archive& archive, std::string& line) {
    ReadTrimmedLine(archive, line);
    while (line != "</UI object>") {
        try {
            parts.push_back(ReadUiObject(archive, line));
        } catch (const NOT_A_UI_OBJECT&) {
        } catch (const BAD_TAG&) {
        }
        ReadAwaitedLine(archive, line);
    }
}

void UI_SLIDER::WriteContent(Archive& archive) const {
    for (const auto& part : parts) {
        if (part != nullptr) part->Write(archive);
    }
}

const std::map<std::string, const UI_OBJECT_BUILDER*>& Builders() {
    static const bool registered = [] {
        static const KindBuilder<UI_ART> art;
        static const KindBuilder<UI_PUSH_BUTTON> push;
        static const KindBuilder<UI_TOGGLE_BUTTON> toggle;
        static const KindBuilder<UI_SCROLL_BOX> scroll;
        static const KindBuilder<UI_V_SLIDER> vertical;
        static const KindBuilder<UI_H_SLIDER> horizontal;
        RegisterBuilder("art", art);
        RegisterBuilder("push_button", push);
        RegisterBuilder("toggle_button", toggle);
        RegisterBuilder("scroll_box", scroll);
        RegisterBuilder("UI_V_Slider", vertical);
        RegisterBuilder("UI_H_Slider", horizontal);
        return true;
    }();
    (void)registered;
    return BuilderMap();
}

void RegisterBuilder(const std::string& tag, const UI_OBJECT_BUILDER& builder) {
    if (!BuilderMap().emplace(tag, &builder).second) throw BAD_BUILDER();
}

std::unique_ptr<UI_OBJECT> ReadUiObject(Archive& archive, std::string& line) {
    const std::string name = TextAfter(line, kObjectTagLength);
    const std::string tag = ReadTaggedValue<NOT_A_UI_OBJECT>(archive, "<type>", "</type>");
    const auto& builders = Builders();
    const auto builder = builders.find(tag);
    if (builder == builders.end()) throw NO_BUILDER();
    return builder->second->Build(archive, line, name);
}
