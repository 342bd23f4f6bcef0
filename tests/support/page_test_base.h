#pragma once

#include <fcntl.h>

#include <gtest/gtest.h>

#include "platform/unique_fd.h"
#include "request/page_mapping.h"
#include "service/tv_service_page.h"
#include "tests/support/test_root.h"

// A page file with each half on a mapping of its own, as in two processes, and a third to scribble
// with.
class PageTestBase : public testing::Test {
protected:
    PageTestBase() {
        EXPECT_TRUE(m_service.Open(kTestPage));
        m_mapping = PageMapping(UniqueFd(open(kTestPage, O_RDWR)).Get());
        m_scribbler = PageMapping(UniqueFd(open(kTestPage, O_RDWR)).Get());
    }

    // Answers the next request with raw bytes, a header length and flags of its own choice.
    void AnswerOnce(const std::string& bytes, std::uint32_t length) {
        android::Parcel request;
        ASSERT_TRUE(m_service.WaitRequest(std::chrono::seconds(60), request));
        std::copy(bytes.begin(), bytes.end(), m_scribbler.Get()->data);
        StoreHeader(*m_scribbler.Get(), kReplyReady, length);
    }

    TestRoot m_root;
    TvServicePage m_service{std::chrono::nanoseconds(0)};
    PageMapping m_mapping;
    PageMapping m_scribbler;
};
