#include "Source/Parameter/ParameterReader.h"

#include "Source/Parameter/Catalogue.h"

#include <cstring>

namespace Tessavoy {

namespace {

constexpr double fixedPointUnit = 1.0 / 65536.0;

PF_ParamDef zeroRecord() {
    PF_ParamDef record;
    std::memset(&record, 0, sizeof record);
    return record;
}

}  // namespace

ParameterReader::ParameterReader(LayerSlots& slots) : mSlots(slots) {
    constexpr std::size_t longestId = 64;
    mId.reserve(longestId);
}

ParameterReader::Prefix::Prefix(ParameterReader& reader, std::string_view name)
    : mReader(reader), mOuterLength(reader.mId.size()) {
    mReader.mId.append(name).push_back('.');
}

ParameterReader::Prefix::~Prefix() {
    mReader.mId.resize(mOuterLength);
}

const PF_ParamDefUnion* ParameterReader::checkOut(std::string_view name) {
    PF_ParamDef& record = mSlots.checkouts.emplace_back(zeroRecord());
    if (mError != PF_Err_NONE) {
        return nullptr;
    }
    const Prefix prefix(*this, name);
    const std::string_view id = std::string_view(mId).substr(0, mId.size() - 1);
    const PF_InData& in = *mSlots.inData;
    mError = in.inter.checkout_param(in.effect_ref, parameterIndex(id), in.current_time, in.time_step, in.time_scale,
                                     &record);
    return mError == PF_Err_NONE ? &record.u : nullptr;
}

void ParameterReader::number(std::string_view name, double& field) {
    if (const auto* value = checkOut(name)) {
        field = value->fs_d.value;
    }
}

void ParameterReader::whole(std::string_view name, A_long& field) {
    if (const auto* value = checkOut(name)) {
        field = value->sd.value;
    }
}

void ParameterReader::choice(std::string_view name, A_long& field) {
    if (const auto* value = checkOut(name)) {
        field = value->pd.value;
    }
}

void ParameterReader::flag(std::string_view name, bool& field) {
    constexpr A_long firstByte = 0xff;
    if (const auto* value = checkOut(name)) {
        field = (value->bd.value & firstByte) != 0;
    }
}

void ParameterReader::angle(std::string_view name, double& field) {
    if (const auto* value = checkOut(name)) {
        field = value->ad.value * fixedPointUnit;
    }
}

void ParameterReader::point(std::string_view name, double& x, double& y) {
    if (const auto* value = checkOut(name)) {
        x = value->td.x_value * fixedPointUnit;
        y = value->td.y_value * fixedPointUnit;
    }
}

void ParameterReader::point3D(std::string_view name, double& x, double& y, double& z) {
    if (const auto* value = checkOut(name)) {
        x = value->point3d_d.x_value;
        y = value->point3d_d.y_value;
        z = value->point3d_d.z_value;
    }
}

void ParameterReader::handle(std::string_view name, PF_Handle& field) {
    if (const auto* value = checkOut(name)) {
        field = value->arb_d.value;
    }
}

void ParameterReader::path(std::string_view name, A_u_long& field) {
    if (const auto* value = checkOut(name)) {
        field = value->path_d.path_id;
    }
}

void ParameterReader::layer(std::string_view name) {
    checkOut(name);
}

template <class Channel>
void ParameterReader::readColor(std::string_view name, std::array<Channel, 4>& rgba) {
    if (const auto* value = checkOut(name)) {
        const auto& color = value->cd.value;
        constexpr Channel full = 255;
        rgba = {color.red / full, color.green / full, color.blue / full, color.alpha / full};
    }
}

void ParameterReader::color(std::string_view name, std::array<float, 4>& rgba) {
    readColor(name, rgba);
}

void ParameterReader::color(std::string_view name, std::array<double, 4>& rgba) {
    readColor(name, rgba);
}

}  // namespace Tessavoy
