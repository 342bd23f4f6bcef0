#include <cstdio>
#include <string>

#include "middleware_parcel.h"
#include "page/page_guard.h"
#include "page/tv_service_page.h"

// A service of one's own: two commands of a lamp behind the screen; mods.conf and cmds.conf are in
// the same directory. Argument: the page file, /data/vendor/.tv on a device.

namespace {

constexpr std::int32_t kSetLevel = 0x901;  // para format df: zone, percent
constexpr std::int32_t kGetLevel = 0x902;  // para format d: zone; print format df
constexpr std::int32_t kZones = 4;
constexpr std::int32_t kRefused = -22;
constexpr std::int32_t kTooLong = -90;

float g_levels[kZones];

// Every request is answered, one that cannot be served with a status other than 0.
void Handle(const android::Parcel& request, android::Parcel& reply) {
    const std::size_t size = request.dataSize();
    const std::int32_t instruction = request.readInt32();
    const std::int32_t zone = request.readInt32();
    const bool set = instruction == kSetLevel && size == 12;
    const bool get = instruction == kGetLevel && size == 8;
    if ((!set && !get) || zone < 0 || zone >= kZones) {
        reply.writeInt32(kRefused);
        return;
    }
    reply.writeInt32(0);
    if (set) {
        g_levels[zone] = request.readFloat();
        return;
    }
    reply.writeInt32(zone);
    reply.writeFloat(g_levels[zone]);
}

// A reply that does not fit the page leaves the request there, to be asked again.
void Answer(TvServicePage& page, const android::Parcel& reply) {
    if (!page.PostReply(reply.data(), reply.dataSize())) {
        android::Parcel failure;
        failure.writeInt32(kTooLong);
        page.PostReply(failure.data(), failure.dataSize());
    }
}

}  // namespace

int main(int argc, char** argv) {
    TvServicePage page(RunGuarded);
    std::string error;
    if (argc != 2 || !page.Open(argv[1], error)) {
        std::fprintf(stderr, "lamp_service: %s\n",
                     argc != 2 ? "name the page file" : error.c_str());
        return 1;
    }
    std::vector<std::uint8_t> bytes;
    // A request from before the start may have been carried out then: refused.
    bool old = page.WaitRequest(std::chrono::milliseconds(0), bytes);
    std::printf("serving %s\n", argv[1]);
    std::fflush(stdout);
    for (;;) {
        if (old || page.WaitRequest(std::chrono::seconds(1), bytes)) {
            android::Parcel request;
            android::Parcel reply;
            request.setData(bytes.data(), old ? 0 : bytes.size());
            Handle(request, reply);
            Answer(page, reply);
            old = false;
        }
    }
}
