#pragma once

#include <memory>
#include <string>

namespace TessavoyHost {

struct Image;

// A layer of the composition: what it shows at which time. Safe to use from several threads at once.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    virtual std::string name() const = 0;

    // Full-resolution pixels; the same for every frame.
    virtual int width() const = 0;
    virtual int height() const = 0;

    // In composition seconds: where the layer begins, and how long it lasts.
    virtual double start() const = 0;
    virtual double duration() const = 0;

    // The picture at a moment, or null before the start and from the end on. Throws HostError when it cannot be read.
    // The same picture is the same object, as far as it is still held: holders tell pictures apart by address.
    virtual std::shared_ptr<const Image> frameAt(double compositionSeconds) = 0;
};

}  // namespace TessavoyHost
