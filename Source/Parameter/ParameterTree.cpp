#include "Source/Parameter/ParameterTree.h"

#include "Source/Parameter/Popups.h"
#include "Source/Parameter/Ranges.h"
#include "Source/Parameter/Sections.h"

#include <utility>

namespace Tessavoy {

namespace {

/// One section at its place in the tree: what its items take from there.
class SectionExpansion {
public:
    SectionExpansion(std::vector<ParameterDescription>& list, std::string prefix, const SectionArguments& arguments,
                     A_long slot)
        : mList(list), mPrefix(std::move(prefix)), mArguments(arguments), mSlot(slot) {}

    void expand(Section section) {
        A_long item = 0;
        for (const SectionItem& row : sectionItems(section)) {
            mId = composeId(mPrefix, row.name);
            mItemSlot = slotNumber(section, item++);
            std::visit(*this, row.content);
        }
    }

    void operator()(const Declaration& declaration) { mList.push_back({mId, declaration, 0}); }

    void operator()(Argument argument) {
        switch (argument) {
            case Argument::Group:
                mList.push_back(
                    {mId, Controls::GroupStart{.label = mArguments.label, .ui = mArguments.groupUi}, mSlot});
                break;
            case Argument::Value:
                mList.push_back({mId, Controls::FloatSlider{19, mArguments.value, mArguments.display}, 0});
                break;
            case Argument::Source:
                mList.push_back({mId, mArguments.source.value_or(Popups::channel), 0});
                break;
            case Argument::Slot:
                mList.push_back({mId, mArguments.slot, mItemSlot});
                break;
        }
    }

    void operator()(Multiplier multiplier) {
        mList.push_back({mId, Controls::FloatSlider{multiplier.label, mArguments.multiplier.value()}, 0});
    }

    void operator()(const SubSection& sub) {
        SectionArguments inner = sub.arguments;
        if (!inner.multiplier) {
            inner.multiplier = mArguments.multiplier;
        }
        SectionExpansion(mList, mId, inner, mItemSlot).expand(sub.section);
    }

private:
    std::vector<ParameterDescription>& mList;
    std::string mPrefix;
    const SectionArguments& mArguments;
    A_long mSlot;
    std::string mId;
    A_long mItemSlot = 0;
};

std::vector<ParameterDescription> expandTree() {
    constexpr std::size_t count = 996;
    std::vector<ParameterDescription> list;
    list.reserve(count);
    const SectionArguments top = {.multiplier = Ranges::multiplier};
    SectionExpansion(list, "", top, 0).expand(Section::MainParams);
    return list;
}

}  // namespace

const std::vector<ParameterDescription>& parameterTree() {
    static const std::vector<ParameterDescription> tree = expandTree();
    return tree;
}

}  // namespace Tessavoy
