#include "Host/Command/Progress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "Host/Command/JsonLine.h"

namespace TessavoyHost {
namespace {

std::string withDigits(double value, int digits) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f", digits, value);
    return text.data();
}

class NoProgress : public Progress {
public:
    explicit NoProgress(const ProgressOutput& output) : mOutput(output) {}
    void frame(const FrameReport&, const RunTally&) override {}
    void message(const std::string& line, int) override { mOutput.error(line + '\n'); }
    void end(const RunTally&, const std::vector<std::string>& lastLines) override {
        for (const auto& line : lastLines) {
            message(line, -1);
        }
    }

protected:
    const ProgressOutput& output() const { return mOutput; }

private:
    ProgressOutput mOutput;
};

class LineProgress : public NoProgress {
public:
    using NoProgress::NoProgress;
    void frame(const FrameReport& report, const RunTally&) override {
        const std::string frame = "frame " + std::to_string(report.frame) + ": ";
        if (report.status == FrameStatus::Written) {
            message(frame + "written" + (report.file.empty() ? "" : " to " + report.file) + ", rendered in " +
                        withDigits(report.seconds, 2) + " s",
                    report.frame);
        } else if (report.status == FrameStatus::Skipped) {
            message(frame + "skipped, " + report.file + " is there", report.frame);
        }
    }
};

// A line that is drawn over itself. Messages are put above it.
class BarProgress : public NoProgress {
public:
    explicit BarProgress(const ProgressOutput& output) : NoProgress(output), mStart(output.seconds()) {}

    void frame(const FrameReport&, const RunTally& tally) override {
        mBar = bar(tally) + estimate(tally);
        output().error(lineStart + mBar);
    }
    void message(const std::string& line, int) override {
        output().error((mBar.empty() ? "" : lineStart) + line + '\n' + mBar);
    }
    void end(const RunTally& tally, const std::vector<std::string>& lastLines) override {
        if (!mBar.empty()) {
            output().error("\n");
            mBar.clear();
        }
        NoProgress::end(tally, lastLines);
    }

private:
    static constexpr int cells = 30;
    static inline const std::string lineStart = "\r\x1b[K";  // back to the first column, and clear the line

    static std::string bar(const RunTally& tally) {
        const long share = cells * static_cast<long>(tally.done()) / tally.total();
        const auto filled = static_cast<std::size_t>(std::clamp(share, 0L, long{cells}));
        return '[' + std::string(filled, '=') + std::string(cells - filled, ' ') + "] " + std::to_string(tally.done()) +
               '/' + std::to_string(tally.total());
    }

    // Skipped frames cost next to nothing and say nothing about the others.
    std::string estimate(const RunTally& tally) const {
        const double elapsed = output().seconds() - mStart;
        if (tally.rendered() == 0 || elapsed <= 0) {
            return {};
        }
        const double rate = tally.rendered() / elapsed;
        const std::string left = durationInWords((tally.total() - tally.done()) / rate);
        return "  " + withDigits(rate, rate < 10 ? 2 : 1) + " frames/s  " + left + " left";
    }

    double mStart;
    std::string mBar;
};

const char* wordFor(FrameStatus status) {
    switch (status) {
        case FrameStatus::Written:
            return "written";
        case FrameStatus::Skipped:
            return "skipped";
        default:
            return "failed";
    }
}

class JsonProgress : public NoProgress {
public:
    using NoProgress::NoProgress;

    void frame(const FrameReport& report, const RunTally& tally) override {
        nlohmann::ordered_json object{{"event", "frame"}, {"frame", report.frame}, {"status", wordFor(report.status)}};
        if (!report.file.empty()) {
            object["file"] = report.file;
        }
        if (!report.reason.empty()) {
            object["reason"] = report.reason;
        }
        object["seconds"] = std::round(report.seconds * 1e6) / 1e6;
        object["done"] = tally.done();
        object["total"] = tally.total();
        put(object);
    }

    void message(const std::string& line, int frame) override {
        NoProgress::message(line, frame);
        output().json(messageLine(line, frame));
    }

    void end(const RunTally& tally, const std::vector<std::string>& lastLines) override {
        NoProgress::end(tally, lastLines);
        put({{"event", "end"},
             {"written", tally.written()},
             {"skipped", tally.skipped()},
             {"failed", tally.failed()},
             {"total", tally.total()}});
    }

private:
    void put(const nlohmann::ordered_json& object) const { output().json(jsonLine(object)); }
};

}  // namespace

std::unique_ptr<Progress> makeProgress(ProgressMode mode, const ProgressOutput& output) {
    switch (mode) {
        case ProgressMode::Bar:
            return std::make_unique<BarProgress>(output);
        case ProgressMode::Lines:
            return std::make_unique<LineProgress>(output);
        case ProgressMode::Json:
            return std::make_unique<JsonProgress>(output);
        case ProgressMode::None:
            return std::make_unique<NoProgress>(output);
        default:
            return makeProgress(output.errorIsTerminal ? ProgressMode::Bar : ProgressMode::Lines, output);
    }
}

std::string durationInWords(double seconds) {
    const auto whole = static_cast<long>(std::ceil(seconds));
    std::array<char, 64> text{};
    if (whole >= 3600) {
        std::snprintf(text.data(), text.size(), "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
    } else {
        std::snprintf(text.data(), text.size(), "%ld:%02ld", whole / 60, whole % 60);
    }
    return text.data();
}

}  // namespace TessavoyHost
