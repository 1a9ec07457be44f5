#pragma once

#include "HostInterface/Effect.h"

namespace Tessavoy {

/// Under this number the effect's own layer is checked out before the render and its pixels during it.
inline constexpr A_long ownLayerCheckoutId = 0;

/// Asks for the effect's own layer at the requested rectangle and promises exactly that: the picture never extends past
/// the layer, whatever the instances do. Custom layers are checked out during the render. Returns the host's error
/// value.
PF_Err SmartPreRender(PF_InData* inData, PF_PreRenderExtra* extra);

/// Merges a source rectangle into a target: an empty target takes the source, an empty source changes nothing,
/// otherwise the target grows to the union. Empty means that left is not below right or top not below bottom.
void mergeRectangle(const PF_LRect& source, PF_LRect& target);

}  // namespace Tessavoy
