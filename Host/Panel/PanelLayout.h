#pragma once

#include <vector>

#include "Host/EffectInstance.h"

namespace TessavoyHost {

// How a user looks at the panel.
struct PanelView {
    int width = 480;        // pixels
    bool opensAll = false;  // every group and control; otherwise those that are registered as open
};

inline constexpr int leastPanelWidth = 240;
inline constexpr int mostPanelWidth = 4096;

// One parameter in the panel. Places are in pixels of the panel; right and bottom are the first column and row outside.
struct PanelRow {
    int parameter = 0;
    bool canTwirl = false;  // a group, or a control that the module draws
    bool isOpen = false;
    PF_Rect twirl{}, title{}, value{};  // side by side
    PF_Rect control{};                  // that the module draws, below; empty for none
};

// Which parameters the panel shows, and where: in order of registration, indented by their groups, without those that
// are hidden and those inside of hidden or closed groups. Made afresh when anything has changed.
class PanelLayout {
public:
    // view.width from leastPanelWidth on.
    PanelLayout(const EffectInstance& instance, const PanelView& view);

    int width() const { return mWidth; }
    int height() const { return mHeight; }
    // Of the effect's name, above the rows.
    PF_Rect caption() const;
    const std::vector<PanelRow>& rows() const { return mRows; }
    // Null where the panel doesn't show the parameter.
    const PanelRow* find(int parameter) const;

private:
    void add(const EffectInstance& instance, int parameter, int depth, bool isOpen);

    const int mWidth;
    int mHeight;
    std::vector<PanelRow> mRows;
};

// Whether the module draws the parameter's control.
bool drawsControl(const EffectHost& host, int parameter);

}  // namespace TessavoyHost
