#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "Host/HostError.h"
#include "Host/Scene/SceneFile.h"

// A small list of parameters, one of each kind, and a scene that is right, for tests that bend one thing at a time.

namespace TessavoyHost::SceneFixture {

struct FakeParameters {
    std::vector<RegisteredParameter> parameters = std::vector<RegisteredParameter>(1);  // the input layer
    std::vector<std::string> ids;

    // The disk id is 100 plus the index.
    PF_ParamDef& add(const std::string& id, PF_ParamType type, PF_ParamFlags flags = 0, const std::string& label = {}) {
        RegisteredParameter parameter;
        parameter.definition.param_type = type;
        parameter.definition.flags = flags;
        parameter.definition.uu.id = 100 + static_cast<A_long>(parameters.size());
        std::strncpy(parameter.definition.name, label.c_str(), sizeof parameter.definition.name - 1);
        parameters.push_back(parameter);
        ids.push_back(id);
        return parameters.back().definition;
    }

    void slider(const std::string& id, int least, int most, int start) {
        auto& slider = add(id, PF_Param_SLIDER).u.sd;
        slider.valid_min = slider.slider_min = least;
        slider.valid_max = slider.slider_max = most;
        slider.value = slider.dephault = start;
    }

    void floatSlider(const std::string& id, float least, float most, float start) {
        auto& slider = add(id, PF_Param_FLOAT_SLIDER).u.fs_d;
        slider.valid_min = slider.slider_min = least;
        slider.valid_max = slider.slider_max = most;
        slider.value = slider.dephault = start;
        slider.precision = 1;
    }

    void popup(const std::string& id, const std::string& texts, int declared, PF_ParamFlags flags) {
        auto& popup = add(id, PF_Param_POPUP, flags).u.pd;
        popup.num_choices = static_cast<A_short>(declared);
        popup.value = popup.dephault = 1;
        parameters.back().popupTexts = texts;
    }

    void arbitrary(const std::string& id, std::uint64_t reference) {
        add(id, PF_Param_ARBITRARY_DATA).u.arb_d.refconPV = std::bit_cast<void*>(reference);
    }
};

inline constexpr PF_ParamFlags fixedInTime = PF_ParamFlag_CANNOT_TIME_VARY | PF_ParamFlag_CANNOT_INTERP;

inline const FakeParameters& fakeParameters() {
    static const FakeParameters fake = [] {
        FakeParameters list;
        list.slider("CountX", 0, 100000, 10);                                      // index 1
        list.slider("FramesLimit", 1, 10000, 0);                                   // 2
        list.add("InstanceSize.GroupBegin", PF_Param_GROUP_START);                 // 3
        list.floatSlider("InstanceSize.Value", -10000, 10000, 10);                 // 4
        list.add("InstanceSize.GroupEnd", PF_Param_GROUP_END);                     // 5
        list.add("Rotation", PF_Param_ANGLE);                                      // 6
        list.add("HexGrid", PF_Param_CHECKBOX, fixedInTime);                       // 7
        list.popup("ShapeType", "Complex Polygon|Textured Quad", 2, fixedInTime);  // 8
        list.popup("Source", "Red|Green", 5, 0);                                   // 9
        list.add("InstanceColor", PF_Param_COLOR);                                 // 10
        list.add("CenterPos", PF_Param_POINT);                                     // 11
        list.floatSlider("Float.Custom1", -100, 100, 0);                           // 12
        list.floatSlider("Float.Custom2", -100, 100, 0);                           // 13
        list.add("Layer.Custom1", PF_Param_LAYER);                                 // 14
        list.add("Path.Custom1", PF_Param_PATH);                                   // 15
        list.add("Point3D.Custom1", PF_Param_POINT_3D);                            // 16
        list.arbitrary("Gradient.Custom1", 0x544E454944415247);                    // 17
        list.arbitrary("Ramp.Custom1", 0x52414D50000000);                          // 18
        list.add("Noise.Custom6.GroupBegin", PF_Param_GROUP_START);                // 19
        list.floatSlider("Noise.Custom6.Multiplier", -100, 100, 0);                // 20
        list.add("Noise.Custom6.GroupEnd", PF_Param_GROUP_END);                    // 21
        list.arbitrary("Script", 0x534352495054);                                  // 22
        list.add("ShowZBounds", PF_Param_BUTTON, PF_ParamFlag_SUPERVISE);          // 23
        return list;
    }();
    return fake;
}

inline const ParameterTable& fakeTable() {
    static const ParameterTable table(fakeParameters().parameters, fakeParameters().ids);
    return table;
}

inline nlohmann::json rightScene() {
    return nlohmann::json::parse(R"({
        "tessavoy": 1,
        "composition": { "width": 640, "height": 360, "frameRate": 25, "duration": 4.0 },
        "layers": [
            { "name": "Plate", "image": "plate.png" },
            { "name": "Red", "solid": [255, 0, 0, 255], "width": 32, "height": 16 }
        ],
        "masks": [ { "name": "Orbit", "vertices": [ { "point": [200, 100], "in": [0, -40], "out": [0, 40] } ] } ],
        "effect": { "layer": "Plate", "parameters": {} }
    })");
}

// Every file is 64 x 48, but for those with "missing" in the name, which aren't there.
inline ImageAccess fakeImages() {
    const auto probe = [](const std::filesystem::path& file) {
        if (file.string().find("missing") != std::string::npos) {
            throw HostError(ExitStatus::Scene, file.string() + ": there is no such file");
        }
        return PixelSize{64, 48};
    };
    const auto read = [](const std::filesystem::path&) {
        Image image;
        image.width = 64;
        image.height = 48;
        image.samples.resize(64 * 48 * 4);
        return image;
    };
    return {probe, read};
}

inline Project readText(const std::string& text, const SceneOverrides& overrides = {},
                        const std::filesystem::path& file = "scene.json") {
    return readScene({file, text}, fakeTable(), overrides, fakeImages());
}

inline Project readJson(const nlohmann::json& scene, const SceneOverrides& overrides = {}) {
    return readText(scene.dump(), overrides);
}

inline std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

using Lines = std::vector<std::string>;

// The lines that a scene is refused with; "accepted" when it isn't.
inline Lines textRefusal(const std::string& text, const SceneOverrides& overrides = {},
                         ExitStatus status = ExitStatus::Scene) {
    try {
        readText(text, overrides);
    } catch (const HostError& error) {
        return error.status() == status ? linesOf(error.what()) : Lines{"another status", error.what()};
    }
    return {"accepted"};
}

inline Lines refusal(const nlohmann::json& scene) {
    return textRefusal(scene.dump());
}

// The lines that a scene is refused with when the parameter gets the value.
inline Lines parameterRefusal(const std::string& id, const nlohmann::json& value) {
    auto scene = rightScene();
    scene["effect"]["parameters"][id] = value;
    return refusal(scene);
}

// The constant value of a parameter of the right scene when it gets the value.
inline ParameterValue parameterValue(const std::string& id, const nlohmann::json& value) {
    auto scene = rightScene();
    scene["effect"]["parameters"][id] = value;
    return readJson(scene).parameters.at(*fakeTable().index(id)).keys.at(0).value;
}

}  // namespace TessavoyHost::SceneFixture
