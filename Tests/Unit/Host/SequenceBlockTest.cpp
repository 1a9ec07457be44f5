#include "Host/SequenceBlock.h"

#include <gtest/gtest.h>

#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

TEST(HostSequenceBlock, GivesItsScriptBack) {
    for (const char* script : {"", "x = 1", "x = \"\xC3\xA4\"\r\n"})
        EXPECT_EQ(scriptIn(sequenceBlock(script, {{7, "wind"}}, 626176)), script);
}

// The texts begin behind as many bytes as the header says that it has.
TEST(HostSequenceBlock, TheHeaderMayBeLonger) {
    auto block = sequenceBlock("x = 1", {}, 626176);
    block[8] = std::byte{20};
    block.insert(block.begin() + 24, 4, std::byte{0});
    EXPECT_EQ(scriptIn(block), "x = 1");
}

TEST(HostSequenceBlock, RefusesADamagedBlock) {
    const auto whole = sequenceBlock("x = 1", {}, 626176);
    EXPECT_THROW(scriptIn({}), HostError);
    EXPECT_THROW(scriptIn({whole.begin(), whole.begin() + 23}), HostError);
    for (const std::size_t place : {8, 11, 16, 19}) {
        auto block = whole;
        block[place] = std::byte{0xFF};
        EXPECT_THROW(scriptIn(block), HostError) << place;
    }
    auto block = whole;
    block[16] = std::byte{0};
    EXPECT_THROW(scriptIn(block), HostError);
}

}  // namespace
}  // namespace TessavoyHost
