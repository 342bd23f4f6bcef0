#pragma once

#include <iterator>
#include <list>

#include "platform/ko_log.h"

// The line numbers of the two warnings below are part of the log's contract, wherever they stand.
constexpr unsigned int kArrayEmptyLogLine = 132;
constexpr unsigned int kArrayClampLogLine = 136;

// An ordered list, copied and returned by value, whose indexed access never fails: an index past
// the end means the last element, and an empty array gives an empty element. Indexed access walks
// the list, so use begin()/end() to visit every element. Not shared between threads.
template <typename T>
class Array {
public:
    Array() = default;
    Array(const Array&) = default;
    Array& operator=(const Array&) = default;
    // Both take over the elements of an array that is not read again.
    Array(Array&& other) noexcept { m_list.swap(other.m_list); }
    Array& operator=(Array&& other) noexcept {
        m_list.swap(other.m_list);
        return *this;
    }
    virtual ~Array() = default;

    void push_back(const T& value) { m_list.push_back(value); }
    unsigned int size() const { return static_cast<unsigned int>(m_list.size()); }

    auto begin() const { return m_list.begin(); }
    auto end() const { return m_list.end(); }

    // Logs an index past the end and a read of an empty array.
    const T& operator[](unsigned int index) const {
        if (m_list.empty()) {
            KoLog::PrintLog(ATV_LOG_PRIO_WARN, kLogTag, "operator[]", kArrayEmptyLogLine,
                            "ko_mw_array: remove pos:%d, m_list size is 0, operator fail, return "
                            "null value",
                            static_cast<int>(index));
            return EmptyElement();
        }
        if (index >= size()) {
            KoLog::PrintLog(ATV_LOG_PRIO_WARN, kLogTag, "operator[]", kArrayClampLogLine,
                            "ko_mw_array: index:%d, arry max size:%d", static_cast<int>(index),
                            static_cast<int>(size()));
        }
        return *std::next(m_list.begin(), LastOrEarlier(index));
    }

    // The same without log entries. What is written to the element of an empty array is lost.
    T& operator[](unsigned int index) {
        return m_list.empty() ? EmptyElement() : *std::next(m_list.begin(), LastOrEarlier(index));
    }

    // Open to users that take elements off the front or put some there.
    std::list<T> m_list;

private:
    // One element for all empty arrays of T, reset each time it is handed out.
    static T& EmptyElement() {
        static T element;
        element = T();
        return element;
    }

    std::ptrdiff_t LastOrEarlier(unsigned int index) const {
        return static_cast<std::ptrdiff_t>(index < size() ? index : size() - 1);
    }
};
