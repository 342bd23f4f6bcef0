#include <future>

#include <gtest/gtest.h>

#include "page/share_page_client.h"
#include "tests/support/child.h"
#include "tests/support/played_page.h"
#include "tests/support/test_root.h"

// Each side checks that it reads exactly what the other wrote, with lengths and bytes that change
// each time.
TEST(ExchangeStressTest, AMillionExchangesMixNothing) {
    const TestRoot root;
    PlayedPage page;
    constexpr std::uint32_t kExchanges = KO_EXCHANGES;
    const auto message = [](std::uint32_t number) {
        std::vector<std::uint8_t> bytes(1 + (number * 7919U) % 97U,
                                        static_cast<std::uint8_t>(number));
        bytes.front() = static_cast<std::uint8_t>(number >> 8);
        return bytes;
    };
    const auto equal = [](const android::Parcel& parcel, const std::vector<std::uint8_t>& bytes) {
        return std::equal(bytes.begin(), bytes.end(), parcel.data(),
                          parcel.data() + parcel.dataSize());
    };
    const auto patience = std::chrono::milliseconds(kPatienceMs);
    const auto service = std::async(std::launch::async, [&] {
        for (std::uint32_t i = 0; i < kExchanges; ++i) {
            android::Parcel request;
            ASSERT_TRUE(page.Service().WaitRequest(patience, request));
            ASSERT_TRUE(equal(request, message(2 * i))) << i;
            android::Parcel reply;
            const auto bytes = message(2 * i + 1);
            reply.setData(bytes.data(), bytes.size());
            ASSERT_TRUE(page.Service().PostReply(reply));
        }
    });
    SharePageClient client(page.Get(), kTestPage, std::chrono::nanoseconds(0));
    for (std::uint32_t i = 0; i < kExchanges; ++i) {
        const auto bytes = message(2 * i);
        ASSERT_TRUE(client.Post(bytes.data(), bytes.size()));
        ASSERT_EQ(SharePageClient::State::kReady,
                  client.Wait(std::chrono::steady_clock::now() + patience));
        android::Parcel reply;
        ASSERT_TRUE(client.TakeReply(reply));
        ASSERT_TRUE(equal(reply, message(2 * i + 1))) << i;
    }
}
