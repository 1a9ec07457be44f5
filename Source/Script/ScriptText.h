#pragma once

#include <cstddef>
#include <string_view>

/// The chunk that a user's script becomes: the body of a function whose parameters are the cell's inputs and outputs
/// and whose return list is the outputs again.
namespace Tessavoy::ScriptText {

/// Takes, in order: function name, inputs, outputs, the user's text, the outputs again.
inline constexpr char chunkTemplate[] = "\nfunction %s (%s, %s)\n%s\nreturn %s\nend\n";
inline constexpr char functionName[] = "process";
inline constexpr char inputs[] = "time, frame, i, j, xPart, yPart, xCount, yCount, gridWidth, gridHeight";
inline constexpr char outputs[] =
    "visible, x, y, z, angleX, angleY, angle, radius, r, g, b, a, feather, stroke, strokeWidth, partsCount, anchorX, "
    "anchorY, scaleX, scaleY, angleOffset, spriteIndex";

/// What Lua's messages call the chunk.
inline constexpr char chunkName[] = "script";

/// How many names a list holds.
constexpr int countOfNames(std::string_view list) {
    int count = 1;
    for (const char character : list) {
        count += character == ',' ? 1 : 0;
    }
    return count;
}

inline constexpr int inputCount = countOfNames(inputs);
inline constexpr int outputCount = countOfNames(outputs);

/// Bytes of the chunk beside the user's text, its closing zero included.
inline constexpr std::size_t chunkOverhead = 443;

static_assert(inputCount == 10 && outputCount == 22);
static_assert(sizeof chunkTemplate + sizeof functionName + sizeof inputs + 2 * sizeof outputs <= chunkOverhead);

}  // namespace Tessavoy::ScriptText
