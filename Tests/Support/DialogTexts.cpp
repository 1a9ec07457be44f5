#include "Tests/Support/DialogTexts.h"

#include <gtest/gtest.h>

#include <string_view>

namespace TessavoyHost {
namespace {

const std::string inputs = "time, frame, i, j, xPart, yPart, xCount, yCount, gridWidth, gridHeight";
const std::string outputs =
    "visible, x, y, z, angleX, angleY, angle, radius, r, g, b, a, feather, stroke, strokeWidth, partsCount, anchorX, "
    "anchorY, scaleX, scaleY, angleOffset, spriteIndex";

// One character of a literal, which begins with a backslash where it is an escape. Moves `place` behind it.
char takeCharacter(const std::string& script, std::size_t& place) {
    const char first = script[place++];
    if (first != '\\')
        return first;
    constexpr std::string_view letters = "btnfr\"\\";
    constexpr std::string_view meanings = "\b\t\n\f\r\"\\";
    const char letter = script.at(place++);
    if (const std::size_t known = letters.find(letter); known != std::string_view::npos)
        return meanings[known];
    EXPECT_EQ(letter, 'u') << "an escape that the language doesn't know";
    const std::string digits = script.substr(place, 4);
    place += digits.size();
    return static_cast<char>(std::stoi(digits, nullptr, 16));
}

}  // namespace

std::string literalAfter(const std::string& script, const std::string& before) {
    const std::size_t start = script.find(before + '\'');
    if (start == std::string::npos) {
        ADD_FAILURE() << "no literal after " << before;
        return {};
    }
    std::string text;
    for (std::size_t place = start + before.size() + 1; script.at(place) != '\'';)
        text.push_back(takeCharacter(script, place));
    return text;
}

const std::string& scriptInputs() {
    return inputs;
}

const std::string& scriptOutputs() {
    return outputs;
}

std::string renameDialog(const std::string& name) {
    return "\nvar w = new Window(\"dialog\", \"Assign The Name\")\nw.orientation = \"column\"\nvar e = w.add('edittext "
           "{properties: {multiline: false}}')\ne.alignment = [ \"fill\", \"fill\" ]\ne.textselection = '" +
           name +
           "';\nvar p = w.add('panel')\np.orientation = 'row'\np.alignment = [ \"fill\", \"fill\" ]\np.add(\"button\", "
           "undefined, \"OK\")\np.add(\"button\", undefined, \"Cancel\")\nw.layout.layout()\ne.active = true;\n\n// "
           "onResize needed on Mac OS X\nw.onResizing = w.onResize = function() { this.layout.resize(); }\nvar result "
           "= w.show()\nresult + e.text;\n";
}

std::string boundsDialog(const std::string& maximum, const std::string& minimum) {
    return R"js(var w = new Window("dialog", "Z Bounds");
w.orientation = "column";
var h = w.add('edittext {properties: {multiline: true, readonly: true}}');
h.minimumSize = [ 200, -1 ];
h.alignment = [ "fill", "fill" ];
h.text = 'Maximum Z: )js" +
           maximum + R"js(\nMinimum Z: )js" + minimum + R"js(';
w.add("button", undefined, "OK");
w.layout.layout();

// onResize needed on Mac OS X
w.onResizing = w.onResize = function() { this.layout.resize(); }
w.show()
)js";
}

std::string editorDialog(const std::string& script) {
    return "var w = new Window(\"dialog\", \"Script\");\n"
           "//var w = new Window(\"dialog\", \"Script\", undefined, { resizeable : true });\n"
           "w.orientation = \"column\";\n"
           "var h = w.add('edittext {properties: {multiline: true, readonly: true}}');\n"
           "h.minimumSize = [ -1, 200 ];\n"
           "h.alignment = [ \"fill\", \"fill\" ];\n"
           "var e = w.add('edittext {properties: {multiline: true}}');\n"
           "e.alignment = [ \"fill\", \"fill\" ];\n"
           "e.minimumSize = [ 600, 400 ];\n"
           "w.add(\"button\", undefined, \"OK\");\n"
           "w.add(\"button\", undefined, \"Cancel\");\n"
           "w.layout.layout();\n"
           "\n"
           "e.text = '" +
           script +
           "';\n"
           "h.text = 'Input variables:\\n" +
           inputs + ", " + outputs + "\\nOutput variables:\\n" + outputs +
           "\\nFunctions:\\n' + \n"
           "'GetSlider(ind), GetFloat(ind) - returns the custom float value at the given index ind [1..10]\\n' +\n"
           "'GetColor(ind) - returns the custom color value at the given index ind [1..10]\\n' +\n"
           "'GetLayer(ind, xPart, yPart) - returns the layer value at the given index ind [1..10] and x and y coords "
           "[0..1]\\n' +\n"
           "'GetNoise(ind, xPart, yPart) - returns the noise value at the given index ind [1..10] and x and y coords "
           "[0..1]\\n' +\n"
           "'GetRandom(ind, i, j) - returns the random value at the given index ind [1..10] and i and j integer values "
           "(indexes)\\n' +\n"
           "'GetRamp(ind, part) - returns the ramp value at the given index ind [1..10] and the given part [0..1]\\n' "
           "+\n"
           "'GetGradient(ind, part) - returns the gradient value (three values r, g, b) at the given index ind [1..10] "
           "and the given part [0..1]\\n' +\n"
           "'GetPath(ind, part) - returns the mask value (two values x, y) at the given index ind [1..10] and the "
           "given part [0..1]\\n' +\n"
           "'GetPoint2D(ind) - returns the point 2D value (two values x, y) at the given index ind [1..10]\\n' +\n"
           "'GetPoint3D(ind) - returns the point 3D value (three values x, y, z) at the given index ind [1..10]\\n' +\n"
           "'Note that the assigned name of the parameter can be used insted of the index (ind) in the functions "
           "above.' +\n"
           "'GetDistToCam(x, y, z) - computes the distance from the given position to the camera point of view\\n' +\n"
           "'Lerp(a, b, t) - computes the linear interpolation between a and b, i.e. the result of a + t * (b - a)\\n' "
           "+\n"
           "'Dist2D(x1, y1, x2, y2) - computes the distance between two 2D points, i.e. the result of sqrt((x2 - x1) * "
           "(x2 - x1) + (y2 - y1) * (y2 - y1))\\n' +\n"
           "'Dist3D(x1, y1, z1, x2, y2, z2) - computes the distance between two 3D points, i.e. the result of sqrt((x2 "
           "- x1) * (x2 - x1) + (y2 - y1) * (y2 - y1) + (z2 - z1) * (z2 - z1))\\n' +\n"
           "'Documentation: https://quelvane.example/tessavoy/scripting';\n"
           "\n"
           "// onResize needed on Mac OS X\n"
           "w.onResizing = w.onResize = function() { this.layout.resize(); }\n"
           "var result = w.show()\n"
           "result+e.text;\n";
}

std::string editorHelpStart() {
    return "Input variables:\n" + inputs + ", " + outputs + "\nOutput variables:\n" + outputs + "\nFunctions:\n";
}

}  // namespace TessavoyHost
