#include "tests/support/played_page.h"

#include <fcntl.h>

#include <algorithm>
#include <cstring>

#include <gtest/gtest.h>

#include "page/page_guard.h"
#include "platform/unique_fd.h"
#include "tests/support/test_root.h"

PlayedPage::PlayedPage() {
    m_service.emplace(RunGuarded, std::chrono::nanoseconds(0));
    std::string error;
    EXPECT_TRUE(m_service->Open(kTestPage, error)) << error;
    m_mapping = PageMapping(UniqueFd(open(kTestPage, O_RDWR | O_CLOEXEC)).Get());
}

std::string PlayedPage::TakeRequest(Child& program, const std::string& text) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kPatienceMs);
    std::vector<std::uint8_t> request;
    while (!m_service->WaitRequest(std::chrono::milliseconds(1), request)) {
        if (program.Holds(text) || std::chrono::steady_clock::now() > end) {
            return {};
        }
    }
    return PageRows();
}

void PlayedPage::Scribble(std::string_view bytes) const {
    std::copy(bytes.begin(), bytes.end(), Get()->data);
}

void PlayedPage::Reply(std::string_view bytes, std::size_t length) const {
    Scribble(bytes);
    StoreHeader(*Get(), kReplyReady, length);
}

std::string PageRows() {
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
