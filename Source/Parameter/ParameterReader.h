#pragma once

#include "HostInterface/Effect.h"
#include "Source/Evaluate/LayerSampling.h"

#include <array>
#include <string>
#include <string_view>

namespace Tessavoy {

/// Reads parameters by id, each with one checkout at the in-data's current time. Every read appends one entry to the
/// list of checkouts; after the host's first error reads only append, and leave their fields as they are.
class ParameterReader {
public:
    explicit ParameterReader(LayerSlots& slots);

    /// The host's first error, or 0.
    PF_Err error() const { return mError; }

    /// Puts a section's name before the ids of all reads while it lives.
    class Prefix {
    public:
        Prefix(ParameterReader& reader, std::string_view name);
        ~Prefix();

        Prefix(const Prefix&) = delete;
        Prefix& operator=(const Prefix&) = delete;

    private:
        ParameterReader& mReader;
        std::size_t mOuterLength;
    };

    void number(std::string_view name, double& field);        ///< a float slider
    void whole(std::string_view name, A_long& field);         ///< a whole-number slider
    void choice(std::string_view name, A_long& field);        ///< a popup, one-based
    void flag(std::string_view name, bool& field);            ///< a checkbox: its first value byte
    void angle(std::string_view name, double& field);         ///< degrees
    void point(std::string_view name, double& x, double& y);  ///< as the host gives them, from 16.16
    void point3D(std::string_view name, double& x, double& y, double& z);
    void handle(std::string_view name, PF_Handle& field);           ///< an arbitrary value, or what stands in its place
    void path(std::string_view name, A_u_long& field);              ///< a path id
    void color(std::string_view name, std::array<float, 4>& rgba);  ///< each byte / 255
    void color(std::string_view name, std::array<double, 4>& rgba);  ///< each byte / 255
    void layer(std::string_view name);                               ///< stays in the list alone

private:
    /// The value of the parameter, or null where this or an earlier read failed.
    const PF_ParamDefUnion* checkOut(std::string_view name);

    template <class Channel>
    void readColor(std::string_view name, std::array<Channel, 4>& rgba);

    LayerSlots& mSlots;
    std::string mId;  ///< the sections' names, each with its dot
    PF_Err mError = 0;
};

}  // namespace Tessavoy
