#include "Tests/Unit/Parameter/ExpectedPanel.h"

namespace Tessavoy {

namespace {

using Lines = std::vector<std::string>;

const std::string wide = "-100000 to 100000, slider -100 to 100, default 0, precision 1";
const std::string narrow = "-10000 to 10000, slider -10 to 10, default 0, precision 2";
const std::string centred = "-10000 to 10000, slider -100 to 100, default 0, precision 1";
const std::string hundred = "-10000 to 10000, slider -100 to 100, default 100, precision 1";
const std::string far = "-50000 to 50000, slider -100 to 100, default 0, precision 1";
const std::string channels = "Red|Green|Blue|Alpha|Lightness|Lightness With Alpha";
const std::string layers = "None|Layer 1|Layer 2|Layer 3|Layer 4|Layer 5|Layer 6|Layer 7|Layer 8|Layer 9|Layer 10";
const std::string groupEnd = "group \"\" end flags 0 ui 0";
const std::string seed = "slider \"Seed\" 0 to 10000, slider 0 to 1000, default 0 flags 0 ui 0";

void append(Lines& lines, const Lines& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

std::string group(const std::string& label, int ui = 0) {
    return "group \"" + label + "\" start flags 32 ui " + std::to_string(ui);
}

std::string number(const std::string& label, const std::string& numbers, const std::string& percent = "") {
    return "float \"" + label + "\" " + numbers + percent + " flags 0 ui 0";
}

std::string layerIndex() {
    return "popup \"Index\" \"" + layers + "\" count 24 default 1 flags 6 ui 0";
}

std::string channel() {
    return "popup \"Source\" \"" + channels + "\" count 6 default 5 flags 6 ui 0";
}

Lines noise(const std::string& label, const std::string& multiplier, bool custom) {
    Lines lines = {group(label), number("Multiplier", multiplier)};
    if (custom) {
        lines.push_back(number("Range Offset", "-100 to 100, slider -100 to 100, default 100, precision 1", " %"));
    }
    append(lines, {seed, number("Scale", hundred),
                   number("Scale X", "-10000 to 10000, slider -10 to 10, default 1, precision 2"),
                   number("Scale Y", "-10000 to 10000, slider -10 to 10, default 1, precision 2"),
                   number("Offset X", narrow), number("Offset Y", narrow), number("Evolution", narrow),
                   number("Loop Evolution", "0 to 10000, slider 0 to 10, default 0, precision 2"), group("Mult Layer"),
                   layerIndex(), channel(), groupEnd, groupEnd});
    return lines;
}

struct Property {
    std::string label;
    std::string value;
    std::string percent = "";
    std::string multiplier = wide;
    int ui = 0;
    std::string flag = "";  ///< the line of the checkbox before Value
};

Lines property(const Property& p) {
    Lines lines = {group(p.label, p.ui)};
    if (!p.flag.empty()) {
        lines.push_back(p.flag);
    }
    append(lines,
           {number("Value", p.value, p.percent),
            number("Noise&Layer Range Offset", "-100 to 100, slider -100 to 100, default 0, precision 1", " %")});
    append(lines, noise("Noise", p.multiplier, false));
    append(lines, {group("Layer"), number("Multiplier", p.multiplier), layerIndex(), channel(), groupEnd, groupEnd});
    return lines;
}

Lines grid() {
    return {
        "checkbox \"Use Comp Camera\" text \"3D Mode\" off flags 70 ui 0",
        "float \"Scale\" 0 to 100000, slider 0 to 100, default 100, precision 1 % flags 0 ui 0",
        "angle \"Grid Rotation X\" 0 flags 0 ui 0",
        "angle \"Grid Rotation Y\" 0 flags 0 ui 0",
        "angle \"Grid Rotation\" 0 flags 0 ui 0",
        "point \"Center Position\" 50 50 flags 0 ui 0",
        "float \"Center Z\" -100000 to 100000, slider -100 to 100, default 0, precision 1 flags 0 ui 0",
        "slider \"Horizontal Count\" 0 to 100000, slider 0 to 100, default 10 flags 0 ui 0",
        "slider \"Vertical Count\" 0 to 100000, slider 0 to 100, default 10 flags 0 ui 0",
        "float \"Grid Width\" 0 to 100000, slider 0 to 100, default 500, precision 1 flags 0 ui 0",
        "float \"Grid Height\" 0 to 100000, slider 0 to 100, default 500, precision 1 flags 0 ui 0",
        "checkbox \"Hexagon Grid\" text \"\" off flags 0 ui 0",
    };
}

Lines instance() {
    Lines lines;
    append(lines, property({"Instance Radius", "-10000 to 10000, slider -100 to 100, default 10, precision 1"}));
    append(lines, property({"Instance Rotation X", centred}));
    append(lines, property({"Instance Rotation Y", centred}));
    append(lines, property({"Instance Rotation", centred}));
    append(lines, property({"Instance X Offset", far}));
    append(lines, property({"Instance Y Offset", far}));
    append(lines, property({"Instance Z Offset", far}));
    append(lines,
           {group("Instance Color"), "color \"Instance Color\" argb 255 255 255 255 flags 0 ui 0", group("Layer"),
            number("Multiplier", narrow), layerIndex(),
            "popup \"Source\" \"Color|Color With Premultiplied Alpha\" count 2 default 1 flags 6 ui 0", groupEnd});
    append(lines, property({"Brightness", centred, " %", narrow}));
    append(lines, property({"Hue", centred, "", narrow}));
    append(lines, property({"Saturation", centred, " %", narrow}));
    append(lines, {groupEnd});
    append(lines, property({"Instance Alpha", "-10000 to 10000, slider -1 to 1, default 1, precision 2", "", narrow, 0,
                            "checkbox \"Crop Value To One\" text \"\" on flags 0 ui 0"}));
    append(lines, {group("Instance Visible"),
                   number("Probability", "0 to 100, slider 0 to 100, default 100, precision 1", " %"), seed, groupEnd});
    return lines;
}

Lines shape() {
    Lines lines = {
        group("Shape"),
        "popup \"Shape Type\" \"Complex Polygon|Textured Quad\" count 2 default 1 flags 70 ui 0",
        "popup \"Shape Texture Layer Index\" \"" + layers + "\" count 24 default 1 flags 6 ui 0",
        "popup \"Shape Frames Splitting Mode\" \"Grid Of Items|Timeline Frames|Split Image\" count 3 default 1 flags "
        "70 ui 0",
        "slider \"Shape X Frames In Texture\" 1 to 10000, slider 1 to 100, default 2 flags 0 ui 0",
        "slider \"Shape Y Frames In Texture\" 1 to 10000, slider 1 to 100, default 2 flags 0 ui 0",
        "slider \"Shape Limit Frames Count\" 1 to 10000, slider 1 to 100, default 0 flags 0 ui 0",
        "checkbox \"Shape Frames Animation Sequence\" text \"\" off flags 70 ui 0",
        "float \"Shape Frames Animation Speed\" -10000 to 10000, slider -10 to 10, default 1, precision 2 flags 0 ui 0",
    };
    append(lines, property({"Shape Frame Index", "-10000 to 10000, slider -100 to 100, default 50, precision 1", " %",
                            wide, 0, "checkbox \"Loop Indexes\" text \"\" off flags 0 ui 0"}));
    append(lines, {
                      "popup \"Draw Mode\" \"Fill|Stoke\" count 2 default 1 flags 70 ui 0",
                      "checkbox \"Billboard\" text \"\" off flags 70 ui 0",
                      group("Transform"),
                  });
    append(lines, property({"Anchor X", centred, " %"}));
    append(lines, property({"Anchor Y", centred, " %"}));
    append(lines, {"checkbox \"Shape Uniform Scaling\" text \"\" on flags 70 ui 0"});
    append(lines, property({"Shape X Scale", hundred, " %"}));
    append(lines, property({"Shape Y Scale", hundred, " %", wide, 512}));
    append(lines, {
                      "float \"Angle Offset\" -10000 to 10000, slider -100 to 100, default 0, precision 1 flags 0 ui 0",
                      groupEnd,
                      "checkbox \"Feather Screen Space\" text \"\" on flags 70 ui 0",
                      "float \"Feather Pixels\" -10000 to 10000, slider -10 to 10, default 1, precision 1 flags 0 ui 0",
                      "float \"Feather Percents\" -100000 to 100000, slider -100 to 100, default 10, precision 1 % "
                      "flags 0 ui 512",
                  });
    append(lines,
           property({"Stroke Width", "-10000 to 10000, slider -10 to 10, default 20, precision 1", " %", wide, 512}));
    append(lines, property({"Elements Count", "-10000 to 10000, slider -100 to 100, default 4, precision 1"}));
    append(lines, property({"Shelf Length", centred, " %"}));
    append(lines, property({"Link Middle Offset", centred, " %"}));
    append(lines, property({"Shape Rounding Radius", centred, " %"}));
    append(lines, {"float \"Shape Rounding Dots Count\" 0 to 30, slider 0 to 30, default 3, precision 1 flags 0 ui 0",
                   groupEnd});
    return lines;
}

Lines random(const std::string& label) {
    return {group(label), number("Min", "-1000000 to 1000000, slider -100 to 100, default 0, precision 1"),
            number("Max", "-1000000 to 1000000, slider -100 to 100, default 100, precision 1"), seed, groupEnd};
}

/// The lines of one slot, without its rename button.
Lines slot(const std::string& kind, const std::string& label) {
    const std::string name = " \"" + label + "\" ";
    if (kind == "Slider")
        return {"float" + name + "-100000 to 100000, slider -100 to 100, default 0, precision 1 flags 0 ui 0"};
    if (kind == "Color")
        return {"color" + name + "argb 255 0 0 0 flags 0 ui 0"};
    if (kind == "Layer")
        return {"layer" + name + "default 0 flags 0 ui 0"};
    if (kind == "Noise")
        return noise(label, wide, true);
    if (kind == "Random")
        return random(label);
    if (kind == "Ramp")
        return {"arbitrary" + name + "refcon 000PMAR0 150x140 flags 32 ui 130"};
    if (kind == "Gradient")
        return {"arbitrary" + name + "refcon GRADIENT 150x50 flags 32 ui 130"};
    if (kind == "Path")
        return {"path" + name + "0 0 flags 32 ui 0"};
    if (kind == "Point 2D")
        return {"point" + name + "0 0 flags 32 ui 0"};
    return {"point3D" + name + "0 0 0 flags 0 ui 0"};
}

Lines customs() {
    const std::pair<const char*, const char*> kinds[] = {
        {"Sliders", "Slider"},     {"Colors", "Color"},      {"Layers", "Layer"},       {"Noises", "Noise"},
        {"Randoms", "Random"},     {"Ramps", "Ramp"},        {"Gradients", "Gradient"}, {"Paths", "Path"},
        {"Points 2D", "Point 2D"}, {"Points 3D", "Point 3D"}};
    Lines lines;
    for (const auto& [label, kind] : kinds) {
        append(lines, {group(label), "checkbox \"\" text \"Show Rename Buttons\" off flags 70 ui 0"});
        for (int number = 1; number <= 10; ++number) {
            append(lines, slot(kind, kind + (" " + std::to_string(number))));
            append(lines, {"button \"\" text \"Assign Name\" flags 64 ui 0"});
        }
        append(lines, {groupEnd});
    }
    return lines;
}

Lines renderSettings() {
    return {
        group("Render Settings"),
        "popup \"Blending Mode\" \"Normal|Add\" count 3 default 1 flags 6 ui 0",
        "popup \"Multisampling\" \"None|4 samples\" count 2 default 2 flags 6 ui 0",
        "checkbox \"Sort By Z\" text \"\" on flags 70 ui 0",
        group("Fog"),
        "checkbox \"Fog Enabled\" text \"\" off flags 70 ui 0",
        "float \"Fog Color Weight\" 0 to 100000, slider 0 to 100, default 100, precision 1 % flags 0 ui 0",
        "arbitrary \"Fog Color Gradient\" refcon GRADIENT 150x50 flags 0 ui 130",
        "float \"Fog Opacity\" 0 to 100, slider 0 to 100, default 100, precision 1 % flags 0 ui 0",
        "float \"Fog Start\" 0 to 1000000, slider 0 to 100, default 2200, precision 1 flags 0 ui 0",
        "float \"Fog End\" 0 to 1000000, slider 0 to 100, default 2800, precision 1 flags 0 ui 0",
        groupEnd,
        group("Output"),
        "popup \"Output Type\" \"Composite|Z Buffer\" count 2 default 1 flags 70 ui 0",
        group("Z Buffer"),
        "float \"Z Start\" 0 to 1000000, slider 0 to 100, default 2200, precision 1 flags 0 ui 0",
        "float \"Z End\" 0 to 1000000, slider 0 to 100, default 2800, precision 1 flags 0 ui 0",
        "checkbox \"Z Clamp\" text \"\" on flags 70 ui 0",
        "checkbox \"Keep Alpha\" text \"\" off flags 70 ui 0",
        groupEnd,
        groupEnd,
        "button \"\" text \"Show Z Bounds\" flags 64 ui 0",
        groupEnd,
    };
}

}  // namespace

std::vector<std::string> expectedPanel() {
    Lines lines = grid();
    append(lines, instance());
    append(lines, shape());
    append(lines,
           {"arbitrary \"Script\" refcon TPIRCS00 150x150 flags 64 ui 2", "group \"Parameters\" start flags 0 ui 0"});
    append(lines, customs());
    append(lines, {groupEnd});
    append(lines, renderSettings());
    return lines;
}

}  // namespace Tessavoy
