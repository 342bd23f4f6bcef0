#include <future>

#include <gtest/gtest.h>

#include "page/share_page_client.h"
#include "tests/support/played_page.h"
#include "tests/support/test_root.h"

// Each side checks that it reads exactly what the other wrote, with lengths and bytes that change
// each time.
TEST(ExchangeStressTest, AMillionExchangesMixNothing) {
    const TestRoot root;
    PlayedPage page;
    constexpr std::uint32_t kExchanges = KO_EXCHANGES;
    using Bytes = std::vector<std::uint8_t>;
    const auto message = [](std::uint32_t number) {
        Bytes bytes(1 + (number * 7919U) % 97U, static_cast<std::uint8_t>(number));
        bytes.front() = static_cast<std::uint8_t>(number >> 8);
        return bytes;
    };
    const auto service = std::async(std::launch::async, [&] {
        for (std::uint32_t i = 0; i < kExchanges; ++i) {
            Bytes request;
            ASSERT_TRUE(page.Service().WaitRequest(kPatience, request));
            ASSERT_EQ(message(2 * i), request) << i;
            const Bytes reply = message(2 * i + 1);
            ASSERT_TRUE(page.Service().PostReply(reply.data(), reply.size()));
        }
    });
    SharePageClient client(page.Get(), std::chrono::nanoseconds(0));
    for (std::uint32_t i = 0; i < kExchanges; ++i) {
        const Bytes request = message(2 * i);
        ASSERT_EQ(PageResult::kDone, client.Post(request.data(), request.size()));
        ASSERT_EQ(PageResult::kDone, client.Wait(std::chrono::steady_clock::now() + kPatience));
        Bytes reply;
        ASSERT_EQ(PageResult::kDone, client.TakeReply(reply));
        ASSERT_EQ(message(2 * i + 1), reply) << i;
    }
}
