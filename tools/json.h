#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "format/parcel_fields.h"

// The text as a JSON string: what is no UTF-8 becomes U+FFFD, control bytes are escaped.
std::string JsonString(std::string_view text);

// How an int64 is written: many readers of JSON have exact numbers only up to 2^53.
enum class JsonInt64 { kNumber, kString };

// A reply's value: numbers as numbers that read back the same, and null for a float that JSON has
// no number for (infinite or not a number).
std::string JsonValue(const FieldValue& value, JsonInt64 int64);

// "[a,b]" of values that are JSON already.
std::string JsonArray(const std::vector<std::string>& values);

// Prints one line of JSON to standard output; to a terminal with every control character escaped.
void PrintJsonLine(const std::string& json);

// Collects the members of one object, in their order.
class JsonObject {
public:
    // `value` is JSON already; a name must come once.
    void Add(std::string_view name, const std::string& value);

    std::string Text() const { return "{" + m_members + "}"; }

private:
    std::string m_members;
};
