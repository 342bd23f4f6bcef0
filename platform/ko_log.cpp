#include "platform/ko_log.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <string>

#include "platform/device_root.h"
#include "platform/ko_securec.h"
#include "platform/unique_fd.h"

namespace {

constexpr char kLogSocket[] = KO_DEVICE_ROOT "/dev/socket/logdw";
constexpr char kSyslogSocket[] = KO_DEVICE_ROOT "/dev/log";
constexpr std::size_t kTextSize = 512;  // bytes of an entry's text, terminator included
constexpr std::uint8_t kMainBuffer = 0;

// Precedes an entry on its way to the log daemon. The priority in one byte, the tag and the
// message, each with a NUL, follow.
struct __attribute__((packed)) EntryHeader {
    std::uint8_t buffer;
    std::uint16_t thread;
    std::uint32_t seconds;  // of the day's clock
    std::uint32_t nanoseconds;
};
static_assert(sizeof(EntryHeader) == 11);
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the header is sent in host order");

std::string Datagram(ATV_LOG_PRIO_E priority, const char* tag, const std::string& message) {
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    const EntryHeader header = {kMainBuffer, static_cast<std::uint16_t>(gettid()),
                                static_cast<std::uint32_t>(now.tv_sec),
                                static_cast<std::uint32_t>(now.tv_nsec)};
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof(header));
    bytes += static_cast<char>(priority);
    bytes.append(tag).push_back('\0');
    bytes.append(message).push_back('\0');
    return bytes;
}

// What syslog(3) would send; that waits for a daemon that has stalled.
std::string SyslogDatagram(ATV_LOG_PRIO_E priority, const char* tag, const std::string& message) {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    char time[32];
    std::strftime(time, sizeof(time), "%b %e %T", &local);
    const int level = priority == ATV_LOG_PRIO_ERROR ? LOG_ERR : LOG_WARNING;
    return "<" + std::to_string(LOG_USER | level) + ">" + time + " " +
           program_invocation_short_name + ": " + tag + ": " + message;
}

// False if the daemon takes no entry now; nothing waits for it. Entries are rare: with a socket for
// each, a daemon that starts anew is found again and threads share nothing.
bool Send(const char* daemon, const std::string& datagram) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const UniqueFd fd(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    return strcpy_s(address.sun_path, sizeof(address.sun_path), daemon) == 0 &&
           sendto(fd.Get(), datagram.data(), datagram.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
                  reinterpret_cast<const sockaddr*>(&address), sizeof(address)) >= 0;
}

}  // namespace

void KoLog::PrintLog(ATV_LOG_PRIO_E priority, const char* tag, const char* function,
                     unsigned int line, const char* format, ...) {
    char text[kTextSize];
    std::va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof(text), format, values);
    va_end(values);
    const std::string message =
        std::string("[") + function + ":" + std::to_string(line) + "] " + text;
    if (!Send(kLogSocket, Datagram(priority, tag, message))) {
        Send(kSyslogSocket, SyslogDatagram(priority, tag, message));
    }
}
