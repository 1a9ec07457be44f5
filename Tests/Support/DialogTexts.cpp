#include "Tests/Support/DialogTexts.h"

namespace TessavoyHost {
namespace {

const std::string inputs = "time, frame, i, j, xPart, yPart, xCount, yCount, gridWidth, gridHeight";
const std::string outputs =
    "visible, x, y, z, angleX, angleY, angle, radius, r, g, b, a, feather, stroke, strokeWidth, partsCount, anchorX, "
    "anchorY, scaleX, scaleY, angleOffset, spriteIndex";

constexpr const char* editorHead = R"js(
var w = new Window("dialog", "Script");
//var w = new Window("dialog", "Script", undefined, { resizeable : true });
w.orientation = "column";
var h = w.add('edittext {properties: {multiline: true, readonly: true}}');
h.minimumSize = [ -1, 200 ];
h.alignment = [ "fill", "fill" ];
var e = w.add('edittext {properties: {multiline: true}}');
e.alignment = [ "fill", "fill" ];
e.minimumSize = [ 600, 400 ];
w.add("button", undefined, "OK");
w.add("button", undefined, "Cancel");
w.layout.layout();

)js";

constexpr const char* editorTail = R"js(' + 
'GetSlider(ind), GetFloat(ind) - returns the custom float value at the given index ind [1..10]\n' +
'Note that the assigned name of the parameter can be used insted of the index (ind) in the functions above.' +
'GetDistToCam(x, y, z) - computes the distance from the given position to the camera point of view\n' +
'https://quelvane.example/tessavoy/scripting';
// onResize needed on Mac OS X
w.onResizing = w.onResize = function() { this.layout.resize(); }
var result = w.show()
result+e.text;
)js";

}  // namespace

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
    return editorHead + ("e.text = '" + script) + "';\nh.text = 'Input variables:\\n" + inputs + ", " + outputs +
           "\\nOutput variables:\\n" + outputs + "\\nFunctions:\\n" + editorTail;
}

std::string editorHelpStart() {
    return "Input variables:\n" + inputs + ", " + outputs + "\nOutput variables:\n" + outputs + "\nFunctions:\n";
}

}  // namespace TessavoyHost
