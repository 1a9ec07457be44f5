#include "Source/Parameter/ParametersCustomBank.h"

#include "Source/HostAccess/Exception.h"
#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/MainParams.h"
#include "Tests/Support/CustomKinds.h"
#include "Tests/Support/FakeHandleHost.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>

namespace Tessavoy {
namespace {

using Testing::customKinds;
using Type = CustomParameterType;

constexpr std::array types = {Type::Float, Type::Color,    Type::Layer, Type::Noise,   Type::Random,
                              Type::Ramp,  Type::Gradient, Type::Path,  Type::Point2D, Type::Point3D};

class ParametersCustomBank : public ::testing::Test {
protected:
    ParametersCustomBank() { host.inData.sequence_data = &mBlock; }

    CustomParameterBank bankOf(Type type) { return {&host.inData, suites, type}; }

    FakeHandleHost host;
    SuiteHandler suites{host.inData.pica_basicP};
    SequenceData record;

private:
    void* mBlock = &record;
};

TEST_F(ParametersCustomBank, KindsStandInThePanelsOrder) {
    constexpr std::size_t firstSection = 54;
    for (std::size_t kind = 0; kind < customKinds.size(); ++kind) {
        EXPECT_EQ(static_cast<std::size_t>(types[kind]), kind);
        EXPECT_EQ(kindPrefix(types[kind]), customKinds[kind].prefix);
        EXPECT_EQ(mainParams()[firstSection + kind].name, customKinds[kind].prefix);
        EXPECT_EQ(customKind(types[kind]).customSuffix, customKinds[kind].suffix);
    }
    EXPECT_EQ(static_cast<std::size_t>(Type::Size), customKinds.size());
}

// A section is its start, its switch, and ten times a slot and its button.
TEST_F(ParametersCustomBank, SlotsAreFoundByIndexAndDiskId) {
    for (std::size_t number = 0; number < customKinds.size(); ++number) {
        const auto& kind = customKinds[number];
        const CustomParameterBank bank = bankOf(types[number]);
        for (A_long k = 0; k < 10; ++k) {
            SCOPED_TRACE(kind.prefix + std::string(" ") + std::to_string(k));
            const CustomParameterSlot slot = bank.slotInfo(k);
            const PF_ParamIndex index = kind.section + 2 + k * (kind.slotSize + 1);
            EXPECT_EQ(slot.slot, k);
            EXPECT_EQ(slot.index, index);
            EXPECT_EQ(slot.nameIndex, index + kind.slotSize);
            EXPECT_EQ(slot.diskId, kind.firstDiskId + k * kind.diskIdStep);
        }
    }
}

TEST_F(ParametersCustomBank, SlotsHaveIdsOfTheirSections) {
    EXPECT_EQ(slotNameId(Type::Float, 1), "Float.Custom1");
    EXPECT_EQ(slotNameId(Type::Random, 10), "Random.Custom10.GroupBegin");
    EXPECT_EQ(slotRenameId(Type::Noise, 3), "Noise.Rename3");
    EXPECT_EQ(renameSwitchId(Type::Point3D), "Point3D.ShowRenameButtons");
}

TEST_F(ParametersCustomBank, NamesAreKeptUnderTheDiskId) {
    CustomParameterBank bank = bankOf(Type::Color);
    EXPECT_EQ(bank.slotName(316), "");
    bank.setSlotName(316, "Sky");
    bank.setSlotName(317, "Sea");
    bank.setSlotName(316, "Evening sky");
    EXPECT_EQ(bank.slotName(316), "Evening sky");
    EXPECT_EQ(record.paramNames, (ParameterNames{{316, "Evening sky"}, {317, "Sea"}}));
    bank.setSlotName(316, "");
    bank.setSlotName(999, "");
    EXPECT_EQ(record.paramNames, (ParameterNames{{317, "Sea"}})) << "an empty name drops the entry";
}

TEST_F(ParametersCustomBank, AnInstanceThatKeepsNothingHasNoNames) {
    host.inData.sequence_data = nullptr;
    CustomParameterBank bank = bankOf(Type::Float);
    EXPECT_EQ(bank.slotName(304), "");
    try {
        bank.setSlotName(304, "Speed");
        FAIL() << "nothing was thrown";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code(), 512);
    }
}

TEST_F(ParametersCustomBank, LabelsAreTheKindAndTheNumberAndTheName) {
    for (std::size_t kind = 0; kind < customKinds.size(); ++kind) {
        const CustomParameterBank bank = bankOf(types[kind]);
        const std::string label = customKinds[kind].label;
        EXPECT_EQ(bank.slotLabel(0, ""), label + " 1");
        EXPECT_EQ(bank.slotLabel(9, ""), label + " 10");
        EXPECT_EQ(bank.slotLabel(2, "Wind"), label + " 3 (Wind)");
        EXPECT_EQ(bank.slotLabel(2, "%s %n %d"), label + " 3 (%s %n %d)");
    }
}

// "Slider 1 (" and ")" are 11 characters.
TEST_F(ParametersCustomBank, ALabelOf31CharactersOrMoreEndsInThreeDots) {
    const CustomParameterBank bank = bankOf(Type::Float);
    EXPECT_EQ(bank.slotLabel(0, "1234567890123456789"), "Slider 1 (1234567890123456789)");
    EXPECT_EQ(bank.slotLabel(0, "12345678901234567890"), "Slider 1 (123456789012345678...");
    EXPECT_EQ(bank.slotLabel(0, "123456789012345678901"), "Slider 1 (123456789012345678...");
    EXPECT_EQ(bank.slotLabel(0, "1234567890123456789012345678901"), "Slider 1 (123456789012345678...");
    EXPECT_EQ(bank.slotLabel(9, "1234567890123456789"), "Slider 10 (12345678901234567...");
    EXPECT_EQ(bank.slotLabel(0, std::string(5000, 'x')), "Slider 1 (" + std::string(18, 'x') + "...");
    EXPECT_EQ(bank.slotLabel(0, "12345678901234567890").size(), 31u);
}

// A cut may fall into a character of several bytes.
TEST_F(ParametersCustomBank, LabelsCountBytes) {
    const CustomParameterBank bank = bankOf(Type::Path);
    const std::string name = "\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC\xC3\xBC";
    EXPECT_EQ(bank.slotLabel(0, name), "Path 1 (" + name.substr(0, 20) + "...");
    EXPECT_EQ(bank.slotLabel(9, name), "Path 10 (" + name.substr(0, 19) + "...");
}

using ParametersCustomBankDeathTest = ParametersCustomBank;

TEST_F(ParametersCustomBankDeathTest, SizeIsNoKind) {
    for (const Type type : {Type::Size, static_cast<Type>(11)}) {
        EXPECT_DEATH(bankOf(type), "type != CustomParameterType::Size, file Source/Parameter/Parameters");
    }
}

}  // namespace
}  // namespace Tessavoy
