#include "Source/Parameter/Sections.h"

#include "Source/Parameter/MainParams.h"
#include "Source/Parameter/Popups.h"
#include "Source/Parameter/Ranges.h"

#include <array>
#include <stdexcept>

namespace Tessavoy {

namespace {

using namespace Controls;

constexpr PF_Pixel white = {255, 255, 255, 255};

constexpr SectionItem groupBegin = {"GroupBegin", Argument::Group};
constexpr SectionItem groupEnd = {"GroupEnd", GroupEnd{}};
constexpr SectionItem value = {"Value", Argument::Value};
constexpr SectionItem valueOffset = {"ValueOffset", FloatSlider{20, Ranges::valueOffset, Display::Percent}};
constexpr SectionItem noise = {"Noise", SubSection{Section::NoiseProperty, {.label = 7}}};
constexpr SectionItem layer = {"Layer", SubSection{Section::LayerProperty, {.label = 21}}};

constexpr SectionItem gridParam[] = {groupBegin, value, valueOffset, noise, layer, groupEnd};

constexpr SectionItem alphaParam[] = {
    groupBegin, {"CropToOne", Checkbox{32, 33, true}}, value, valueOffset, noise, layer, groupEnd};

constexpr SectionItem indexParam[] = {
    groupBegin, {"LoopIndexes", Checkbox{36, 37, false}}, value, valueOffset, noise, layer, groupEnd};

constexpr SectionItem colorParam[] = {
    groupBegin,
    {"Color", Color{28, white}},
    {"Layer", SubSection{Section::LayerProperty, {.label = 21, .source = Popups::layerColor}}},
    {"Brightness",
     SubSection{Section::GridParam, {.label = 29, .value = Ranges::centred, .display = Display::Percent}}},
    {"Hue", SubSection{Section::GridParam, {.label = 30, .value = Ranges::centred}}},
    {"Saturation",
     SubSection{Section::GridParam, {.label = 31, .value = Ranges::centred, .display = Display::Percent}}},
    groupEnd,
};

constexpr SectionItem visibleParam[] = {
    groupBegin,
    {"Probability", FloatSlider{34, Ranges::share, Display::Percent}},
    {"Seed", Slider{35, Ranges::seed}},
    groupEnd,
};

constexpr SectionItem noiseMultiplier = {"Multiplier", Multiplier{8}};
constexpr SectionItem noiseResultOffset = {"ResultOffset", FloatSlider{9, Ranges::resultOffset, Display::Percent}};
constexpr SectionItem noiseSeed = {"Seed", Slider{10, Ranges::seed}};
constexpr SectionItem noiseScale = {"Scale", FloatSlider{11, Ranges::scale}};
constexpr SectionItem noiseScaleX = {"ScaleX", FloatSlider{12, Ranges::axisScale}};
constexpr SectionItem noiseScaleY = {"ScaleY", FloatSlider{13, Ranges::axisScale}};
constexpr SectionItem noiseOffsetX = {"OffsetX", FloatSlider{14, Ranges::unit}};
constexpr SectionItem noiseOffsetY = {"OffsetY", FloatSlider{15, Ranges::unit}};
constexpr SectionItem noiseOffsetZ = {"OffsetZ", FloatSlider{16, Ranges::unit}};
constexpr SectionItem noiseLoopZ = {"LoopZ", FloatSlider{17, Ranges::loop}};
constexpr SectionItem noiseMultLayer = {"MultLayer", SubSection{Section::MultLayerProperty, {.label = 18}}};

constexpr SectionItem noiseProperty[] = {groupBegin,   noiseMultiplier, noiseSeed,      noiseScale,
                                         noiseScaleX,  noiseScaleY,     noiseOffsetX,   noiseOffsetY,
                                         noiseOffsetZ, noiseLoopZ,      noiseMultLayer, groupEnd};

constexpr SectionItem noiseCustomProperty[] = {
    groupBegin,   noiseMultiplier, noiseResultOffset, noiseSeed,  noiseScale,     noiseScaleX, noiseScaleY,
    noiseOffsetX, noiseOffsetY,    noiseOffsetZ,      noiseLoopZ, noiseMultLayer, groupEnd};

constexpr SectionItem layerProperty[] = {
    groupBegin, {"Multiplier", Multiplier{22}}, {"Index", Popups::customLayer(23)}, {"Source", Argument::Source},
    groupEnd,
};

constexpr SectionItem multLayerProperty[] = {
    groupBegin,
    {"Index", Popups::customLayer(23)},
    {"Source", Argument::Source},
    groupEnd,
};

constexpr SectionItem randomProperty[] = {
    groupBegin,
    {"Min", FloatSlider{39, Ranges::randomMin}},
    {"Max", FloatSlider{40, Ranges::randomMax}},
    {"Seed", Slider{41, Ranges::seed}},
    groupEnd,
};

/// The ten slots of a custom section, each followed by its rename button. The three custom tables differ in what a slot
/// is.
constexpr std::array<SectionItem, 23> customItems(const SectionItem& slot) {
    constexpr std::string_view names[] = {"Custom1", "Rename1", "Custom2", "Rename2", "Custom3",  "Rename3", "Custom4",
                                          "Rename4", "Custom5", "Rename5", "Custom6", "Rename6",  "Custom7", "Rename7",
                                          "Custom8", "Rename8", "Custom9", "Rename9", "Custom10", "Rename10"};
    constexpr SectionItem rename = {"", Button{124, 125}};
    std::array<SectionItem, 23> items;
    items.front() = groupBegin;
    items[1] = {"ShowRenameButtons", Checkbox{122, 123, false, PanelSwitch}};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        items[i + 2] = {names[i], i % 2 == 0 ? slot.content : rename.content};
    }
    items.back() = groupEnd;
    return items;
}

constexpr auto customParameters = customItems({"", Argument::Slot});
constexpr auto customNoiseParameters = customItems({"", SubSection{Section::NoiseCustomProperty, {.label = 136}}});
constexpr auto customRandomParameters = customItems({"", SubSection{Section::RandomProperty, {.label = 139}}});

struct SectionTable {
    std::string_view name;
    std::span<const SectionItem> items;
};

const SectionTable& tableOf(Section section) {
    // in the order of the enumerators
    static const SectionTable tables[] = {
        {"MainParams", mainParams()},
        {"GridParam", gridParam},
        {"AlphaParam", alphaParam},
        {"IndexParam", indexParam},
        {"ColorParam", colorParam},
        {"VisibleParam", visibleParam},
        {"NoiseProperty", noiseProperty},
        {"NoiseCustomProperty", noiseCustomProperty},
        {"LayerProperty", layerProperty},
        {"MultLayerProperty", multLayerProperty},
        {"RandomProperty", randomProperty},
        {"CustomParameters", customParameters},
        {"CustomNoiseParameters", customNoiseParameters},
        {"CustomRandomParameters", customRandomParameters},
    };
    return tables[static_cast<std::size_t>(section)];
}

}  // namespace

std::span<const SectionItem> sectionItems(Section section) {
    return tableOf(section).items;
}

A_long slotNumber(Section section, A_long item) {
    const bool custom = section == Section::CustomParameters || section == Section::CustomNoiseParameters ||
                        section == Section::CustomRandomParameters;
    const bool inSlots = item >= 2 && item < static_cast<A_long>(sectionItems(section).size()) - 1;
    return custom && inSlots ? item / 2 : 0;
}

std::string_view parameterName(Section section, A_long item) {
    const auto& [sectionName, items] = tableOf(section);
    if (item < 0 || item >= static_cast<A_long>(items.size())) {
        throw std::runtime_error("Failed to get Id for section " + std::string(sectionName));
    }
    return items[static_cast<std::size_t>(item)].name;
}

std::string composeId(std::string_view prefix, std::string_view name) {
    std::string id(prefix);
    if (!id.empty()) {
        id += '.';
    }
    id += name;
    return id;
}

std::string composeId(Section section, std::string_view prefix, A_long item) {
    return composeId(prefix, parameterName(section, item));
}

}  // namespace Tessavoy
