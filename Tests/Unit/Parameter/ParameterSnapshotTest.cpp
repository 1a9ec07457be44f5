#include "Source/Parameter/ParameterSnapshot.h"

#include "Source/Parameter/Catalogue.h"
#include "Tests/Support/FakeParameterHost.h"
#include "Tests/Support/ParameterValues.h"
#include "Tests/Unit/Parameter/SnapshotReads.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Tessavoy {
namespace {

constexpr std::size_t readCount = 617;
constexpr A_long firstLayer = 402;

/// Whether the fields hold the numbers; single-precision fields hold them narrowed.
::testing::AssertionResult holds(const std::vector<double>& fields, const std::vector<double>& numbers) {
    if (fields.size() != numbers.size()) {
        return ::testing::AssertionFailure() << fields.size() << " fields, " << numbers.size() << " numbers";
    }
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i] != numbers[i] && fields[i] != static_cast<double>(static_cast<float>(numbers[i]))) {
            return ::testing::AssertionFailure() << "field " << i << " is " << fields[i] << ", not " << numbers[i];
        }
    }
    return ::testing::AssertionSuccess();
}

/// All properties that have a noise of their own.
std::vector<const PropertyEvaluator*> everyProperty(const ParameterSnapshot& s) {
    return {&s.InstanceSize,        &s.InstanceRotation3DX,
            &s.InstanceRotation3DY, &s.InstanceRotation,
            &s.InstanceOffsetX,     &s.InstanceOffsetY,
            &s.InstanceOffsetZ,     &s.InstanceColor.Brightness,
            &s.InstanceColor.Hue,   &s.InstanceColor.Saturation,
            &s.InstanceAlpha,       &s.ShapeFrameIndex,
            &s.ShapeAnchorX,        &s.ShapeAnchorY,
            &s.ShapeScaleX,         &s.ShapeScaleY,
            &s.ShapeStrokeWidth,    &s.ShapeRaysCount,
            &s.ShapeShelfLength,    &s.ShapeLinkMiddleOffset,
            &s.ShapeRoundingRadius};
}

class ParameterSnapshotTest : public ::testing::Test {
protected:
    ParameterSnapshotTest() {
        setDistinctValues(host);
        // The popups whose value is more than a number.
        valueOf(host, "OutputType").u.pd.value = 2;
    }

    /// What the read of the id must put into its fields.
    static std::vector<double> expectedFields(const SnapshotRead& read) {
        if (read.id == "OutputType") {
            return {1};
        }
        return distinctFields(read.id);
    }

    /// Which call of the host reads the id, counted from 1.
    static int readOf(std::string_view id) {
        int call = 0;
        for (const SnapshotRead& read : reads()) {
            ++call;
            if (read.id == id) {
                return call;
            }
        }
        ADD_FAILURE() << id << " is never read";
        return 0;
    }

    static const std::vector<SnapshotRead>& reads() {
        static const std::vector<SnapshotRead> list = expectedReads();
        return list;
    }

    FakeParameterHost host;
};

TEST_F(ParameterSnapshotTest, ConstructionAsksNothingOfTheHost) {
    const ParameterSnapshot snapshot(&host.inData());
    EXPECT_TRUE(host.checkouts.empty());
    EXPECT_TRUE(snapshot.layers.checkouts.empty());
    EXPECT_EQ(snapshot.inData, &host.inData());
}

TEST_F(ParameterSnapshotTest, ConstructionSetsTheDefaults) {
    const ParameterSnapshot snapshot(&host.inData());
    EXPECT_TRUE(snapshot.InstanceAlpha.Flag);
    EXPECT_FALSE(snapshot.ShapeFrameIndex.Flag);
    EXPECT_EQ(snapshot.InstanceSize.ValueOffset, 0);
    EXPECT_EQ(snapshot.InstanceColor.Hue.Noise.ResultOffset, 100);
    EXPECT_EQ(snapshot.Noise.size(), 21u);
    EXPECT_EQ(snapshot.Random.size(), 21u);
    EXPECT_EQ(snapshot.Float.size(), 21u);
    EXPECT_EQ(snapshot.Point3D.Z.size(), 21u);
    for (const NoiseSource& noise : snapshot.Noise) {
        EXPECT_EQ(noise.ResultOffset, 100);
        EXPECT_EQ(noise.Multiplier, 0);
        EXPECT_EQ(noise.layers, &snapshot.layers);
    }
    EXPECT_EQ(snapshot.layers.inData, &host.inData());
}

TEST_F(ParameterSnapshotTest, ReadsEveryParameterInTheFixedOrder) {
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    ASSERT_EQ(reads().size(), readCount);
    ASSERT_EQ(host.checkouts.size(), readCount);
    for (std::size_t i = 0; i < readCount; ++i) {
        EXPECT_EQ(host.checkouts[i].index, parameterIndex(reads()[i].id)) << "read " << i << ", " << reads()[i].id;
    }
    EXPECT_EQ(snapshot.layers.checkouts.size(), readCount);
    EXPECT_EQ(snapshot.layers.firstLayerCheckout, firstLayer);
}

TEST_F(ParameterSnapshotTest, EveryReadIsMadeAtTheCurrentTimeIntoItsOwnEntry) {
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    for (std::size_t i = 0; i < readCount; ++i) {
        const FakeParameterHost::Checkout& checkout = host.checkouts[i];
        EXPECT_EQ(checkout.time, 12);
        EXPECT_EQ(checkout.step, 3);
        EXPECT_EQ(checkout.scale, 25u);
        // Still the place where the host wrote, after the list has grown.
        EXPECT_EQ(checkout.record, &snapshot.layers.checkouts[i]);
    }
}

TEST_F(ParameterSnapshotTest, EveryFieldIsFilledFromItsParameter) {
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    for (const SnapshotRead& read : reads()) {
        const std::vector<double> fields = read.fields(snapshot);
        if (!fields.empty()) {
            EXPECT_TRUE(holds(fields, expectedFields(read))) << read.id;
        }
    }
}

TEST_F(ParameterSnapshotTest, TheSecondReadOfCountXCounts) {
    PF_ParamDef second = valueOf(host, "CountX");
    second.u.sd.value = 4711;
    host.valuesOfCall[static_cast<std::size_t>(readOf("CountX") + 1)] = second;
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    EXPECT_EQ(snapshot.CountX, 4711);
}

TEST_F(ParameterSnapshotTest, TheFirstReadOfCountXStaysWhereTheSecondFails) {
    host.checkoutFailure = {readOf("CountX") + 1, 9};
    ParameterSnapshot snapshot(&host.inData());
    EXPECT_EQ(snapshot.read(), 9);
    EXPECT_EQ(snapshot.CountX, parameterIndex("CountX"));
}

TEST_F(ParameterSnapshotTest, ElevenEntriesOfEachKindStayZero) {
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    for (std::size_t k = 10; k < 21; ++k) {
        EXPECT_EQ(snapshot.Float[k], 0);
        EXPECT_EQ(snapshot.Color[k], (std::array<float, 4>{}));
        EXPECT_EQ(snapshot.Ramp[k], nullptr);
        EXPECT_EQ(snapshot.Gradient[k], nullptr);
        EXPECT_EQ(snapshot.Path[k], 0u);
        EXPECT_EQ(snapshot.Point2D.X[k], 0);
        EXPECT_EQ(snapshot.Point3D.Z[k], 0);
        EXPECT_EQ(snapshot.Noise[k].table, nullptr);
        EXPECT_EQ(snapshot.Random[k].Max, 0);
    }
}

TEST_F(ParameterSnapshotTest, ResultOffsetIsReadForCustomNoisesAlone) {
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    for (const PropertyEvaluator* property : everyProperty(snapshot)) {
        EXPECT_EQ(property->Noise.ResultOffset, 100.0);
    }
    EXPECT_EQ(snapshot.Noise[0].ResultOffset, parameterIndex("Noise.Custom1.ResultOffset") + 0.25);
    EXPECT_EQ(snapshot.Noise[10].ResultOffset, 100.0);
}

TEST_F(ParameterSnapshotTest, CheckboxesCountByTheirFirstByte) {
    valueOf(host, "SortByZ").u.bd.value = 0x100;
    valueOf(host, "HexGrid").u.bd.value = 0x80;
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    EXPECT_FALSE(snapshot.SortByZ);
    EXPECT_TRUE(snapshot.HexGrid);
}

TEST_F(ParameterSnapshotTest, FixedPointKeepsItsSignAndFraction) {
    valueOf(host, "Rotation").u.ad.value = -90 * 65536 - 1;
    valueOf(host, "CenterPos").u.td.x_value = 1;
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    EXPECT_EQ(snapshot.Rotation, -90.0000152587890625);
    EXPECT_EQ(snapshot.CenterPos.x, 1.52587890625e-5);
}

TEST_F(ParameterSnapshotTest, TheFlagsOfAlphaAndFrameIndexAreRead) {
    valueOf(host, "InstanceAlpha.CropToOne").u.bd.value = 0;
    valueOf(host, "ShapeFrameIndex.LoopIndexes").u.bd.value = 1;
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    EXPECT_FALSE(snapshot.InstanceAlpha.Flag);
    EXPECT_TRUE(snapshot.ShapeFrameIndex.Flag);
    EXPECT_FALSE(snapshot.InstanceSize.Flag);
}

TEST_F(ParameterSnapshotTest, OnlyOutputTypeTwoIsTheZBuffer) {
    for (const A_long type : {0, 1, 2, 3}) {
        valueOf(host, "OutputType").u.pd.value = type;
        ParameterSnapshot snapshot(&host.inData());
        ASSERT_EQ(snapshot.read(), 0);
        EXPECT_EQ(snapshot.OutputZBuffer, type == 2);
    }
}

TEST_F(ParameterSnapshotTest, WithoutMultipliersNoNoiseTableIsBuilt) {
    for (const std::string& id : registrationList()) {
        if (id.ends_with(".Multiplier")) {
            valueOf(host, id).u.fs_d.value = id.starts_with("Noise.Custom1.") ? -0.0 : 0.0;
        }
    }
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    for (const PropertyEvaluator* property : everyProperty(snapshot)) {
        EXPECT_EQ(property->Noise.table, nullptr);
        EXPECT_EQ(property->Noise.sample(0.3f, 0.7f), 0.0);
    }
    for (const NoiseSource& noise : snapshot.Noise) {
        EXPECT_EQ(noise.table, nullptr);
        EXPECT_EQ(noise.sample(0.3f, 0.7f), 0.0);
    }
}

bool isTableOf(const NoiseSource& noise, std::uint32_t seed) {
    const PerlinTable expected(seed);
    return noise.table != nullptr && std::equal(expected.entries(), expected.entries() + 512, noise.table->entries());
}

TEST_F(ParameterSnapshotTest, NoiseTablesAreBuiltFromTheirSeeds) {
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    const auto seedOf = [](std::string_view id) { return static_cast<std::uint32_t>(parameterIndex(id)); };
    EXPECT_TRUE(isTableOf(snapshot.InstanceSize.Noise, seedOf("InstanceSize.Noise.Seed")));
    EXPECT_TRUE(isTableOf(snapshot.InstanceColor.Saturation.Noise, seedOf("InstanceColor.Saturation.Noise.Seed")));
    EXPECT_TRUE(isTableOf(snapshot.Noise[9], seedOf("Noise.Custom10.Seed")));
}

TEST_F(ParameterSnapshotTest, ANoiseTableIsBuiltAfterAFailedReadWhereTheMultiplierIsKnown) {
    host.checkoutFailure = {readOf("InstanceSize.Noise.Seed"), 5};
    ParameterSnapshot snapshot(&host.inData());
    EXPECT_EQ(snapshot.read(), 5);
    EXPECT_TRUE(isTableOf(snapshot.InstanceSize.Noise, 0));
    EXPECT_EQ(snapshot.InstanceOffsetX.Noise.table, nullptr);
}

TEST_F(ParameterSnapshotTest, ANoiseWhoseMultiplierFailedHasNoTable) {
    host.checkoutFailure = {readOf("InstanceSize.Noise.Multiplier"), 5};
    ParameterSnapshot snapshot(&host.inData());
    EXPECT_EQ(snapshot.read(), 5);
    EXPECT_EQ(snapshot.InstanceSize.Noise.table, nullptr);
}

TEST_F(ParameterSnapshotTest, AnyFailedReadKeepsTheListWholeAndLaterFieldsUnread) {
    const ParameterSnapshot untouched(&host.inData());
    for (std::size_t n = 1; n <= readCount; ++n) {
        host.checkouts.clear();
        host.checkoutFailure = {static_cast<int>(n), static_cast<PF_Err>(500 + n)};
        ParameterSnapshot snapshot(&host.inData());
        ASSERT_EQ(snapshot.read(), static_cast<PF_Err>(500 + n));
        ASSERT_EQ(host.checkouts.size(), n) << "the host is asked no further";
        ASSERT_EQ(snapshot.layers.checkouts.size(), readCount);
        ASSERT_EQ(snapshot.layers.firstLayerCheckout, firstLayer);
        for (std::size_t i = 0; i < readCount; ++i) {
            const SnapshotRead& read = reads()[i];
            const std::vector<double> fields = read.fields(snapshot);
            const bool wasRead = i + 1 < n || (read.id == "CountX" && n > 11);
            if (!fields.empty()) {
                ASSERT_TRUE(holds(fields, wasRead ? expectedFields(read) : read.fields(untouched)))
                    << read.id << ", failing at read " << n;
            }
        }
    }
}

TEST_F(ParameterSnapshotTest, SkippedReadsLeaveZeroRecords) {
    host.checkoutFailure = {1, 5};
    ParameterSnapshot snapshot(&host.inData());
    EXPECT_EQ(snapshot.read(), 5);
    const PF_ParamDef zero = {};
    for (const PF_ParamDef& record : snapshot.layers.checkouts) {
        EXPECT_EQ(record.param_type, zero.param_type);
        EXPECT_EQ(record.u.ld.data, nullptr);
        EXPECT_EQ(record.u.arb_d.value, nullptr);
    }
}

TEST_F(ParameterSnapshotTest, ReleaseChecksEveryEntryInInOrder) {
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    EXPECT_EQ(snapshot.release(host.inData().inter), 0);
    ASSERT_EQ(host.checkins.size(), readCount);
    for (std::size_t i = 0; i < readCount; ++i) {
        EXPECT_EQ(host.checkins[i], host.checkouts[i].record);
    }
    EXPECT_TRUE(snapshot.layers.checkouts.empty());
}

TEST_F(ParameterSnapshotTest, ReleaseStopsAtItsFirstError) {
    ParameterSnapshot snapshot(&host.inData());
    ASSERT_EQ(snapshot.read(), 0);
    host.checkinFailure = {7, 31};
    EXPECT_EQ(snapshot.release(host.inData().inter), 31);
    EXPECT_EQ(host.checkins.size(), 7u);
    EXPECT_TRUE(snapshot.layers.checkouts.empty());
}

TEST_F(ParameterSnapshotTest, ReleaseAfterAFailedReadChecksInTheSkippedEntriesToo) {
    host.checkoutFailure = {3, 5};
    ParameterSnapshot snapshot(&host.inData());
    EXPECT_EQ(snapshot.read(), 5);
    EXPECT_EQ(snapshot.release(host.inData().inter), 0);
    EXPECT_EQ(host.checkins.size(), readCount);
}

TEST_F(ParameterSnapshotTest, ReleaseOfAnUnreadSnapshotDoesNothing) {
    ParameterSnapshot snapshot(&host.inData());
    EXPECT_EQ(snapshot.release(host.inData().inter), 0);
    EXPECT_TRUE(host.checkins.empty());
}

TEST_F(ParameterSnapshotTest, DestructionLeavesTheCheckoutsToTheHost) {
    {
        ParameterSnapshot snapshot(&host.inData());
        ASSERT_EQ(snapshot.read(), 0);
    }
    EXPECT_TRUE(host.checkins.empty());
}

}  // namespace
}  // namespace Tessavoy
