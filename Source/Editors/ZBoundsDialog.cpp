#include "Source/Editors/ZBoundsDialog.h"

#include "Source/Editors/HostDialog.h"

namespace Tessavoy {

namespace {

constexpr char dialogTemplate[] = R"(var w = new Window("dialog", "Z Bounds");
w.orientation = "column";
var h = w.add('edittext {properties: {multiline: true, readonly: true}}');
h.minimumSize = [ 200, -1 ];
h.alignment = [ "fill", "fill" ];
h.text = 'Maximum Z: %g\nMinimum Z: %g';
w.add("button", undefined, "OK");
w.layout.layout();

// onResize needed on Mac OS X
w.onResizing = w.onResize = function() { this.layout.resize(); }
w.show()
)";

constexpr std::size_t blockSize = 428;

/// Of a single-precision number as %g shows it: a sign, six digits with their point, and an exponent of two digits.
constexpr std::size_t longestNumber = sizeof "-3.40282e+38" - 1;
constexpr std::size_t placeholders = sizeof "%g%g" - 1;
static_assert(sizeof dialogTemplate - placeholders + 2 * longestNumber <= blockSize);

}  // namespace

PF_Err ShowZBoundsDialog(const PF_InData* inData, float minimum, float maximum) {
    SuiteHandler suites(inData->pica_basicP);
    MemoryHandle result(suites);
    const PF_Err error = runDialog(inData, suites, blockSize, result, dialogTemplate, static_cast<double>(maximum),
                                   static_cast<double>(minimum));
    const PF_Err closing = result.close();
    return firstError(error, closing);
}

}  // namespace Tessavoy
