#include "page/tv_service_page.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>

#include "page/page_guard.h"
#include "platform/ko_securec.h"
#include "platform/sleep_once.h"
#include "platform/unique_fd.h"

namespace {

constexpr mode_t kFileMode = 0660;
constexpr mode_t kFolderMode = 0770;

// Makes every missing folder of the path.
bool MakeFolders(const std::string& path) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
        if (mkdir(path.substr(0, slash).c_str(), kFolderMode) != 0 && errno != EEXIST) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool TvServicePage::Open(const std::string& path) {
    if (!MakeFolders(path)) {
        return false;
    }
    const UniqueFd fd(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode));
    // The umask of whoever starts the service must not keep the console out.
    if (!fd.IsOpen() || fchmod(fd.Get(), kFileMode) != 0 || ftruncate(fd.Get(), kPageSize) != 0) {
        return false;
    }
    m_mapping = PageMapping(fd.Get());
    return m_mapping.Get() != nullptr;
}

bool TvServicePage::WaitRequest(std::chrono::nanoseconds timeout, android::Parcel& request) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        if (TakeRequest(request)) {
            return true;
        }
        if (std::chrono::steady_clock::now() >= end || !SleepOnce(m_step)) {
            return false;
        }
    }
}

bool TvServicePage::TakeRequest(android::Parcel& request) {
    const SharePage* page = m_mapping.Get();
    SharePageHeader header = {};
    std::array<std::uint8_t, kDataCapacity> bytes;
    const bool touched =
        page != nullptr && GuardPageAccess([&] {
            header = LoadHeader(*page);
            if ((header.flags & kRequestPosted) != 0 && header.length <= kDataCapacity) {
                memcpy_s(bytes.data(), bytes.size(), page->data, header.length);
            }
        });
    if (!touched || (header.flags & kRequestPosted) == 0) {
        return false;
    }
    return request.setData(bytes.data(), header.length <= kDataCapacity ? header.length : 0) == 0;
}

bool TvServicePage::PostReply(const android::Parcel& reply) {
    SharePage* page = m_mapping.Get();
    if (page == nullptr || reply.data() == nullptr || reply.dataSize() > kDataCapacity) {
        return false;
    }
    return GuardPageAccess([&] {
        memcpy_s(page->data, kDataCapacity, reply.data(), reply.dataSize());
        StoreHeader(*page, kReplyReady, reply.dataSize());
    });
}
