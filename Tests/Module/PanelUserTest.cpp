#include "Host/Panel/PanelUser.h"

#include <cmath>
#include <cstring>
#include <optional>

#include "Host/ArbitraryCalls.h"
#include "Host/HostError.h"
#include "Tests/Module/PanelFixture.h"
#include "Tests/Support/FlatBytes.h"

// The module's controls and parameters under the hands of a user.

namespace TessavoyHost {
namespace {

using Tessavoy::flatBytes;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int margin = 6;  // of the track in a control's frame, on each side

class ModulePanelUser : public PanelFixture {
protected:
    void TearDown() override {
        mUser.reset();
        mInstance.reset();
        ModuleFixture::TearDown();
    }

    EffectInstance& instance() {
        if (mInstance == nullptr)
            mInstance = instanceOf(scene);
        return *mInstance;
    }

    PanelUser& user() {
        if (mUser == nullptr)
            mUser = std::make_unique<PanelUser>(instance());
        return *mUser;
    }

    // A place in a control by shares of its track, from the left and from the top.
    PF_Point at(const char* id, double x, double y) {
        const PF_Rect place = user().placeOf(parameterIndexOf(id));
        const auto along = [](A_long from, A_long to, double share) {
            return from + margin + static_cast<A_long>(std::lround(share * (to - from - 2 * margin)));
        };
        return {along(place.left, place.right, x), along(place.top, place.bottom, y)};
    }

    std::vector<std::byte> flat(const char* id) {
        const int index = parameterIndexOf(id);
        const auto value = instance().values().arbitraryAt(index, 0);
        return ArbitraryCalls(host(), host().parameters()[static_cast<std::size_t>(index)])
            .flatten(static_cast<PF_Handle>(value.get()));
    }

    void expectChange(const UserAction& action, const char* id) {
        EXPECT_EQ(action.error, PF_Err_NONE) << action.message;
        EXPECT_THAT(action.broken, IsEmpty());
        EXPECT_THAT(action.changed, ElementsAre(parameterIndexOf(id)));
        EXPECT_TRUE(action.handled);
        EXPECT_TRUE(action.rerender);
        EXPECT_GT(action.redraws, 0);
    }

    UserAction change(const char* id, double value) { return user().change(parameterIndexOf(id), value); }
    std::string labelOf(const char* id) { return itemOf(instance(), id).name; }

    ModuleScene scene = fourSquaresScene();

private:
    std::unique_ptr<EffectInstance> mInstance;
    std::unique_ptr<PanelUser> mUser;
};

std::int32_t countIn(const std::vector<std::byte>& flat, std::size_t place) {
    std::int32_t count = 0;
    std::memcpy(&count, flat.data() + place, sizeof count);
    return count;
}

// White at 0 and 1, straight between. The track is 138 pixels long, and positions are whole pixels of it.
TEST_F(ModulePanelUser, AddsMovesAndRemovesAGradientsPoint) {
    constexpr const char* id = "Gradient.Custom1";
    scene.set(id, ParameterValue(ArbitraryValue{
                      flatBytes({2, 0.0F, 0, 1.0F, 1.0F, 1.0F, 1.0F, 1.0F, 0, 1.0F, 1.0F, 1.0F, 1.0F})}));
    expectChange(user().click(parameterIndexOf(id), at(id, 0.5, 0.5), 2), id);
    EXPECT_EQ(countIn(flat(id), 0), 3);
    expectChange(user().drag(parameterIndexOf(id), {at(id, 0.5, 0.5), at(id, 0.6, 0.5), at(id, 1.0 / 3, 0.5)}), id);
    EXPECT_EQ(flat(id), flatBytes({3, 0.0F, 0, 1.0F, 1.0F, 1.0F, 1.0F, 46.0F / 138.0F, 1, 1.0F, 1.0F, 1.0F, 1.0F, 1.0F,
                                   0, 1.0F, 1.0F, 1.0F, 1.0F}))
        << "a point between linear ones is eased";
    const PF_Point below = {at(id, 0.5, 0.5).h, user().placeOf(parameterIndexOf(id)).bottom + 1};
    expectChange(user().drag(parameterIndexOf(id), {at(id, 1.0 / 3, 0.5), below}), id);
    EXPECT_EQ(countIn(flat(id), 0), 2);
}

// From straight to eased to stepped, and round.
TEST_F(ModulePanelUser, GoesThroughTheKindsOfAPoint) {
    constexpr const char* id = "FogColorGradient";
    scene.set(id, ParameterValue(ArbitraryValue{flatBytes({1, 0.5F, 0, 1.0F, 0.0F, 0.0F, 1.0F})}));
    for (const std::int32_t kind : {1, 2, 0}) {
        expectChange(user().click(parameterIndexOf(id), at(id, 0.5, 0.5), 1, PF_Mod_CMD_CTRL_KEY), id);
        EXPECT_EQ(countIn(flat(id), 8), kind);
    }
}

// Everything lies beyond the end of the fog, so that squares have the gradient's last colour.
TEST_F(ModulePanelUser, AColourThatWasPickedIsInTheNextFrame) {
    constexpr const char* id = "FogColorGradient";
    scene.set("UseCompCamera", 1).set("FogEnabled", 1).set("FogStart", 0).set("FogEnd", 1);
    scene.project.camera = facingCamera(100);
    expectPicture(instance().renderFrame({}).output, fourSquares({1, 0.3, 0.3, 0.3}));
    host().services().hooks.pickColor = [](const std::string&, const PF_PixelFloat&) {
        return std::optional(PF_PixelFloat{1, 0.8F, 0.4F, 0});
    };
    expectChange(user().click(parameterIndexOf(id), at(id, 0.5, 0.5), 2), id);
    expectPicture(instance().renderFrame({}).output, fourSquares({1, 0.8, 0.4, 0}));
}

// 138 by 128 pixels.
TEST_F(ModulePanelUser, AddsMovesAndErasesARampsPoint) {
    constexpr const char* id = "Ramp.Custom2";
    scene.set(id, ParameterValue(ArbitraryValue{flatBytes({0, 1, 2, 0.0F, 1.0F, 1.0F, 1.0F})}));
    expectChange(user().click(parameterIndexOf(id), at(id, 0.5, 0.75), 2), id);
    EXPECT_EQ(flat(id), flatBytes({0, 1, 3, 0.0F, 1.0F, 0.5F, 0.25F, 1.0F, 1.0F}));
    expectChange(user().drag(parameterIndexOf(id), {at(id, 0.5, 0.75), at(id, 1.0 / 3, 0.5)}), id);
    EXPECT_EQ(flat(id), flatBytes({0, 1, 3, 0.0F, 1.0F, 46.0F / 138.0F, 0.5F, 1.0F, 1.0F}));
    user().click(parameterIndexOf(id), at(id, 1.0 / 3, 0.5), 2);
    EXPECT_EQ(flat(id), flatBytes({0, 1, 2, 0.0F, 1.0F, 1.0F, 1.0F}));
}

// Bezier, line, step, sin.
TEST_F(ModulePanelUser, GoesThroughTheInterpolationsOfARamp) {
    constexpr const char* id = "Ramp.Custom1";
    for (const std::int32_t interpolation : {1, 2, 0, 3}) {
        expectChange(user().click(parameterIndexOf(id), at(id, 0.5, 0.5), 1, PF_Mod_CMD_CTRL_KEY), id);
        EXPECT_EQ(countIn(flat(id), 4), interpolation);
    }
}

TEST_F(ModulePanelUser, EditsTheScriptByAClick) {
    scene.project.script = "x = 1";
    answerDialogs("1y = 2");
    const UserAction action = user().click(parameterIndexOf("Script"), at("Script", 0.1, 0.1));
    EXPECT_EQ(action.error, PF_Err_NONE) << action.message;
    EXPECT_TRUE(action.projectDirty);
    EXPECT_TRUE(action.rerender);
    EXPECT_THAT(action.broken, IsEmpty());
    EXPECT_THAT(linesDrawnBy(instance()), Contains("y = 2"));
}

TEST_F(ModulePanelUser, ThePanelFollowsTheCamera) {
    EXPECT_EQ(user().look().error, PF_Err_NONE);
    EXPECT_FALSE(isShown(instance(), "CenterZ"));
    EXPECT_FALSE(isShown(instance(), "InstanceRotation3DX.GroupBegin"));
    EXPECT_EQ(labelOf("Rotation"), "Grid Rotation");
    EXPECT_THROW(change("CenterZ", 5), HostError) << "nobody can reach it";
    const UserAction action = change("UseCompCamera", 1);
    EXPECT_THAT(action.broken, IsEmpty());
    EXPECT_TRUE(isShown(instance(), "CenterZ"));
    EXPECT_TRUE(isShown(instance(), "InstanceRotation3DX.GroupBegin"));
    EXPECT_EQ(labelOf("Rotation"), "Grid Rotation Z");
    EXPECT_EQ(change("CenterZ", 5).error, PF_Err_NONE);
}

TEST_F(ModulePanelUser, NamesASlotByItsButton) {
    user().look();
    EXPECT_THROW(user().press(parameterIndexOf("Float.Rename3")), HostError) << "the buttons are hidden at first";
    change("Float.ShowRenameButtons", 1);
    answerDialogs("1amount");
    const UserAction action = user().press(parameterIndexOf("Float.Rename3"));
    EXPECT_EQ(action.error, PF_Err_NONE) << action.message;
    EXPECT_TRUE(action.projectDirty);
    EXPECT_THAT(action.broken, IsEmpty());
    EXPECT_EQ(labelOf("Float.Custom3"), "Slider 3 (amount)");
}

}  // namespace
}  // namespace TessavoyHost
