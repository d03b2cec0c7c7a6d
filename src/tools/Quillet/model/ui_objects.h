// UI objects: reusable pieces of interface art that layout pieces refer to by name. An
// object refers to its art through UI_REGIONs, which hold names and paths only.
//
// Failure style: lookups that find nothing report it and measure as empty rectangles; a
// slider that lost parts treats each missing one as an empty rectangle at 0, 0.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "framework/Archive.h"
#include "qlt_types.h"

class UI_OBJECT;

// One slot of an object's art: a region of a texture page, or a movie.
struct UI_REGION {
    std::string name;    // the slot: "art", "scroll_box", "enabled", "highlighted", ...
    std::string page;    // absolute path of the TPAGE, or of the FMV_PAGE for a movie
    std::string region;  // region name on that page, or the movie's identifier
    // A slot the person left empty (a button state without a picture): it names no region,
    // measures as nothing, and is no missing record to report. (Its page, written and read
    // back as a path, may have become the project's folder.)
    bool IsUnset() const { return region.empty(); }
    friend bool operator==(const UI_REGION&, const UI_REGION&) = default;
};

// Where objects, and the rectangles that slots show, are looked up.
class RecordLookup {
public:
    virtual ~RecordLookup() = default;
    // The region's rectangle on its page, or else the rectangle of the movie whose
    // identifier the slot names; reported ("TPage region not found", "Fmv not found") and
    // empty when missing.
    virtual PageRect RegionRect(const UI_REGION& region) const = 0;
    // The object `name`, the six empty ones first; reported ("Object not found") and null
    // when missing.
    virtual const UI_OBJECT* ObjectNamed(const std::string& name) const = 0;
};

// Makes `source` the place of lookups while it lives. While a file is read, objects are
// measured against the records read so far, not those of the project that is open.
class ScopedRecordLookup {
public:
    explicit ScopedRecordLookup(const RecordLookup& source);
    ~ScopedRecordLookup();
    ScopedRecordLookup(const ScopedRecordLookup&) = delete;
    ScopedRecordLookup& operator=(const ScopedRecordLookup&) = delete;

private:
    const RecordLookup* previous_;
};

// The rectangle a slot shows: from the scoped source, else from the open project; empty
// without either.
PageRect RegionRectOf(const UI_REGION& region);
// The object `name` the same way; null when there is none.
const UI_OBJECT* ObjectNamed(const std::string& name);

class UI_OBJECT {
public:
    explicit UI_OBJECT(std::string object_name) : name_(std::move(object_name)) {}
    virtual ~UI_OBJECT() = default;
    UI_OBJECT(const UI_OBJECT&) = delete;
    UI_OBJECT& operator=(const UI_OBJECT&) = delete;

    // Back to position 0, 0 with both stretch flags set; a slider lays out its parts.
    virtual void Arrange();
    virtual void SetPosition(Point point) { position_ = point; }
    virtual void SetStretch(bool x, bool y);
    // Storing writes the record; loading goes through the builders instead.
    virtual void Serialize(framework::Archive& archive);
    virtual void Write(framework::Archive& archive) const;
    const std::string& Name() const { return name_; }
    virtual const std::string& TypeTag() const = 0;
    bool HitTest(int32_t x, int32_t y) const;
    virtual PageRect NaturalBounds() const = 0;
    Point Position() const { return position_; }
    // Where `part` is drawn in a piece of rectangle `piece`: the piece itself, except for a
    // slider's parts.
    virtual PageRect RegionRect(const UI_OBJECT& part, const PageRect& piece) const;
    bool IsEmptyObject() const { return name_ == EmptyName(); }
    virtual const std::string& EmptyName() const = 0;
    static const PageRect& EmptyRect();
    // Appends the first region, if any.
    void DrawRegions(std::vector<UI_REGION>& regions) const;
    virtual std::vector<UI_REGION>* Regions() { return nullptr; }
    virtual const std::vector<UI_REGION>* Regions() const { return nullptr; }
    virtual std::vector<std::unique_ptr<UI_OBJECT>>* SubObjects() { return nullptr; }
    virtual const std::vector<std::unique_ptr<UI_OBJECT>>* SubObjects() const { return nullptr; }
    virtual PageRect MinimumSize() const { return {0, 0, 4, 4}; }
    // Free travel of a slider's thumb at a scale; 0 for every other axis and kind.
    virtual int32_t RangeX(float /*scale*/) const { return 0; }
    virtual int32_t RangeY(float /*scale*/) const { return 0; }

    bool StretchX() const { return stretch_x_; }
    bool StretchY() const { return stretch_y_; }

protected:
    friend class UI_OBJECT_BUILDER;
    // Reads what stands between the <type> line and </UI object>; `line` starts empty and
    // ends as the close line.
    virtual void ReadContent(framework::Archive& archive, std::string& line) = 0;
    virtual void WriteContent(framework::Archive& archive) const = 0;

private:
    std::string name_;
    Point position_;
    bool stretch_x_ = true;
    bool stretch_y_ = true;
};

// The kinds whose content is a list of regions.
class UI_REGION_OBJECT : public UI_OBJECT {
public:
    using UI_OBJECT::UI_OBJECT;
    std::vector<UI_REGION>* Regions() override { return &regions; }
    const std::vector<UI_REGION>* Regions() const override { return &regions; }
    std::vector<UI_REGION> regions;
};

// One picture; only its first region counts.
class UI_ART : public UI_REGION_OBJECT {
public:
    explicit UI_ART(std::string object_name = {}) : UI_REGION_OBJECT(std::move(object_name)) {}
    const std::string& TypeTag() const override;
    const std::string& EmptyName() const override;
    PageRect NaturalBounds() const override;

protected:
    void ReadContent(framework::Archive& archive, std::string& line) override;
    void WriteContent(framework::Archive& archive) const override;
};

// A scroll box: one region, measured where it lies on its page.
class UI_SCROLL_BOX : public UI_REGION_OBJECT {
public:
    explicit UI_SCROLL_BOX(std::string object_name = {})
        : UI_REGION_OBJECT(std::move(object_name)) {}
    const std::string& TypeTag() const override;
    const std::string& EmptyName() const override;
    PageRect NaturalBounds() const override;

protected:
    void ReadContent(framework::Archive& archive, std::string& line) override;
    void WriteContent(framework::Archive& archive) const override;
};

// A button: one region per state, any number in a file.
class UI_BUTTON : public UI_REGION_OBJECT {
public:
    using UI_REGION_OBJECT::UI_REGION_OBJECT;
    PageRect NaturalBounds() const override;

protected:
    void ReadContent(framework::Archive& archive, std::string& line) override;
    void WriteContent(framework::Archive& archive) const override;
};

class UI_PUSH_BUTTON : public UI_BUTTON {
public:
    explicit UI_PUSH_BUTTON(std::string object_name = {}) : UI_BUTTON(std::move(object_name)) {}
    const std::string& TypeTag() const override;
    const std::string& EmptyName() const override;
};

class UI_TOGGLE_BUTTON : public UI_BUTTON {
public:
    explicit UI_TOGGLE_BUTTON(std::string object_name = {}) : UI_BUTTON(std::move(object_name)) {}
    const std::string& TypeTag() const override;
    const std::string& EmptyName() const override;
};

// A slider: four parts, art, thumb, decrease and increase, laid along one axis.
class UI_SLIDER : public UI_OBJECT {
public:
    struct Parts {
        UI_OBJECT* art = nullptr;
        UI_OBJECT* thumb = nullptr;
        UI_OBJECT* decrease = nullptr;
        UI_OBJECT* increase = nullptr;
    };

    UI_SLIDER(std::string object_name, bool vertical);
    void Arrange() override;
    PageRect NaturalBounds() const override;
    PageRect RegionRect(const UI_OBJECT& part, const PageRect& piece) const override;
    std::vector<std::unique_ptr<UI_OBJECT>>* SubObjects() override { return &parts; }
    const std::vector<std::unique_ptr<UI_OBJECT>>* SubObjects() const override { return &parts; }
    PageRect MinimumSize() const override { return NaturalBounds(); }
    int32_t RangeX(float scale) const override;
    int32_t RangeY(float scale) const override;
    // The parts in their held order; a missing one is null.
    Parts GetParts() const;

    std::vector<std::unique_ptr<UI_OBJECT>> parts;  // "Art", "Thumb", "Decrease", "Increase"

protected:
    void ReadContent(framework::Archive& archive, std::string& line) override;
    void WriteContent(framework::Archive& archive) const override;

private:
    int32_t Range(float scale) const;
    bool vertical_;
};

class UI_V_SLIDER : public UI_SLIDER {
public:
    explicit UI_V_SLIDER(std::string object_name = {}) : UI_SLIDER(std::move(object_name), true) {}
    const std::string& TypeTag() const override;
    const std::string& EmptyName() const override;
};

class UI_H_SLIDER : public UI_SLIDER {
public:
    explicit UI_H_SLIDER(std::string object_name = {}) : UI_SLIDER(std::move(object_name), false) {}
    const std::string& TypeTag() const override;
    const std::string& EmptyName() const override;
};

// Makes the object of one type tag from its file record.
class UI_OBJECT_BUILDER {
public:
    virtual ~UI_OBJECT_BUILDER() = default;
    // Reads the record behind the <type> line; `line` ends as the close line.
    virtual std::unique_ptr<UI_OBJECT> Build(framework::Archive& archive, std::string& line,
                                             const std::string& name) const = 0;

protected:
    static void ReadContentOf(UI_OBJECT& object, framework::Archive& archive, std::string& line) {
        object.ReadContent(archive, line);
    }
};

// The builders by type tag, the six kinds registered in table order on first use.
const std::map<std::string, const UI_OBJECT_BUILDER*>& Builders();
// Adds a builder; a tag that has one already throws BAD_BUILDER.
void RegisterBuilder(const std::string& tag, const UI_OBJECT_BUILDER& builder);

// Reads a whole <UI object> record, the first line in hand, through the builders.
std::unique_ptr<UI_OBJECT> ReadUiObject(framework::Archive& archive, std::string& line);

// The six built-in empty objects, in their search order: a lookup by name finds them
// before the project's own.
const std::vector<const UI_OBJECT*>& EmptyObjects();
