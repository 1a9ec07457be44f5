#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace TessavoyHost {

// An object of the progress stream, with its closing line feed. Bytes that are no UTF-8, as file names may hold, are
// replaced.
std::string jsonLine(const nlohmann::ordered_json& object);

// {"event":"message","text":"...","frame":7}; frame: which it is about, or -1.
std::string messageLine(const std::string& text, int frame = -1);

// {"event":"error","text":"..."}: what ended the command before its first frame, or beside its frames.
std::string errorLine(const std::string& text);

}  // namespace TessavoyHost
