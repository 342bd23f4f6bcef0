#include "tools/json.h"

#include <cmath>
#include <cstdio>

#include "format/printable.h"
#include "format/utf8.h"
#include "platform/ko_securec.h"
#include "tools/text.h"

namespace {

std::string Escape(char last) {
    char escape[8];
    sprintf_s(escape, sizeof(escape), "\\u%04x",
              static_cast<unsigned int>(static_cast<unsigned char>(last)));
    return escape;
}

// JSON's own characters are none of the control characters, so they all stand in strings.
std::string JsonForTerminal(std::string_view json) {
    std::string shown;
    while (!json.empty()) {
        const std::string_view character = TakeUtf8(json);
        shown += IsControl(character) ? Escape(character.back()) : std::string(character);
    }
    return shown;
}

struct JsonOf {
    JsonInt64 int64;

    std::string operator()(std::int32_t value) const { return FieldText(value); }
    std::string operator()(std::int64_t value) const {
        return int64 == JsonInt64::kString ? JsonString(FieldText(value)) : FieldText(value);
    }
    std::string operator()(float value) const {
        return std::isfinite(value) ? FieldText(value) : "null";
    }
    std::string operator()(double value) const {
        return std::isfinite(value) ? FieldText(value) : "null";
    }
    std::string operator()(const android::String16& value) const {
        return JsonString(FieldText(value));
    }
};

}  // namespace

std::string JsonString(std::string_view text) {
    std::string json = "\"";
    for (const char byte : ValidUtf8(text)) {
        if (byte == '"' || byte == '\\') {
            json += '\\';
        }
        if (static_cast<unsigned char>(byte) < ' ') {
            json += Escape(byte);
        } else {
            json += byte;
        }
    }
    return json + '"';
}

std::string JsonValue(const FieldValue& value, JsonInt64 int64) {
    return std::visit(JsonOf{int64}, value);
}

std::string JsonArray(const std::vector<std::string>& values) {
    return "[" + Joined(values, ",") + "]";
}

void PrintJsonLine(const std::string& json) {
    std::printf("%s\n", (OutputIsTerminal() ? JsonForTerminal(json) : json).c_str());
}

void JsonObject::Add(std::string_view name, const std::string& value) {
    m_members += (m_members.empty() ? "" : ",") + JsonString(name) + ":" + value;
}
