#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/string16.h"

namespace android {

using status_t = std::int32_t;

// A serialisation buffer in the platform's encoding: little-endian, every value padded to a
// multiple of 4 bytes and none aligned to 8. A string is an int32 count of UTF-16 units, the units,
// one zero unit and zero padding. Holds to what Android's class allows: no copies, and one position
// for both directions, so that what has been written is read from another parcel (setData).
class Parcel {
public:
    Parcel() = default;
    Parcel(const Parcel&) = delete;
    Parcel& operator=(const Parcel&) = delete;

    // Each writes at the position and moves past it. Returns 0, or a negative status with nothing
    // written.
    status_t writeInt32(std::int32_t value);
    status_t writeInt64(std::int64_t value);
    status_t writeFloat(float value);
    status_t writeDouble(double value);
    status_t writeString16(const String16& value);

    // The bytes, owned by the parcel and valid until the next write; null while there are none.
    const std::uint8_t* data() const { return m_data.empty() ? nullptr : m_data.data(); }
    std::size_t dataSize() const { return m_data.size(); }

    // Replaces the content by a copy and rewinds. Returns 0, or a negative status when it is too
    // large.
    status_t setData(const std::uint8_t* bytes, std::size_t size);

    // Bytes not read yet.
    std::size_t dataAvail() const { return m_data.size() - m_position; }

    // A fixed-size value that does not fit in what is left reads as 0 and leaves the position.
    std::int32_t readInt32() const;
    std::int64_t readInt64() const;
    float readFloat() const;
    double readDouble() const;

    // Moves past the count in any case (unless that is missing); the text is empty when the count
    // is negative or does not fit in what is left. A text without its zero unit is empty too, but
    // the position moves past it. (Android 10 does not look for the zero unit.)
    String16 readString16() const;

private:
    // Largest parcel in bytes; no transaction of the platform carries more.
    static constexpr std::size_t kMaxSize = std::size_t{1024} * 1024;

    // Makes room for so many bytes at the position and moves past them; null beyond kMaxSize.
    std::uint8_t* Claim(std::size_t bytes);
    template <typename T>
    status_t Write(T value);
    template <typename T>
    T Read() const;

    std::vector<std::uint8_t> m_data;
    mutable std::size_t m_position = 0;
};

}  // namespace android
