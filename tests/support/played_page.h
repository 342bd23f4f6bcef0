#pragma once

#include <fcntl.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "page/page_guard.h"
#include "page/page_mapping.h"
#include "page/tv_service_page.h"
#include "platform/unique_fd.h"
#include "tests/support/test_root.h"

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
