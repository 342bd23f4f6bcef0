#pragma once

#include <sys/mman.h>

#include <string>

#include "page/share_page.h"
#include "platform/unique_fd.h"

// Owns one shared mapping of a page file and removes it at the end.
class PageMapping {
public:
    PageMapping() = default;
    // Maps the first 4096 bytes of an open file; the descriptor may be closed afterwards. On
    // failure Get() is null and errno says why. With PROT_READ alone the page is only to be read.
    explicit PageMapping(int fd, int protection = PROT_READ | PROT_WRITE);
    PageMapping(PageMapping&& other) noexcept;
    PageMapping& operator=(PageMapping&& other) noexcept;
    PageMapping(const PageMapping&) = delete;
    PageMapping& operator=(const PageMapping&) = delete;
    ~PageMapping();

    SharePage* Get() const { return m_page; }

private:
    SharePage* m_page = nullptr;
};

// Opens the page file as OpenPageFile does and maps the page, read-only with O_RDONLY. On failure
// Get() is null, with a reason.
PageMapping MapPageFile(int access, UniqueFd& file, std::string& reason);
