#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "format/parcel_fields.h"

using Json = nlohmann::ordered_json;

// How an int64 is written: many readers of JSON have exact numbers only up to 2^53.
enum class JsonInt64 { kNumber, kString };

// A reply's value: a float as the shortest number that reads back as the same float, null for one
// that is infinite or NaN.
Json JsonValue(const FieldValue& value, JsonInt64 int64);

// One line without its end. Texts may hold any bytes: what is not UTF-8 becomes U+FFFD.
std::string JsonText(const Json& json);

// One line of JSON with its end, as standard output takes it: to a terminal with every control
// character escaped.
std::string JsonLine(const Json& json);
