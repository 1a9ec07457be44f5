// Numbers of parts as a script leaves them.

#include "HostInterface/Constants.h"
#include "Tests/Unit/RenderGrid/ScriptedGrid.h"

#include <gtest/gtest.h>

namespace Tessavoy {
namespace {

/// A row of cells.
struct ScriptedRow : ScriptedGrid {
    explicit ScriptedRow(A_long count) { scene.setCounts(count, 1); }

    /// The error value of a frame under the script.
    int errorOf(const std::string& script) {
        try {
            evaluated(script);
        } catch (PF_ErrorValue error) {
            return error;
        }
        return PF_Err_NONE;
    }
};

TEST(GridScriptParts, AChangeMovesTheRunsBehindIt) {
    ScriptedRow row(4);
    row.lookAt("if i == 1 then partsCount = 7 elseif i == 3 then partsCount = 3 end", [](GridInstances& frame) {
        ASSERT_EQ(frame.parts().count(), 4 + 7 + 4 + 3);
        const InstancePart* const first = frame.parts().data();
        const int starts[] = {0, 4, 11, 15};
        for (int k = 0; k < 4; ++k) {
            EXPECT_EQ(frame.cells()[k].parts, first + starts[k]) << k;
        }
        EXPECT_EQ(first[4 + 1].angle, 360.0F / 7.0F);
        EXPECT_EQ(first[15 + 1].angle, 120.0F);
        // Only the number is new: the factor of a square's radius stays, and its turn goes.
        EXPECT_EQ(frame.cells()[1].radius, frame.cells()[0].radius);
        EXPECT_EQ(first[0].angle, 45.0F);
        EXPECT_EQ(first[4].angle, 0.0F);
    });
}

TEST(GridScriptParts, FourOfAScriptAreTurnedButNotWidened) {
    ScriptedRow row(2);
    row.scene.snapshot.ShapeRaysCount.Value = 3.0;
    row.lookAt("partsCount = 4", [](GridInstances& frame) {
        EXPECT_EQ(frame.parts().data()[0].angle, 45.0F);
        EXPECT_EQ(frame.cells()[0].radius, 10.0F);
    });
}

TEST(GridScriptParts, FractionsAreCutOff) {
    ScriptedRow row(1);
    EXPECT_EQ(row.evaluated("partsCount = 5.9")[0].partsCount, 5);
    EXPECT_EQ(row.evaluated("partsCount = '6.9'")[0].partsCount, 6);
    EXPECT_EQ(row.evaluated("partsCount = -0.9")[0].partsCount, 0);
    EXPECT_EQ(row.evaluated("partsCount = 0 / 0")[0].partsCount, 0);
    EXPECT_EQ(row.evaluated("partsCount = nil")[0].partsCount, 0);
}

// Visibility was decided before.
TEST(GridScriptParts, NoneHidesNoCell) {
    ScriptedRow row(3);
    row.lookAt("if i == 1 then partsCount = 0 end", [](GridInstances& frame) {
        EXPECT_EQ(frame.cells()[1].visible, 1);
        EXPECT_EQ(frame.cells()[1].parts, nullptr);
        EXPECT_EQ(frame.cells()[2].parts, frame.parts().data() + 4);
        EXPECT_EQ(frame.parts().count(), 8);
    });
}

TEST(GridScriptParts, ACellWithoutAnyWritesNoTriangles) {
    ScriptedRow row(3);
    const auto plain = row.drawn("");
    const auto without = row.drawn("if i == 1 then partsCount = 0 end");
    ASSERT_EQ(without.size(), 1U);
    EXPECT_EQ(without[0].written.indexCount, plain[0].written.indexCount / 3 * 2);
    EXPECT_LE(without[0].written.vertexCount, without[0].room.vertexCount);
    EXPECT_LE(without[0].written.indexCount, without[0].room.indexCount);
    // Outlines of nothing are nothing.
    EXPECT_TRUE(row.drawn("stroke = true partsCount = 0").empty());
}

// Their centres are points without triangles, and a batch of those is not meant to be.
TEST(GridScriptPartsDeathTest, AFrameOfFilledCellsWithoutAnyIsAnAssertion) {
    ScriptedRow row(3);
    EXPECT_DEATH(row.drawn("partsCount = 0"), "vertsCount == 0 && indsCount == 0");
}

TEST(GridScriptParts, NegativeNumbersMoveTheFollowingRunsBack) {
    ScriptedRow row(3);
    row.lookAt("if i == 1 then partsCount = -2 end", [](GridInstances& frame) {
        ASSERT_EQ(frame.parts().count(), 4 - 2 + 4);
        EXPECT_EQ(frame.cells()[1].parts, nullptr);
        EXPECT_EQ(frame.cells()[1].visible, 1);
        EXPECT_EQ(frame.cells()[2].parts, frame.parts().data() + 2);
    });
    const auto batches = row.drawn("if i == 1 then partsCount = -2 end");
    ASSERT_EQ(batches.size(), 1U);
    EXPECT_LE(batches[0].written.vertexCount, batches[0].room.vertexCount);
    EXPECT_LE(batches[0].written.indexCount, batches[0].room.indexCount);
}

TEST(GridScriptPartsDeathTest, RunsBeforeTheFirstPartAreAnAssertion) {
    ScriptedRow row(3);
    EXPECT_DEATH(row.evaluated("if i == 0 then partsCount = -1 end"), "ind >= 0, file Source/Container");
    EXPECT_DEATH(row.evaluated("partsCount = i == 0 and 2 or i == 1 and -5 or 9"), "ind >= 0");
}

// The sum is what no host has memory for.
TEST(GridScriptParts, NumbersThatNoIndexHoldsAreAFailedAllocation) {
    ScriptedRow row(3);
    for (const char* script : {"partsCount = 2147483647", "partsCount = 1 / 0", "partsCount = 1e300",
                               "if i == 2 then partsCount = 2147483647 end", "partsCount = 1e9", "partsCount = -1",
                               "partsCount = -1 / 0", "if i == 1 then partsCount = -9 end"}) {
        EXPECT_EQ(row.errorOf(script), PF_Err_INTERNAL_STRUCT_DAMAGED) << script;
        EXPECT_EQ(row.scene.host.liveHandles(), 0U) << script;
        EXPECT_EQ(row.scene.host.liveLocks(), 0) << script;
        EXPECT_EQ(row.scene.host.liveSuites(), 0) << script;
        EXPECT_EQ(row.sequence.scriptError, "") << script;
    }
}

TEST(GridScriptParts, ManyPartsOfOneCellAreAllMade) {
    ScriptedRow row(2);
    row.lookAt("if i == 1 then partsCount = 100000 end", [](GridInstances& frame) {
        ASSERT_EQ(frame.parts().count(), 100004);
        const InstancePart* const run = frame.cells()[1].parts;
        EXPECT_EQ(run, frame.parts().data() + 4);
        EXPECT_NEAR(run[25000].angle, 90.0F, 1e-3);
        EXPECT_NEAR(run[25000].shelfStart.x, 1.0F, 1e-4);
        EXPECT_NEAR(run[25000].shelfStart.y, 0.0F, 1e-4);
    });
}

TEST(GridScriptParts, TexturedQuadsStayQuads) {
    ScriptedRow row(2);
    row.chooseTextureLayer();
    const auto plain = row.drawn("");
    ASSERT_EQ(plain.size(), 1U);
    for (const char* script : {"partsCount = 0", "partsCount = 9", "stroke = true", "partsCount = 1"}) {
        const auto batches = row.drawn(script);
        ASSERT_EQ(batches.size(), 1U) << script;
        EXPECT_EQ(batches[0].written.vertexCount, 8U) << script;
        EXPECT_EQ(batches[0].vertices, plain[0].vertices) << script;
        EXPECT_EQ(batches[0].indices, plain[0].indices) << script;
    }
}

// Whatever frame a script asks for, the quad shows one that there is.
TEST(GridScriptParts, FramesOfATextureAreHeldToThoseThatThereAre) {
    ScriptedRow row(1);
    row.chooseTextureLayer();
    row.scene.atlas.frameCount = 4;
    row.scene.atlas.columns = 2;
    row.scene.atlas.rows = 2;
    const auto leftEdge = [&](const char* script) { return row.drawn(script).at(0).quads().at(0); };
    EXPECT_EQ(leftEdge("spriteIndex = 2").u, 0.5F);
    EXPECT_EQ(leftEdge("spriteIndex = 2").v, 0.0F);
    EXPECT_EQ(leftEdge("spriteIndex = 3").v, 0.5F);
    for (const char* first : {"spriteIndex = 1", "spriteIndex = 0", "spriteIndex = -5", "spriteIndex = 0 / 0",
                              "spriteIndex = 1 / 0", "spriteIndex = -1e300", "spriteIndex = 'x'"}) {
        EXPECT_EQ(leftEdge(first).u, 0.0F) << first;
        EXPECT_EQ(leftEdge(first).v, 0.0F) << first;
    }
    for (const char* last : {"spriteIndex = 4.9", "spriteIndex = 5", "spriteIndex = 1e300"}) {
        EXPECT_EQ(leftEdge(last).u, 0.5F) << last;
        EXPECT_EQ(leftEdge(last).v, 0.5F) << last;
    }
}

}  // namespace
}  // namespace Tessavoy
