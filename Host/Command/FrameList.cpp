#include "Host/Command/FrameList.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>

#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

[[noreturn]] void refuse(const std::string& text) {
    throw HostError(ExitStatus::CommandLine, "--frames: " + text);
}

std::string outsideInWords(std::int64_t frame, int frameCount) {
    return "frame " + std::to_string(frame) + " lies outside the composition, whose frames are 0 to " +
           std::to_string(frameCount - 1);
}

std::string quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

// A part of a list, read from the front.
class PartReader {
public:
    explicit PartReader(std::string_view part) : mPart(part), mRest(part) {}

    bool atEnd() const { return mRest.empty(); }

    int number() {
        int value = 0;
        const bool startsWithDigit = !mRest.empty() && mRest.front() >= '0' && mRest.front() <= '9';
        const auto [end, error] = std::from_chars(mRest.data(), mRest.data() + mRest.size(), value);
        if (!startsWithDigit || error != std::errc()) {
            fail();
        }
        mRest.remove_prefix(static_cast<std::size_t>(end - mRest.data()));
        return value;
    }

    char oneOf(std::string_view letters) {
        if (atEnd() || letters.find(mRest.front()) == std::string_view::npos) {
            fail();
        }
        const char letter = mRest.front();
        mRest.remove_prefix(1);
        return letter;
    }

    [[noreturn]] void fail() const {
        refuse(quoted(mPart) + " names no frames; write such as 12, 0-99, 0-99x5 or 0-99y5, joined by commas");
    }

private:
    std::string_view mPart, mRest;
};

struct FrameRange {
    int first = 0;
    int last = 0;
    int step = 1;
    bool others = false;  // those between the steps

    int count() const {
        const int all = last - first + 1;
        const int stepped = (last - first) / step + 1;
        return others ? all - stepped : stepped;
    }
};

// In time that goes with their count, not with the range's.
void appendFrames(const FrameRange& range, std::vector<int>& frames) {
    if (range.count() == 0) {
        return;
    }
    for (std::int64_t frame = range.first; frame <= range.last; frame += range.others ? 1 : range.step) {
        if (!range.others || (frame - range.first) % range.step != 0) {
            frames.push_back(static_cast<int>(frame));
        }
    }
}

FrameRange readRange(std::string_view part) {
    PartReader reader(part);
    FrameRange range;
    range.first = range.last = reader.number();
    if (reader.atEnd()) {
        return range;
    }
    reader.oneOf("-");
    range.last = reader.number();
    if (!reader.atEnd()) {
        range.others = reader.oneOf("xy") == 'y';
        range.step = reader.number();
    }
    if (!reader.atEnd()) {
        reader.fail();
    }
    return range;
}

void checkRange(const FrameRange& range, std::string_view part, int frameCount) {
    if (range.last < range.first) {
        refuse(quoted(part) + ": " + std::to_string(range.last) + " comes before " + std::to_string(range.first));
    }
    if (range.step < 1) {
        refuse(quoted(part) + ": the step must be at least 1");
    }
    if (range.last >= frameCount) {
        refuse(outsideInWords(std::max(range.first, std::min(range.last, frameCount)), frameCount));
    }
}

// Each part is checked, and that all together are not too many.
std::vector<FrameRange> readRanges(const std::string& list, int frameCount) {
    std::vector<FrameRange> ranges;
    int room = mostFrames;
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find(',', start), list.size());
        const std::string_view part = std::string_view(list).substr(start, end - start);
        const FrameRange range = readRange(part);
        checkRange(range, part, frameCount);
        if (range.count() > room) {
            refuse(quoted(part) + ": with it the list has more than " + std::to_string(mostFrames) +
                   " frames, too many for one run; render in several");
        }
        room -= range.count();
        ranges.push_back(range);
        start = end + 1;
    }
    return ranges;
}

void refuseRepetitions(std::vector<int> frames) {
    std::sort(frames.begin(), frames.end());
    const auto repeated = std::adjacent_find(frames.begin(), frames.end());
    if (repeated != frames.end()) {
        refuse("frame " + std::to_string(*repeated) + " is named twice");
    }
}

}  // namespace

void checkFrame(int frame, int frameCount) {
    if (frame < 0 || frame >= frameCount) {
        throw HostError(ExitStatus::CommandLine, "--frame: " + outsideInWords(frame, frameCount));
    }
}

std::vector<int> parseFrameList(const std::string& list, int frameCount) {
    std::vector<int> frames;
    for (const FrameRange& range : readRanges(list, frameCount)) {
        appendFrames(range, frames);
    }
    if (frames.empty()) {
        refuse(quoted(list) + " leaves no frame");
    }
    refuseRepetitions(frames);
    return frames;
}

std::string framesInWords(std::vector<int> frames) {
    std::sort(frames.begin(), frames.end());
    std::string words;
    for (std::size_t i = 0; i < frames.size();) {
        std::size_t end = i + 1;
        while (end < frames.size() && frames[end] == frames[end - 1] + 1) {
            ++end;
        }
        words += (words.empty() ? "" : ", ") + std::to_string(frames[i]);
        if (end - i > 1) {
            words += "-" + std::to_string(frames[end - 1]);
        }
        i = end;
    }
    return words;
}

}  // namespace TessavoyHost
