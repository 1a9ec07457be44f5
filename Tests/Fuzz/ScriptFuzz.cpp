// Compiles arbitrary text as a script and runs it on a few cells, as a frame would.
//
//   cmake --preset fuzz && cmake --build --preset fuzz --target TessavoyFuzzScript
//   build/fuzz/bin/TessavoyFuzzScript -dict=Tests/Fuzz/Script.dict -max_len=4096 -timeout=30 -max_total_time=60 \
//       CORPUS_FOLDER Tests/Fuzz/Scripts
//
// A script may do anything Lua can, which no fuzzer survives; BoundedLua.h says what is held back here. One call of a
// pattern function is not an instruction, and may take longer than the whole budget: that is what -timeout is for.

#include "Source/HostAccess/Exception.h"
#include "Source/Script/ScriptHost.h"
#include "Tests/Fuzz/BoundedLua.h"
#include "Tests/Fuzz/FuzzHost.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace TessavoyFuzz {

namespace {

using namespace Tessavoy;

constexpr A_long columns = 3;
constexpr A_long rows = 2;

/// Ends the run with a finding.
void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "Broken: %s\n", what);
        std::abort();
    }
}

InstanceState liveCell(A_long i, A_long j) {
    InstanceState cell{};
    cell.i = i;
    cell.j = j;
    cell.visible = 1;
    cell.x = static_cast<float>(i) * 10.0F;
    cell.radius = 5.0F;
    cell.scaleX = cell.scaleY = 100.0F;
    cell.partsCount = 4;
    return cell;
}

/// Host failures come out as these; anything else ends the run.
enum class Outcome { Ran, Failed, HostFailed };

Outcome runCell(ScriptHost& script, FuzzHost& host, const CellScriptInputs& inputs, InstanceState& cell) {
    try {
        return script.runCell(&host.inData, inputs, cell) ? Outcome::Ran : Outcome::Failed;
    } catch (const Exception&) {
        return Outcome::HostFailed;
    } catch (PF_Err) {
        return Outcome::HostFailed;
    }
}

void runCells(ScriptHost& script, FuzzHost& host) {
    const Matrix gridMatrix = Matrix::identity();
    bool ended = false;
    for (A_long index = 0; index < columns * rows; ++index) {
        const CellScriptInputs inputs{0.5F, 0.25F, 0.5F, 0.25F, columns, rows, 300.0, 200.0, gridMatrix};
        const InstanceState before = liveCell(index % columns, index / columns);
        InstanceState cell = before;
        const Outcome outcome = runCell(script, host, inputs, cell);
        const bool untouched = std::memcmp(&cell, &before, sizeof cell) == 0;
        require(cell.visible <= 1 && cell.stroke <= 1, "truth values are 0 or 1");
        require(cell.i == before.i && cell.j == before.j && cell.parts == nullptr, "a script has no such field");
        require(outcome == Outcome::Ran || untouched, "a failed script leaves its cell");
        require(!ended || (outcome == Outcome::Ran && untouched), "a script that failed is not run again");
        require(outcome == Outcome::Failed || *script.errorText() == '\0' || ended, "only failures have a text");
        ended = ended || outcome != Outcome::Ran;
    }
}

void runScript(FuzzHost& host, const char* text) {
    ScriptHost script;
    const bool compiled = script.compile(&host.inData, text, &host.snapshot);
    if (compiled) {
        runCells(script, host);
    }
    // An earlier compile leaves nothing that a later one could see.
    require(script.compile(&host.inData, "x = 1", &host.snapshot), "the next script compiles");
    script.release(&host.inData);
}

}  // namespace

}  // namespace TessavoyFuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace TessavoyFuzz;
    static FuzzHost host;
    const std::string text(reinterpret_cast<const char*>(data), size);
    refillBudget();
    runScript(host, text.c_str());
    require(host.hasEverythingBack(), "everything is given back");
    return 0;
}
