#pragma once

#include <memory>
#include <vector>

#include "HostInterface/Types.h"

namespace TessavoyHost {

class EffectInstance;

// One of the application's objects behind a handle: the handle is the address of the first field, so that the record is
// found from it.
template <class Opaque, class Record>
struct Handled {
    Opaque* master = nullptr;
    Record record;

    Opaque** handle() { return &master; }
    static Record& of(Opaque** handle) { return reinterpret_cast<Handled*>(handle)->record; }
};

struct LayerRecord {
    static constexpr int camera = -1;
    int layer;  // place in the project, or camera
};
struct CompositionRecord {};
struct ItemRecord {};

// An effect reference or a stream of one parameter; lent to modules and disposed of by them.
struct EffectRecord {
    EffectInstance* instance;
};
struct StreamRecord {
    EffectInstance* instance;
    int parameter;
};

using LayerObject = Handled<AEGP_Layer, LayerRecord>;
using CompositionObject = Handled<AEGP_Comp, CompositionRecord>;
using ItemObject = Handled<AEGP_Item, ItemRecord>;
using EffectObject = Handled<AEGP_Effect, EffectRecord>;
using StreamObject = Handled<AEGPp_Stream, StreamRecord>;

// The borrowed objects of one project: its layers, camera, composition and the composition's item. Handles stay the
// same as long as the instance lives. Read-only, so safe from any thread.
class ApplicationObjects {
public:
    explicit ApplicationObjects(int layers);

    AEGP_LayerH layer(int index) { return mLayers.at(static_cast<std::size_t>(index)).handle(); }
    AEGP_LayerH camera() { return mCamera.handle(); }
    AEGP_CompH composition() { return mComposition.handle(); }
    AEGP_ItemH item() { return mItem.handle(); }

    // The record behind a handle of these, or null.
    const LayerRecord* find(AEGP_LayerH handle) const;
    bool isComposition(AEGP_CompH handle) const { return handle == &mComposition.master; }
    bool isItem(AEGP_ItemH handle) const { return handle == &mItem.master; }

    // Layer ids count from 1; 0 is none.
    static A_long idOf(int layer) { return layer + 1; }
    static int layerOfId(A_long id) { return id - 1; }

private:
    std::vector<LayerObject> mLayers;
    LayerObject mCamera{nullptr, {LayerRecord::camera}};
    CompositionObject mComposition;
    ItemObject mItem;
};

}  // namespace TessavoyHost
