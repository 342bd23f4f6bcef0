#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

// Stands for the middleware's own android::Parcel, as far as the example needs it.
namespace android {

class Parcel {
public:
    void setData(const std::uint8_t* bytes, std::size_t size) {
        m_bytes.assign(bytes, bytes + size);
    }
    const std::uint8_t* data() const { return m_bytes.data(); }
    std::size_t dataSize() const { return m_bytes.size(); }
    std::size_t dataAvail() const { return m_bytes.size() - m_position; }
    std::int32_t readInt32() const { return Read<std::int32_t>(); }
    float readFloat() const { return Read<float>(); }
    void writeInt32(std::int32_t value) { Write(value); }
    void writeFloat(float value) { Write(value); }

private:
    template <typename T>
    T Read() const {
        T value{};
        if (dataAvail() >= sizeof(T)) {
            std::memcpy(&value, &m_bytes[m_position], sizeof(T));
            m_position += sizeof(T);
        }
        return value;
    }

    template <typename T>
    void Write(T value) {
        m_bytes.resize(m_bytes.size() + sizeof(T));
        std::memcpy(&m_bytes[m_bytes.size() - sizeof(T)], &value, sizeof(T));
    }

    std::vector<std::uint8_t> m_bytes;
    mutable std::size_t m_position = 0;
};

}  // namespace android
