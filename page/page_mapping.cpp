#include "page/page_mapping.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/device_root.h"

PageMapping::PageMapping(int fd, int protection) {
    void* page = mmap(nullptr, kPageSize, protection, MAP_SHARED, fd, 0);
    m_page = page != MAP_FAILED ? static_cast<SharePage*>(page) : nullptr;
}

PageMapping::PageMapping(PageMapping&& other) noexcept
    : m_page(std::exchange(other.m_page, nullptr)) {}

PageMapping& PageMapping::operator=(PageMapping&& other) noexcept {
    std::swap(m_page, other.m_page);
    return *this;
}

PageMapping::~PageMapping() {
    if (m_page != nullptr) {
        munmap(m_page, kPageSize);
    }
}

PageMapping MapPageFile(int access, UniqueFd& file, std::string& reason) {
    file = UniqueFd(OpenPageFile(kSharePageFile, access, reason));
    if (!file.IsOpen()) {
        return {};
    }
    PageMapping page(file.Get(), access == O_RDONLY ? PROT_READ : PROT_READ | PROT_WRITE);
    if (page.Get() == nullptr) {
        reason = std::strerror(errno);
    }
    return page;
}
