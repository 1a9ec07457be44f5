#include "Tests/Unit/Script/ScriptFixture.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace Tessavoy {

namespace {

constexpr std::array numberFields = {&InstanceState::x,       &InstanceState::y,           &InstanceState::z,
                                     &InstanceState::angleX,  &InstanceState::angleY,      &InstanceState::angle,
                                     &InstanceState::radius,  &InstanceState::r,           &InstanceState::g,
                                     &InstanceState::b,       &InstanceState::a,           &InstanceState::feather,
                                     &InstanceState::anchorX, &InstanceState::anchorY,     &InstanceState::scaleX,
                                     &InstanceState::scaleY,  &InstanceState::strokeWidth, &InstanceState::angleOffset};

}  // namespace

ScriptScene::ScriptScene() : snapshot(&host.inData) {
    host.inData.current_time = 1000;
    host.inData.time_step = 100;
    host.inData.time_scale = 2500;
    host.constSequenceData = &mSequenceBlock;
}

InstanceState ScriptScene::cell() const {
    InstanceState cell{};
    cell.i = 3;
    cell.j = 2;
    cell.visible = 1;
    float next = 1.5F;
    for (const auto field : numberFields) {
        cell.*field = next;
        next += 1.0F;
    }
    cell.stroke = 1;
    cell.partsCount = 7;
    cell.spriteIndex = 9;
    return cell;
}

InstanceState ScriptScene::run(const std::string& script) {
    ScriptHost scriptHost;
    EXPECT_TRUE(scriptHost.compile(&host.inData, script.c_str(), &snapshot)) << scriptHost.errorText();
    InstanceState result = cell();
    EXPECT_TRUE(scriptHost.runCell(&host.inData, inputs, result)) << scriptHost.errorText();
    return result;
}

std::array<float, 4> ScriptScene::evaluate(const std::string& expressions) {
    const InstanceState result = run("x, y, z, radius = " + expressions);
    return {result.x, result.y, result.z, result.radius};
}

double ScriptScene::number(const std::string& expression) {
    // The eight bytes come in four fields, 16 bits each.
    const auto words = evaluate("string.unpack('>I2I2I2I2', string.pack('>d', (" + expression + ")))");
    std::uint64_t bits = 0;
    for (const float word : words) {
        bits = bits << 16 | static_cast<std::uint64_t>(word);
    }
    return std::bit_cast<double>(bits);
}

std::vector<double> ScriptScene::results(const std::string& call) {
    std::vector<double> numbers(static_cast<std::size_t>(value("select('#', " + call + ")")));
    for (std::size_t k = 0; k < numbers.size(); ++k) {
        numbers[k] = number("select(" + std::to_string(k + 1) + ", " + call + ")");
    }
    return numbers;
}

bool sameFields(const InstanceState& left, const InstanceState& right) {
    for (const auto field : numberFields) {
        if (std::bit_cast<std::uint32_t>(left.*field) != std::bit_cast<std::uint32_t>(right.*field)) {
            return false;
        }
    }
    return left.visible == right.visible && left.stroke == right.stroke && left.partsCount == right.partsCount &&
           left.spriteIndex == right.spriteIndex;
}

}  // namespace Tessavoy
