#pragma once

#include "HostInterface/Constants.h"
#include "HostInterface/Types.h"

namespace Tessavoy {

/// What the module says of itself to the host.
namespace ProductIdentity {

inline constexpr const char* name = "Tessavoy";
inline constexpr const char* matchName = "Quelvane Tessavoy";
inline constexpr const char* category = "Quelvane";
inline constexpr const char* entryPoint = "EffectMain";

/// 'eFKT', an effect.
inline constexpr A_long kind = 0x65464B54;

/// The version of the effect interface that the module is written for.
inline constexpr A_long apiVersionMajor = 13;
inline constexpr A_long apiVersionMinor = 27;
inline constexpr A_long reservedInfo = 8;

/// 1.3.1 release, build 0, packed as the host packs versions.
inline constexpr A_u_long version = 626176;

/// The version that the About text shows.
inline constexpr int shownMajor = 1;
inline constexpr int shownMinor = 3;

inline constexpr A_long outFlags = 33588308;
static_assert(outFlags ==
              (PF_OutFlag_NON_PARAM_VARY | PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING | PF_OutFlag_USE_OUTPUT_EXTENT |
               PF_OutFlag_PIX_INDEPENDENT | PF_OutFlag_CUSTOM_UI | PF_OutFlag_DEEP_COLOR_AWARE));

inline constexpr A_long outFlags2 = 411046915;
static_assert(outFlags2 == (PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS | PF_OutFlag2_I_USE_3D_CAMERA |
                            PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE |
                            PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA | PF_OutFlag2_SUPPORTS_THREADED_RENDERING |
                            PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER));

/// 'PrMr': the editing host, which offers no AEGP services.
inline constexpr A_long editingHostId = 0x50724D72;

}  // namespace ProductIdentity

}  // namespace Tessavoy
