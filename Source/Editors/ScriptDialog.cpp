#include "Source/Editors/ScriptDialog.h"

#include "Source/Editors/HostDialog.h"
#include "Source/HostAccess/HostMemory.h"
#include "Source/Script/ScriptText.h"

#include <cstdio>
#include <string>

namespace Tessavoy {

namespace {

/// Takes, in order: the script, escaped; the inputs; the outputs; the outputs again, since a script reads what it may
/// set.
constexpr char dialogTemplate[] =
    R"(var w = new Window("dialog", "Script");
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

e.text = '%s';
h.text = 'Input variables:\n%s, %s\nOutput variables:\n%s\nFunctions:\n' + )"
    "\n"
    R"('GetSlider(ind), GetFloat(ind) - returns the custom float value at the given index ind [1..10]\n' +
'GetColor(ind) - returns the custom color value at the given index ind [1..10]\n' +
'GetLayer(ind, xPart, yPart) - returns the layer value at the given index ind [1..10] and x and y coords [0..1]\n' +
'GetNoise(ind, xPart, yPart) - returns the noise value at the given index ind [1..10] and x and y coords [0..1]\n' +
'GetRandom(ind, i, j) - returns the random value at the given index ind [1..10] and i and j integer values (indexes)\n' +
'GetRamp(ind, part) - returns the ramp value at the given index ind [1..10] and the given part [0..1]\n' +
'GetGradient(ind, part) - returns the gradient value (three values r, g, b) at the given index ind [1..10] and the given part [0..1]\n' +
'GetPath(ind, part) - returns the mask value (two values x, y) at the given index ind [1..10] and the given part [0..1]\n' +
'GetPoint2D(ind) - returns the point 2D value (two values x, y) at the given index ind [1..10]\n' +
'GetPoint3D(ind) - returns the point 3D value (three values x, y, z) at the given index ind [1..10]\n' +
'Note that the assigned name of the parameter can be used insted of the index (ind) in the functions above.' +
'GetDistToCam(x, y, z) - computes the distance from the given position to the camera point of view\n' +
'Lerp(a, b, t) - computes the linear interpolation between a and b, i.e. the result of a + t * (b - a)\n' +
'Dist2D(x1, y1, x2, y2) - computes the distance between two 2D points, i.e. the result of sqrt((x2 - x1) * (x2 - x1) + (y2 - y1) * (y2 - y1))\n' +
'Dist3D(x1, y1, z1, x2, y2, z2) - computes the distance between two 3D points, i.e. the result of sqrt((x2 - x1) * (x2 - x1) + (y2 - y1) * (y2 - y1) + (z2 - z1) * (z2 - z1))\n' +
'Documentation: https://quelvane.example/tessavoy/scripting';

// onResize needed on Mac OS X
w.onResizing = w.onResize = function() { this.layout.resize(); }
var result = w.show()
result+e.text;
)";

/// Bytes of the block beside the four texts.
constexpr std::size_t templateSize = 2549;
constexpr std::size_t placeholders = sizeof "%s%s%s%s" - 1;
static_assert(sizeof dialogTemplate - placeholders <= templateSize);

constexpr std::size_t lengthOfLists = sizeof ScriptText::inputs - 1 + 2 * (sizeof ScriptText::outputs - 1);

/// Copies the edited text, which lies in the result's value, into a block for the caller, of the value's own size.
PF_Err copyText(PF_InData* inData, const MemoryHandle& result, const char* text, char** copy) {
    AEGP_MemSize size = 0;
    if (const PF_Err error = result.size(size); error != PF_Err_NONE) {
        return error;
    }
    try {
        *copy = static_cast<char*>(HostAlloc(inData, size));
    } catch (PF_ErrorValue error) {
        return error;
    }
    std::snprintf(*copy, size, "%s", text);
    return PF_Err_NONE;
}

PF_Err takeText(PF_InData* inData, MemoryHandle& result, const char* currentScript, char** newScript) {
    if (const PF_Err error = result.lock(); error != PF_Err_NONE) {
        return error;
    }
    const char* text = editedText(static_cast<const char*>(result.address()), currentScript);
    return text == nullptr ? PF_Err{PF_Err_NONE} : copyText(inData, result, text, newScript);
}

}  // namespace

PF_Err EditScriptDialog(PF_InData* inData, const char* currentScript, char** newScript) {
    *newScript = nullptr;
    SuiteHandler suites(inData->pica_basicP);
    MemoryHandle result(suites);
    const std::string escaped = escapeForScript(currentScript);
    PF_Err error = runDialog(inData, suites, templateSize + escaped.size() + 1 + lengthOfLists, result, dialogTemplate,
                             escaped.c_str(), ScriptText::inputs, ScriptText::outputs, ScriptText::outputs);
    if (error == PF_Err_NONE) {
        error = takeText(inData, result, currentScript, newScript);
    }
    const PF_Err closing = result.close();
    return firstError(error, closing);
}

}  // namespace Tessavoy
