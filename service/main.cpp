#include <getopt.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "format/printable.h"
#include "page/page_guard.h"
#include "page/tv_service_page.h"
#include "platform/device_root.h"
#include "platform/read_number.h"
#include "platform/sleep_once.h"
#include "platform/standard_streams.h"
#include "service/tv_service.h"

namespace {

constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;
constexpr std::chrono::milliseconds kStopCheck{100};

constexpr char kUsage[] =
    "usage: ko_tv_service [--delay MS] [--status N] [--records N] [--accept-old]\n"
    "\n"
    "Plays the TV middleware service: answers the commands of the catalogue through\n"
    "the shared page, with values of the right types. Prints a line for each exchange.\n"
    "\n"
    "  --delay MS    wait so long before each reply\n"
    "  --status N    answer every command with this status\n"
    "  --records N   put N records into each reply (1)\n"
    "  --accept-old  carry out a request found at the start; that may be the\n"
    "                second time\n"
    "  --help        print this\n"
    "\n"
    "SIGINT or SIGTERM ends it.\n";

struct Settings {
    TvService::Options service;
    std::chrono::milliseconds delay{0};
    bool acceptOld = false;
};

volatile std::sig_atomic_t g_stop = 0;

void CatchStopSignals() {
    struct sigaction action = {};
    action.sa_handler = [](int) { g_stop = 1; };
    for (const int signal : {SIGINT, SIGTERM}) {
        sigaction(signal, &action, nullptr);
    }
}

// Returns nullopt if the process is to end with `status` at once.
std::optional<Settings> ReadOptions(int argc, char** argv, int& status) {
    static const option kOptions[] = {
        {"delay", required_argument, nullptr, 'd'},   {"status", required_argument, nullptr, 's'},
        {"records", required_argument, nullptr, 'r'}, {"accept-old", no_argument, nullptr, 'a'},
        {"help", no_argument, nullptr, 'h'},          {}};
    Settings settings;
    bool good = true;
    for (int letter = 0; good && (letter = getopt_long(argc, argv, "", kOptions, nullptr)) != -1;) {
        switch (letter) {
            case 'd':
                good = ReadMilliseconds(optarg, settings.delay);
                break;
            case 's':
                good = ReadNumber(optarg, settings.service.status);
                break;
            case 'r':
                good = ReadNumber(optarg, settings.service.records);
                break;
            case 'a':
                settings.acceptOld = true;
                break;
            case 'h':
                std::fputs(kUsage, stdout);
                status = 0;
                return std::nullopt;
            default:
                good = false;
        }
    }
    if (!good || optind < argc) {
        std::fputs(kUsage, stderr);
        status = kExitUsage;
        return std::nullopt;
    }
    return settings;
}

// In steps, so that a signal to stop is not kept waiting.
void Delay(std::chrono::milliseconds delay) {
    const auto end = std::chrono::steady_clock::now() + delay;
    while (g_stop == 0 && std::chrono::steady_clock::now() < end) {
        SleepOnce(
            std::min<std::chrono::nanoseconds>(kStopCheck, end - std::chrono::steady_clock::now()));
    }
}

void Post(TvServicePage& page, const TvService::Answer& answer) {
    const bool posted = page.PostReply(answer.reply.data(), answer.reply.size());
    // A request's texts are whatever a client sends.
    std::printf("%s%s\n", Printable(answer.summary).c_str(), posted ? "" : " (not posted)");
    FlushOutput();
}

// Nobody knows whether a request found at the start was carried out before.
void RefuseOld(TvServicePage& page) {
    std::vector<std::uint8_t> request;
    if (page.WaitRequest(std::chrono::milliseconds(0), request)) {
        Post(page, TvService::RefuseOld(request));
    }
}

void Serve(TvServicePage& page, const TvService& service, std::chrono::milliseconds delay) {
    while (g_stop == 0) {
        std::vector<std::uint8_t> request;
        if (!page.WaitRequest(kStopCheck, request)) {
            continue;
        }
        const TvService::Answer answer = service.Handle(request);
        Delay(delay);
        if (g_stop == 0) {
            Post(page, answer);
        }
    }
}

// False after a message.
bool Open(TvServicePage& page) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(kSharePageFile).parent_path(),
                                        ignored);
    std::string error;
    if (!page.Open(kSharePageFile, error)) {
        std::fprintf(stderr, "ko_tv_service: %s\n", Printable(error).c_str());
        return false;
    }
    if (page.LockError() != 0) {
        std::fprintf(stderr, "ko_tv_service: cannot lock %s, serving without a lock: %s\n",
                     Printable(kSharePageFile).c_str(), std::strerror(page.LockError()));
    }
    return true;
}

int Run(int argc, char** argv) {
    int status = 0;
    const std::optional<Settings> settings = ReadOptions(argc, argv, status);
    if (!settings) {
        return status;
    }
    CatchStopSignals();
    KoFileParse catalogue;
    catalogue.Init();
    FlushOutput();
    TvServicePage page(RunGuarded);
    if (!Open(page)) {
        return kExitFailure;
    }
    if (!settings->acceptOld) {
        RefuseOld(page);
    }
    const TvService service(catalogue, settings->service);
    std::printf("serving %zu commands on %s\n", service.CommandCount(),
                Printable(kSharePageFile).c_str());
    FlushOutput();
    Serve(page, service, settings->delay);
    std::puts("stopped");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    OpenClosedStreams();
    return FinishOutput("ko_tv_service", Run(argc, argv), kExitFailure);
}
