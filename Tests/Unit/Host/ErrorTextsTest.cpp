#include "Host/ErrorTexts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace TessavoyHost {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

constexpr PF_Err known[] = {
    PF_Err_OUT_OF_MEMORY,    PF_Err_INTERNAL_STRUCT_DAMAGED, PF_Err_INVALID_INDEX, PF_Err_UNRECOGNIZED_PARAM_TYPE,
    PF_Err_INVALID_CALLBACK, PF_Err_BAD_CALLBACK_PARAM,      PF_Interrupt_CANCEL,  PF_Err_CANNOT_PARSE_KEYFRAME_TEXT};

TEST(HostErrorTexts, TellEveryErrorOfTheInterfaceApart) {
    std::set<std::string_view> meanings{errorText(99).meaning};
    for (const PF_Err error : known) {
        EXPECT_EQ(errorText(error).error, error);
        EXPECT_TRUE(meanings.insert(errorText(error).meaning).second) << error;
    }
}

// Parts of a sentence: other parts are put round them.
TEST(HostErrorTexts, ArePartsOfASentence) {
    for (const PF_Err error : known) {
        for (const std::string_view text : {errorText(error).meaning, errorText(error).remedy}) {
            EXPECT_EQ(text.find('\n'), std::string_view::npos) << text;
            EXPECT_FALSE(text.ends_with('.')) << text;
        }
        EXPECT_FALSE(errorText(error).meaning.empty()) << error;
    }
}

TEST(HostErrorTexts, OfMemoryNameWhatMakesAFrameSmaller) {
    EXPECT_THAT(std::string(errorText(PF_Err_OUT_OF_MEMORY).remedy),
                ::testing::AllOf(HasSubstr("--resolution"), HasSubstr("CountX"), HasSubstr("CountY"), HasSubstr("MSAA"),
                                 HasSubstr("textures")));
}

TEST(HostErrorTexts, StandBesideTheNumberOfAFramesError) {
    const std::string remedy(errorText(4).remedy);
    EXPECT_EQ(frameFailure(4, ""), "out of memory, or OpenGL refused (error 4); " + remedy);
    EXPECT_EQ(frameFailure(4, "no paint"), "no paint (error 4); " + remedy);
    EXPECT_EQ(frameFailure(PF_Interrupt_CANCEL, ""), "interrupted (error 517)");
    EXPECT_THAT(frameFailure(99, ""), ::testing::StartsWith("the module gives no reason (error 99)"));
}

TEST(HostErrorTexts, TellWhatFailed) {
    EXPECT_EQ(failureOf("painting", 4), "painting failed with error 4: out of memory, or OpenGL refused");
    EXPECT_EQ(failureOf("painting", 513, "no paint"), "painting failed with error 513: no paint");
}

}  // namespace
}  // namespace TessavoyHost
