#include "tests/fuzz/hostile_page.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "page/page_guard.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

// Removed at the end of the process.
class TemporaryFile {
public:
    TemporaryFile() : m_fd(mkstemp(m_path.data())) { Resize(kPageSize); }
    ~TemporaryFile() { unlink(m_path.c_str()); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void Resize(std::size_t size) const {
        Require(ftruncate(m_fd.Get(), static_cast<off_t>(size)) == 0, "the page's file is sized");
    }
    const std::string& Path() const { return m_path; }
    int Get() const { return m_fd.Get(); }

private:
    std::string m_path = "/tmp/ko_fuzz.XXXXXX";
    UniqueFd m_fd;
};

const TemporaryFile& File() {
    static const TemporaryFile file;
    return file;
}

}  // namespace

HostilePage::HostilePage(std::vector<std::string> versions, bool cut)
    : m_versions(std::move(versions)), m_cut(cut), m_thread([this] { Scribble(); }) {}

HostilePage::~HostilePage() {
    m_stop = true;
    m_thread.join();
    File().Resize(kPageSize);
}

const std::string& HostilePage::Path() {
    return File().Path();
}

void HostilePage::Scribble() const {
    const PageMapping mapping(File().Get());
    do {
        for (const std::string& version : m_versions) {
            auto* bytes = reinterpret_cast<volatile std::uint8_t*>(mapping.Get());
            GuardPageAccess([&] {
                for (std::size_t i = 0; i < version.size() && i < kPageSize; ++i) {
                    bytes[i] = static_cast<std::uint8_t>(version[i]);
                }
            });
            if (m_cut) {
                File().Resize(0);
                File().Resize(kPageSize);
            }
        }
    } while (!m_stop);
}
