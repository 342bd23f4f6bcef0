#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/parcel.h"

// A parcel's values as a format describes them, for a reader that must know whether they are really
// there: the service for a request, tools for both directions.

using FieldValue = std::variant<std::int32_t, std::int64_t, float, double, android::String16>;

struct ParcelField {
    char letter;
    std::size_t offset;  // bytes from the start of the parcel
    std::size_t size;    // bytes, padding included
    FieldValue value;
};

// The zero, or empty text, of the letter's type. For every letter that has a value.
FieldValue ZeroOf(char letter);

// Why no value of the letter is at the parcel's position, such as "4 bytes needed, 2 are left";
// empty if one is, or if the letter has none.
std::string FieldFault(const android::Parcel& parcel, char letter);

// Reads one field for each letter from the parcel's position on; `S` has none. Returns nullopt at
// the first letter with a fault, and leaves the position there.
std::optional<std::vector<ParcelField>> ReadFields(const android::Parcel& parcel,
                                                   const std::string& format);

// Appends the value in its own encoding. 0, or the parcel's negative status.
android::status_t WriteField(android::Parcel& parcel, const FieldValue& value);

// The value as people read it: decimal numbers that read back to the same value, text as it is.
std::string FieldText(const FieldValue& value);

// The number nearest to the value; 0 for a text.
double FieldNumber(const FieldValue& value);
