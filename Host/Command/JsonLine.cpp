#include "Host/Command/JsonLine.h"

namespace TessavoyHost {

std::string jsonLine(const nlohmann::ordered_json& object) {
    return object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + '\n';
}

std::string messageLine(const std::string& text, int frame) {
    nlohmann::ordered_json object{{"event", "message"}, {"text", text}};
    if (frame >= 0) {
        object["frame"] = frame;
    }
    return jsonLine(object);
}

std::string errorLine(const std::string& text) {
    return jsonLine({{"event", "error"}, {"text", text}});
}

}  // namespace TessavoyHost
