#include "Source/Parameter/PanelUpdate.h"

#include "HostInterface/Constants.h"
#include "Source/HostAccess/SuiteHandler.h"
#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/PanelStreams.h"
#include "Source/Parameter/PopupValues.h"
#include "Source/Parameter/SlotNaming.h"
#include "Source/Parameter/StringTable.h"

#include <string_view>

namespace Tessavoy {

namespace {

/// What must hold for a parameter to be shown.
enum class ShownWhen {
    Always,
    Camera,            ///< the composition's camera is in use
    Textured,          ///< the shape is a textured quad
    TexturedGrid,      ///< and the texture is a grid of items
    TexturedFrames,    ///< and the texture is not the image split over the cells
    TexturedSequence,  ///< and these frames play as a sequence
    Polygon,           ///< the shape is a polygon
    ZBuffer,           ///< the output is the Z buffer
};

/// A parameter's place in the panel under the present settings.
struct PanelRow {
    std::string_view id;  ///< of a group the parameter that starts it
    ShownWhen shown;
    A_long label = 0;        ///< row of the text table: the label without a camera; 0: it never changes
    A_long cameraLabel = 0;  ///< the label with one
};

using enum ShownWhen;

/// In the order in which the panel is brought up to date.
constexpr PanelRow rows[] = {
    {"CenterZ", Camera},
    {"Rotation3DX", Camera},
    {"Rotation3DY", Camera},
    {"Rotation", Always, 62, 63},
    {"InstanceRotation3DX.GroupBegin", Camera},
    {"InstanceRotation3DY.GroupBegin", Camera},
    {"InstanceRotation.GroupBegin", Always, 75, 76},
    {"ShapeTextureLayerIndex", Textured},
    {"ShapeFramesSplittingMode", Textured},
    {"ShapeXFramesInTexture", TexturedGrid},
    {"ShapeYFramesInTexture", TexturedGrid},
    {"ShapeLimitFramesCount", TexturedGrid},
    {"ShapeFramesAnimationSpeed", TexturedSequence},
    {"ShapeFramesAnimationSequence", TexturedFrames},
    {"ShapeFrameIndex.GroupBegin", TexturedFrames},
    {"ShapeDrawMode", Polygon},
    {"ShapeBillboard", Camera},
    {"ShapeAngleOffset", Polygon},
    {"ShapeFeatherScreenSpace", Polygon},
    {"ShapeFeatherPixels", Polygon},
    {"ShapeFeatherPercents", Polygon},
    {"ShapeStrokeWidth.GroupBegin", Polygon},
    {"ShapeRaysCount.GroupBegin", Polygon},
    {"ShapeShelfLength.GroupBegin", Polygon},
    {"ShapeLinkMiddleOffset.GroupBegin", Polygon},
    {"ShapeRoundingRadius.GroupBegin", Polygon},
    {"ShapeRoundingDots", Polygon},
    {"OutputZDepthGroupBegin", ZBuffer},
    {"SortByZ", Camera},
};

/// The parameters that decide what is shown.
struct Settings {
    explicit Settings(PF_ParamDef* params[])
        : camera(params[parameterIndex("UseCompCamera")]->u.bd.value != 0),
          shape(params[parameterIndex("ShapeType")]->u.pd.value),
          splitting(params[parameterIndex("ShapeFramesSplittingMode")]->u.pd.value),
          sequence(params[parameterIndex("ShapeFramesAnimationSequence")]->u.bd.value != 0),
          output(params[parameterIndex("OutputType")]->u.pd.value) {}

    bool camera;
    A_long shape;
    A_long splitting;
    bool sequence;
    A_long output;
};

bool isShown(ShownWhen condition, const Settings& settings) {
    const bool textured = settings.shape == PopupValues::TexturedQuad;
    const bool frames = textured && settings.splitting != PopupValues::SplitImage;
    switch (condition) {
        case Always:
            return true;
        case Camera:
            return settings.camera;
        case Textured:
            return textured;
        case TexturedGrid:
            return textured && settings.splitting == PopupValues::GridOfItems;
        case TexturedFrames:
            return frames;
        case TexturedSequence:
            return frames && settings.sequence;
        case Polygon:
            return settings.shape == PopupValues::ComplexPolygon;
        case ZBuffer:
            return settings.output == PopupValues::ZBuffer;
    }
    return false;
}

bool updateRow(PF_InData* inData, SuiteHandler& suites, const PanelRow& row, const Settings& settings) {
    bool changed = setParamVisible(inData, suites, row.id, isShown(row.shown, settings));
    if (row.label != 0) {
        const A_char* label = GetStringPtr(settings.camera ? row.cameraLabel : row.label);
        changed |= setParamLabel(inData, suites, parameterIndex(row.id), label);
    }
    return changed;
}

}  // namespace

PF_Err UpdateParamsUi(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[]) {
    if (!hasStreams(inData)) {
        return PF_Err_NONE;
    }
    SuiteHandler suites(inData->pica_basicP);
    const Settings settings(params);
    bool changed = false;
    // Feather and stroke are shown by the shape alone, which widens what a change of their own switches hides.
    for (const PanelRow& row : rows) {
        changed |= updateRow(inData, suites, row, settings);
    }
    changed |= updateSlots(inData, suites, params);
    if (changed) {
        outData->out_flags |= PF_OutFlag_FORCE_RERENDER;
    }
    return PF_Err_NONE;
}

}  // namespace Tessavoy
