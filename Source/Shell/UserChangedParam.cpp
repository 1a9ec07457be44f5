#include "Source/Shell/UserChangedParam.h"

#include "HostInterface/Constants.h"
#include "Source/Editors/ZBoundsDialog.h"
#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/PanelStreams.h"
#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/Parameter/PopupValues.h"
#include "Source/Parameter/SlotNaming.h"
#include "Source/Shell/DrawGrid.h"

#include <initializer_list>
#include <string_view>

namespace Tessavoy {

namespace {

struct Visibility {
    std::string_view id;
    bool hidden;
};

/// Up to the host's first error.
PF_Err setVisibilities(PF_InData* inData, std::initializer_list<Visibility> visibilities) {
    if (!hasStreams(inData)) {
        return PF_Err_NONE;
    }
    SuiteHandler suites(inData->pica_basicP);
    PF_Err error = PF_Err_NONE;
    for (const Visibility& visibility : visibilities) {
        if (error == PF_Err_NONE) {
            error = setParamHidden(inData, suites, visibility.id, visibility.hidden);
        }
    }
    return error;
}

/// The snapshot goes without giving its checkouts back, which the host does at the end of the command.
PF_Err showZBounds(PF_InData* inData, PF_OutData* outData) {
    ParameterSnapshot snapshot(inData);
    if (const PF_Err error = snapshot.read(); error != PF_Err_NONE) {
        return error;
    }
    GridDrawing drawing;
    drawing.width = inData->width;
    drawing.height = inData->height;
    ZBounds bounds = {0, 0};
    MeasureZBounds(inData, outData, snapshot, drawing, bounds);
    return ShowZBoundsDialog(inData, bounds.minimum, bounds.maximum);
}

}  // namespace

PF_Err UserChangedParam(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                        const PF_UserChangedParamExtra* extra) {
    const PF_ParamIndex changed = extra->param_index;
    const PF_ParamIndex drawMode = parameterIndex("ShapeDrawMode");
    const PF_ParamIndex uniformScaling = parameterIndex("ShapeUniformScaling");
    const PF_ParamIndex screenSpace = parameterIndex("ShapeFeatherScreenSpace");
    const PF_ParamIndex zBounds = parameterIndex("ShowZBounds");
    if (changed == drawMode) {
        const bool stroked = params[changed]->u.pd.value == PopupValues::Stroke;
        return setVisibilities(inData, {{"ShapeStrokeWidth.GroupBegin", !stroked}});
    }
    if (changed == uniformScaling) {
        const bool uniform = params[changed]->u.bd.value != 0;
        return setVisibilities(inData, {{"ShapeScaleY.GroupBegin", uniform}});
    }
    if (changed == screenSpace) {
        const bool inPixels = params[changed]->u.bd.value != 0;
        return setVisibilities(inData, {{"ShapeFeatherPixels", !inPixels}, {"ShapeFeatherPercents", inPixels}});
    }
    if (changed == zBounds) {
        return showZBounds(inData, outData);
    }
    renameSlotOf(inData, outData, changed);
    return PF_Err_NONE;
}

}  // namespace Tessavoy
