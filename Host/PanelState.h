#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "Host/RegisteredParameter.h"

namespace TessavoyHost {

// How the parameters of one instance show in the panel, which the module changes through streams and PF_UpdateParamUI.
// Thread safe.
class PanelState {
public:
    struct Item {
        std::string name;  // UTF-8
        bool hidden = false;
    };

    explicit PanelState(const std::vector<RegisteredParameter>& parameters) {
        for (const RegisteredParameter& parameter : parameters)
            mItems.push_back({parameter.definition.name, (parameter.definition.ui_flags & PF_PUI_INVISIBLE) != 0});
    }

    Item at(int index) const {
        const std::lock_guard lock(mMutex);
        return mItems.at(static_cast<std::size_t>(index));
    }
    void rename(int index, const std::string& name) {
        const std::lock_guard lock(mMutex);
        mItems.at(static_cast<std::size_t>(index)).name = name;
    }
    void hide(int index, bool hidden) {
        const std::lock_guard lock(mMutex);
        mItems.at(static_cast<std::size_t>(index)).hidden = hidden;
    }

private:
    mutable std::mutex mMutex;
    std::vector<Item> mItems;
};

}  // namespace TessavoyHost
