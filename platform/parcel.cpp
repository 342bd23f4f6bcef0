#include "platform/parcel.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <type_traits>

namespace android {
namespace {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "values are copied in host order");
static_assert(sizeof(float) == 4 && sizeof(double) == 8, "IEEE 754 singles and doubles");

constexpr status_t kTooLarge = -ENOMEM;

constexpr std::size_t Padded(std::size_t bytes) {
    return (bytes + 3) & ~std::size_t{3};
}

}  // namespace

std::uint8_t* Parcel::Claim(std::size_t bytes) {
    if (bytes > kMaxSize - m_position) {
        return nullptr;
    }
    const std::size_t start = m_position;
    m_position += bytes;
    m_data.resize(std::max(m_data.size(), m_position));
    return &m_data[start];
}

template <typename T>
status_t Parcel::Write(T value) {
    static_assert(std::is_trivially_copyable_v<T> && sizeof(T) % 4 == 0);
    std::uint8_t* place = Claim(sizeof(T));
    if (place == nullptr) {
        return kTooLarge;
    }
    std::memcpy(place, &value, sizeof(T));
    return 0;
}

template <typename T>
T Parcel::Read() const {
    T value{};
    if (dataAvail() >= sizeof(T)) {
        std::memcpy(&value, &m_data[m_position], sizeof(T));
        m_position += sizeof(T);
    }
    return value;
}

status_t Parcel::writeInt32(std::int32_t value) {
    return Write(value);
}

status_t Parcel::writeInt64(std::int64_t value) {
    return Write(value);
}

status_t Parcel::writeFloat(float value) {
    return Write(value);
}

status_t Parcel::writeDouble(double value) {
    return Write(value);
}

status_t Parcel::writeString16(const String16& value) {
    if (value.size() > kMaxSize) {
        return kTooLarge;
    }
    const auto count = static_cast<std::int32_t>(value.size());
    const std::size_t bytes = value.size() * sizeof(char16_t);
    const std::size_t padded = Padded(bytes + sizeof(char16_t));
    std::uint8_t* place = Claim(sizeof(count) + padded);
    if (place == nullptr) {
        return kTooLarge;
    }
    std::memcpy(place, &count, sizeof(count));
    std::memcpy(place + sizeof(count), value.string(), bytes);
    std::memset(place + sizeof(count) + bytes, 0, padded - bytes);
    return 0;
}

status_t Parcel::setData(const std::uint8_t* bytes, std::size_t size) {
    if (size > kMaxSize) {
        return kTooLarge;
    }
    m_data.assign(bytes, bytes + size);
    m_position = 0;
    return 0;
}

std::int32_t Parcel::readInt32() const {
    return Read<std::int32_t>();
}

std::int64_t Parcel::readInt64() const {
    return Read<std::int64_t>();
}

float Parcel::readFloat() const {
    return Read<float>();
}

double Parcel::readDouble() const {
    return Read<double>();
}

String16 Parcel::readString16() const {
    const std::int32_t count = readInt32();
    if (count < 0 || static_cast<std::size_t>(count) >= dataAvail()) {
        return {};
    }
    const std::size_t units = static_cast<std::size_t>(count);
    const std::size_t padded = Padded((units + 1) * sizeof(char16_t));
    if (padded > dataAvail()) {
        return {};
    }
    std::u16string text(units + 1, u'\0');
    std::memcpy(text.data(), &m_data[m_position], text.size() * sizeof(char16_t));
    m_position += padded;
    return text.back() == u'\0' ? String16(text.data(), units) : String16();
}

}  // namespace android
