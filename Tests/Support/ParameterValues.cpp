#include "Tests/Support/ParameterValues.h"

#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/ParameterDefinition.h"
#include "Source/Parameter/ParameterTree.h"

#include <cstring>

namespace Tessavoy {

namespace {

PF_ParamDef recordOf(const Declaration& declaration) {
    PF_ParamDef record;
    std::memset(&record, 0, sizeof record);
    writeDefinition(declaration, record);
    return record;
}

const Declaration& declarationOf(std::string_view id) {
    return parameterTree()[static_cast<std::size_t>(parameterIndex(id) - 1)].declaration;
}

/// A number that stands for a pointer; nothing looks behind it.
PF_Handle handleNumber(A_long index) {
    return reinterpret_cast<PF_Handle>(static_cast<std::intptr_t>(index) * 64);
}

/// The checkboxes' values differ in bytes above the first, which don't count.
A_long checkboxValue(A_long index) {
    return index * 256 + index % 2;
}

void setValue(PF_ParamDef& record, A_long index) {
    PF_ParamDefUnion& u = record.u;
    const auto byte = static_cast<A_u_char>(index % 200);
    switch (record.param_type) {
        case PF_Param_FLOAT_SLIDER:
            u.fs_d.value = index + 0.25;
            break;
        case PF_Param_SLIDER:
            u.sd.value = index;
            break;
        case PF_Param_POPUP:
            u.pd.value = index;
            break;
        case PF_Param_CHECKBOX:
            u.bd.value = checkboxValue(index);
            break;
        case PF_Param_ANGLE:
            u.ad.value = index * 65536 + 16384;
            break;
        case PF_Param_POINT:
            u.td.x_value = index * 65536 + 32768;
            u.td.y_value = -index * 65536;
            break;
        case PF_Param_POINT_3D:
            u.point3d_d.x_value = index + 0.125;
            u.point3d_d.y_value = index + 0.25;
            u.point3d_d.z_value = index + 0.5;
            break;
        case PF_Param_COLOR:
            u.cd.value = {static_cast<A_u_char>(byte + 3), byte, static_cast<A_u_char>(byte + 1),
                          static_cast<A_u_char>(byte + 2)};
            break;
        case PF_Param_PATH:
            u.path_d.path_id = static_cast<PF_PathID>(index);
            break;
        case PF_Param_ARBITRARY_DATA:
        case PF_Param_BUTTON:
            u.arb_d.value = handleNumber(index);
            break;
        default:
            break;
    }
}

}  // namespace

PF_ParamDef& valueOf(FakeParameterHost& host, std::string_view id) {
    return host.values.at(parameterIndex(id));
}

void setDistinctValues(FakeParameterHost& host) {
    A_long index = 0;
    for (const ParameterDescription& parameter : parameterTree()) {
        PF_ParamDef record = recordOf(parameter.declaration);
        setValue(record, ++index);
        host.values[index] = record;
    }
}

std::vector<double> distinctFields(std::string_view id) {
    const A_long index = parameterIndex(id);
    const double red = index % 200;
    switch (recordOf(declarationOf(id)).param_type) {
        case PF_Param_FLOAT_SLIDER:
            return {index + 0.25};
        case PF_Param_CHECKBOX:
            return {static_cast<double>(index % 2)};
        case PF_Param_ANGLE:
            return {index + 0.25};
        case PF_Param_POINT:
            return {index + 0.5, -static_cast<double>(index)};
        case PF_Param_POINT_3D:
            return {index + 0.125, index + 0.25, index + 0.5};
        case PF_Param_COLOR:
            return {red / 255, (red + 1) / 255, (red + 2) / 255, (red + 3) / 255};
        case PF_Param_ARBITRARY_DATA:
        case PF_Param_BUTTON:
            return {index * 64.0};
        case PF_Param_LAYER:
            return {};
        default:
            return {static_cast<double>(index)};
    }
}

}  // namespace Tessavoy
