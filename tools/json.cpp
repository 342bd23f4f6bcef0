#include "tools/json.h"

#include <cstdio>
#include <cstdlib>
#include <limits>
#include <nlohmann/json.hpp>

#include "format/printable.h"
#include "platform/ko_securec.h"
#include "tools/text.h"

namespace {

// The double that the library writes as the shortest text that reads back as the float: 0.1 for
// 0.1f, whose own value it writes as 0.10000000149011612.
double ShortestDouble(float value) {
    using Limits = std::numeric_limits<float>;
    char text[32];
    int digits = Limits::digits10;
    do {
        sprintf_s(text, sizeof(text), "%.*g", digits, static_cast<double>(value));
    } while (std::strtof(text, nullptr) != value && ++digits <= Limits::max_digits10);
    return std::strtod(text, nullptr);
}

struct JsonOf {
    JsonInt64 int64;

    Json operator()(std::int32_t value) const { return value; }
    Json operator()(std::int64_t value) const {
        return int64 == JsonInt64::kString ? Json(std::to_string(value)) : Json(value);
    }
    Json operator()(float value) const { return ShortestDouble(value); }
    Json operator()(double value) const { return value; }
    Json operator()(const android::String16& value) const { return FieldText(value); }
};

}  // namespace

Json JsonValue(const FieldValue& value, JsonInt64 int64) {
    return std::visit(JsonOf{int64}, value);
}

std::string JsonText(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// JSON's syntax has no control characters, so all of them are inside strings; the library leaves
// those from U+007F on as they are.
std::string JsonLine(const Json& json) {
    const std::string text = JsonText(json);
    return (OutputIsTerminal() ? Printable(text, "\\u00") : text) + "\n";
}
