#pragma once

#include <fcntl.h>

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "page/page_guard.h"
#include "page/page_mapping.h"
#include "page/tv_service_page.h"
#include "platform/unique_fd.h"
#include "tests/support/test_root.h"

constexpr std::chrono::minutes kPatience{1};  // more than a healthy machine needs for anything

// The page of a TestRoot with a service that polls without a pause, and the client's mapping.
class PlayedPage {
public:
    PlayedPage() {
        m_service.emplace(RunGuarded, std::chrono::nanoseconds(0));
        std::string error;
        EXPECT_TRUE(m_service->Open(kTestPage, error)) << error;
        m_mapping = PageMapping(UniqueFd(open(kTestPage, O_RDWR | O_CLOEXEC)).Get());
    }

    // Leaves the page to another service.
    void Die() { m_service.reset(); }

    TvServicePage& Service() { return *m_service; }
    SharePage* Get() const { return m_mapping.Get(); }

private:
    std::optional<TvServicePage> m_service;
    PageMapping m_mapping;
};
