#include "Host/Command/Version.h"

#include <array>

#include "HostInterface/Constants.h"

namespace TessavoyHost {

std::string versionInWords(A_u_long version) {
    constexpr std::array<const char*, 4> stages{"develop", "alpha", "beta", "release"};
    const A_u_long major = (version >> PF_Vers_VERS_HIGH_SHIFT & PF_Vers_VERS_HIGH_BITS) << PF_Vers_VERS_LOW_SHIFT |
                           (version >> PF_Vers_VERS_SHIFT & PF_Vers_VERS_BITS);
    const A_u_long minor = version >> PF_Vers_SUBVERS_SHIFT & PF_Vers_SUBVERS_BITS;
    const A_u_long bug = version >> PF_Vers_BUGFIX_SHIFT & PF_Vers_BUGFIX_BITS;
    const A_u_long stage = version >> PF_Vers_STAGE_SHIFT & PF_Vers_STAGE_BITS;
    const A_u_long build = version >> PF_Vers_BUILD_SHIFT & PF_Vers_BUILD_BITS;
    const std::string text = std::to_string(major) + '.' + std::to_string(minor) + '.' + std::to_string(bug);
    const bool isPlainRelease = stage == 3 && build == 0;
    return isPlainRelease ? text : text + ' ' + stages[stage] + " build " + std::to_string(build);
}

}  // namespace TessavoyHost
