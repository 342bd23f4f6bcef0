#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "page/page_mapping.h"
#include "tools/failure.h"

// The content of the page, from its start on.
struct PageCopy {
    SharePageHeader header;
    std::uint8_t data[kDataCapacity];

    // Bytes of the header and of as much data as it announces; no data if that is more than a page.
    std::size_t Size() const {
        return kHeaderSize + (header.length <= kDataCapacity ? header.length : 0);
    }
    std::vector<std::uint8_t> Data() const { return {data, data + Size() - kHeaderSize}; }
};

// Polls the page without any part in what goes on there: mapped read-only, no lock.
class PageObserver {
public:
    // Returns nullopt or kExitPage.
    std::optional<Failure> Open();

    // True if Last has changed: another header was seen, or, below the same one, other data that
    // two polls in a row found. A truncated page counts as all zeros.
    bool Poll();

    const PageCopy& Last() const { return m_last; }

private:
    // False if the header changed meanwhile.
    bool Copy(PageCopy& copy) const;

    PageMapping m_page;
    PageCopy m_last = {};
    PageCopy m_polled = {};  // by the poll before
};
