// The small dialogs of one or two fields: Create Layout, Edit Dimensions, New Folder and
// Identify the region.
#pragma once

#include <cstdint>
#include <string>

#include "framework/Form.h"

// The size of a layout page, as two numbers that OK holds to the sizes a game menu may have.
class DimensionsForm : public framework::Form {
public:
    enum Id : int { kWidth = 1013, kHeight = 1014 };

    static constexpr int kMinimumWidth = 640;
    static constexpr int kMaximumWidth = 1920;
    static constexpr int kMinimumHeight = 448;
    static constexpr int kMaximumHeight = 1440;

    // What OK let through.
    int32_t Width() const;
    int32_t Height() const;

protected:
    explicit DimensionsForm(std::string caption) : Form(std::move(caption)) {}
    // Adds the two numbers from `row` down, showing `width` and `height`.
    void AddDimensions(int row, int32_t width, int32_t height);
};

// "Create Layout": a page's name and size, starting from the project's page size.
class CreateLayoutForm : public DimensionsForm {
public:
    enum Id : int { kName = 1012 };

    CreateLayoutForm(int32_t width, int32_t height);

    const std::string& Name() const { return Text(kName); }

private:
    bool OnOk(framework::UserInterface& ui) override;
};

// "Edit Dimensions": the project's page size; OK checks the limits only.
class EditDimensionsForm : public DimensionsForm {
public:
    EditDimensionsForm(int32_t width, int32_t height);
};

// "New Folder": a name that the caller checks.
class NewFolderForm : public framework::Form {
public:
    enum Id : int { kName = 1043 };

    NewFolderForm();

    const std::string& Name() const { return Text(kName); }
};

// "Identify the region": a region's name, which must be an identifier.
class IdentifyRegionForm : public framework::Form {
public:
    enum Id : int { kName = 1013 };

    explicit IdentifyRegionForm(const std::string& name = {});

    const std::string& Name() const { return Text(kName); }

private:
    bool OnOk(framework::UserInterface& ui) override;
};
