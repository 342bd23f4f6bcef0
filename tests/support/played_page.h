#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "page/page_mapping.h"
#include "page/tv_service_page.h"
#include "tests/support/child.h"

// The page of a TestRoot with its service in the hands of the test. A second mapping, as another
// process has it, reaches every byte.
class PlayedPage {
public:
    PlayedPage();

    // Waits for a request of the program and returns it as PageRows does; empty when the program
    // has ended or printed `text` without one.
    std::string TakeRequest(Child& program, const std::string& text = {});

    // Writes over the start of the data and leaves the request where it is.
    void Scribble(std::string_view bytes) const;

    // Hands the bytes out as a reply of the given length, true or not.
    void Reply(std::string_view bytes, std::size_t length) const;

    // Leaves the page to another service.
    void Die() { m_service.reset(); }

    TvServicePage& Service() { return *m_service; }
    SharePage* Get() const { return m_mapping.Get(); }

private:
    std::optional<TvServicePage> m_service;
    PageMapping m_mapping;
};

// The header of the page's file and the data it tells of, in hexadecimal, eight bytes in a row.
std::string PageRows();
