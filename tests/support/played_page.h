#pragma once

#include <fcntl.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "page/page_guard.h"
#include "page/page_mapping.h"
#include "page/tv_service_page.h"
#include "tests/support/child.h"
#include "tests/support/test_root.h"

// The header of the page's file and the data it tells of, in hexadecimal, eight bytes in a row.
inline std::string PageRows() {
    const std::string page = ReadFile(kTestPage);
    SharePageHeader header = {};
    std::memcpy(&header, page.data(), sizeof(header));
    std::string rows;
    for (std::size_t i = 0; i < std::min(kHeaderSize + header.length, page.size()); ++i) {
        char byte[4];
        std::snprintf(byte, sizeof(byte), "%02hhx%c", page[i], i % 8 == 7 ? '\n' : ' ');
        rows += byte;
    }
    rows.back() = '\n';
    return rows;
}

// The page of a TestRoot with its service in the hands of the test. A second mapping, as another
// process has it, reaches every byte.
class PlayedPage {
public:
    PlayedPage() {
        m_service.emplace(RunGuarded, std::chrono::nanoseconds(0));
        std::string error;
        EXPECT_TRUE(m_service->Open(kTestPage, error)) << error;
        m_mapping = PageMapping(UniqueFd(open(kTestPage, O_RDWR | O_CLOEXEC)).Get());
    }

    // Waits for a request of the program and returns it as PageRows does; empty when the program
    // has ended or printed `text` without one.
    std::string TakeRequest(Child& program, const std::string& text = {}) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kPatienceMs);
        std::vector<std::uint8_t> request;
        while (!m_service->WaitRequest(std::chrono::milliseconds(1), request)) {
            if (program.Holds(text) || std::chrono::steady_clock::now() > end) {
                return {};
            }
        }
        return PageRows();
    }

    // Hands the bytes out as a reply of the given length, true or not.
    void Reply(std::string_view bytes, std::size_t length) const {
        std::copy(bytes.begin(), bytes.end(), Get()->data);
        StoreHeader(*Get(), kReplyReady, length);
    }

    // Leaves the page to another service.
    void Die() { m_service.reset(); }

    TvServicePage& Service() { return *m_service; }
    SharePage* Get() const { return m_mapping.Get(); }

private:
    std::optional<TvServicePage> m_service;
    PageMapping m_mapping;
};
