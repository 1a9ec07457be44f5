#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

#include "Tests/Module/ModuleFixture.h"
#include "Tests/Pictures/Picture.h"
#include "Tests/Support/ReferenceOutput.h"

namespace Tessavoy {

/// What comparing a rendered picture with the reference came to.
struct PictureJudgement {
    ReferenceOutput expected;
    PictureComparison comparison;
    int drawn = 0;  ///< comparable pixels on which something must be seen
};

/// Compares a world with what the reference drew, off by no more than `tolerance`.
PictureJudgement judge(const ReferencePicture& reference, const TessavoyHost::World& world, double tolerance);

/// What the reference draws for a view of a picture.
ReferencePicture referenceOf(const Picture& picture, const View& view);

/// Renders pictures by the built module and has them judged by the reference. When they differ, the expected and the
/// rendered picture, their difference and a scene that shows it again are in a folder that the failure names.
class PictureFixture : public TessavoyHost::ModuleFixture {
protected:
    /// Every comparable pixel of the rendered view is as the reference says, and enough of them are. Gives the number
    /// of compared pixels on which something is seen.
    int expectAsReference(const Picture& picture, const View& view) {
        return expectAsDrawn(picture, view, referenceOf(picture, view));
    }

    /// The same for the whole picture at all depths.
    void expectAsReferenceAtEveryDepth(const Picture& picture);

private:
    int expectAsDrawn(const Picture& picture, const View& view, const ReferencePicture& reference);
    std::string report(const Picture& picture, const View& view, const TessavoyHost::World& world,
                       const PictureJudgement& judgement);
};

/// A picture of a table, by a name that tells its parts.
struct NamedPicture {
    const char* name;
    Picture (*make)();
};

/// Every picture of a table at every depth, as it is and with the doubled scene. A file of pictures says no more than
/// INSTANTIATE_TEST_SUITE_P(Kind, EveryDepth, everyDepthOf(table), nameOf).
class EveryDepth : public PictureFixture, public testing::WithParamInterface<std::tuple<NamedPicture, bool>> {
protected:
    void expectPicture();
};

/// The parameters for all pictures of a table.
inline auto everyDepthOf(const std::vector<NamedPicture>& table) {
    return testing::Combine(testing::ValuesIn(table), testing::Bool());
}

/// Names such as "SquaresAdd_Doubled".
std::string nameOf(const testing::TestParamInfo<EveryDepth::ParamType>& info);

/// Pictures at other resolutions and in parts, instantiated alike. They are drawn at twice the size that their table
/// tells.
class OtherViews : public PictureFixture, public testing::WithParamInterface<std::tuple<NamedPicture, View>> {
protected:
    void expectPicture();
};

/// Views of a picture of 144 by 96 pixels: coarser ones, a part, and parts of coarser ones, at different depths, some
/// with the doubled scene.
const std::vector<View>& otherViews();

inline auto otherViewsOf(const std::vector<NamedPicture>& table) {
    return testing::Combine(testing::ValuesIn(table), testing::ValuesIn(otherViews()));
}

std::string nameOfView(const testing::TestParamInfo<OtherViews::ParamType>& info);

void PrintTo(const NamedPicture& picture, std::ostream* stream);
void PrintTo(const View& view, std::ostream* stream);

}  // namespace Tessavoy
