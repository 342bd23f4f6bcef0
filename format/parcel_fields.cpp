#include "format/parcel_fields.h"

#include <cstring>
#include <limits>
#include <utility>

#include "format/format_letters.h"
#include "platform/ko_securec.h"

namespace {

constexpr std::size_t kNumberText = 64;  // bytes; "%.17g" needs 24 at the most

struct ReadFrom {
    const android::Parcel& parcel;

    void operator()(std::int32_t& value) const { value = parcel.readInt32(); }
    void operator()(std::int64_t& value) const { value = parcel.readInt64(); }
    void operator()(float& value) const { value = parcel.readFloat(); }
    void operator()(double& value) const { value = parcel.readDouble(); }
    void operator()(android::String16& value) const { value = parcel.readString16(); }
};

// `left` is the number of bytes from the string's count on. A failed read of a string would look
// like an empty one.
std::string StringFault(const std::uint8_t* bytes, std::size_t left) {
    std::int32_t units = 0;
    std::memcpy(&units, bytes, sizeof(units));
    const std::string count = std::to_string(units) + " units";
    if (units < 0) {
        return "a count of " + count;
    }
    left -= sizeof(units);
    // The units and a zero one, padded to a multiple of 4.
    const std::uint64_t needed = (std::uint64_t{2} * static_cast<std::uint32_t>(units) + 5) / 4 * 4;
    if (needed > left) {
        return count + " need " + std::to_string(needed) + " bytes, " + std::to_string(left) +
               " are left";
    }
    const std::uint8_t* end = bytes + sizeof(units) + 2 * static_cast<std::size_t>(units);
    return end[0] == 0 && end[1] == 0 ? "" : "no zero after " + count;
}

struct TextOf {
    std::string operator()(std::int32_t value) const { return std::to_string(value); }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(float value) const {
        return Decimal(static_cast<double>(value), std::numeric_limits<float>::max_digits10);
    }
    std::string operator()(double value) const {
        return Decimal(value, std::numeric_limits<double>::max_digits10);
    }
    std::string operator()(const android::String16& value) const {
        const android::String8 text(value);
        return {text.string(), text.size()};
    }

    static std::string Decimal(double value, int digits) {
        char text[kNumberText];
        sprintf_s(text, sizeof(text), "%.*g", digits, value);
        return text;
    }
};

struct NumberOf {
    template <typename Number>
    double operator()(Number value) const {
        return static_cast<double>(value);
    }
    double operator()(const android::String16&) const { return 0; }
};

struct WriteTo {
    android::Parcel& parcel;

    android::status_t operator()(std::int32_t value) const { return parcel.writeInt32(value); }
    android::status_t operator()(std::int64_t value) const { return parcel.writeInt64(value); }
    android::status_t operator()(float value) const { return parcel.writeFloat(value); }
    android::status_t operator()(double value) const { return parcel.writeDouble(value); }
    android::status_t operator()(const android::String16& value) const {
        return parcel.writeString16(value);
    }
};

}  // namespace

FieldValue ZeroOf(char letter) {
    switch (letter) {
        case 'd':
            return std::int32_t{};
        case 'D':
            return std::int64_t{};
        case 'f':
            return float{};
        case 'F':
            return double{};
        default:
            return android::String16();
    }
}

std::string FieldFault(const android::Parcel& parcel, char letter) {
    const FormatLetter* row = FindFormatLetter(letter);
    if (row == nullptr) {
        return "unknown letter";
    }
    const std::size_t left = parcel.dataAvail();
    const std::size_t needed = letter == 's' ? sizeof(std::int32_t) : row->leastSize;
    if (left < needed) {
        return std::to_string(needed) + " bytes needed, " + std::to_string(left) + " are left";
    }
    return letter == 's' ? StringFault(parcel.data() + parcel.dataSize() - left, left) : "";
}

std::optional<std::vector<ParcelField>> ReadFields(const android::Parcel& parcel,
                                                   const std::string& format) {
    std::vector<ParcelField> fields;
    for (const char letter : format) {
        if (!FieldFault(parcel, letter).empty()) {
            return std::nullopt;
        }
        if (IsWithoutValue(letter)) {
            continue;
        }
        const std::size_t before = parcel.dataAvail();
        FieldValue value = ZeroOf(letter);
        std::visit(ReadFrom{parcel}, value);
        fields.push_back(
            {letter, parcel.dataSize() - before, before - parcel.dataAvail(), std::move(value)});
    }
    return fields;
}

android::status_t WriteField(android::Parcel& parcel, const FieldValue& value) {
    return std::visit(WriteTo{parcel}, value);
}

std::string FieldText(const FieldValue& value) {
    return std::visit(TextOf{}, value);
}

double FieldNumber(const FieldValue& value) {
    return std::visit(NumberOf{}, value);
}
