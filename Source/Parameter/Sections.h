#pragma once

#include "HostInterface/Types.h"
#include "Source/Parameter/Declaration.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace Tessavoy {

/// The sections of the parameter tree. A section is a table of items; an item is one parameter or a whole section
/// again.
enum class Section {
    MainParams,
    GridParam,
    AlphaParam,
    IndexParam,
    ColorParam,
    VisibleParam,
    NoiseProperty,
    NoiseCustomProperty,
    LayerProperty,
    MultLayerProperty,
    RandomProperty,
    CustomParameters,
    CustomNoiseParameters,
    CustomRandomParameters,
};

/// What a section's place in the tree decides about the parameters in it.
struct SectionArguments {
    A_long label = 0;                                   ///< of the section's group
    A_long groupUi = PF_PUI_NONE;                       ///< of the section's group
    FloatParamDefaults value{};                         ///< of Value
    Display display = Display::Number;                  ///< of Value
    std::optional<FloatParamDefaults> multiplier = {};  ///< of every Multiplier; else that of the section around
    std::optional<Controls::Popup> source = {};         ///< of Source; else the usual choice of channels
    Declaration slot = {};                              ///< of Custom1 to Custom10
};

/// A parameter whose declaration is, wholly or in part, one of the section's arguments.
enum class Argument { Group, Value, Source, Slot };

/// A Multiplier; its label differs from block to block, its numbers are the section's argument.
struct Multiplier {
    A_long label;
};

/// An item that expands to a section.
struct SubSection {
    Section section;
    SectionArguments arguments;
};

struct SectionItem {
    std::string_view name;
    std::variant<Declaration, Argument, Multiplier, SubSection> content;
};

/// The items of a section in the panel's order. An item's id within the section is its place, from 0.
std::span<const SectionItem> sectionItems(Section section);

/// The slot number, 1 to 10, of the items CustomN and RenameN of a custom section; 0 for all other items.
A_long slotNumber(Section section, A_long item);

/// The item's name. Throws std::runtime_error "Failed to get Id for section NAME" for an id out of the section's range.
std::string_view parameterName(Section section, A_long item);

/// The prefix, a dot and the name, or the name alone where there is no prefix.
std::string composeId(std::string_view prefix, std::string_view name);

/// The same for an item by its id; throws as parameterName does.
std::string composeId(Section section, std::string_view prefix, A_long item);

}  // namespace Tessavoy
