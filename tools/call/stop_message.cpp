#include "tools/call/stop_message.h"

#include <unistd.h>

#include <cstring>

#include "tools/ending_signals.h"

namespace {

// For the handler: the page that holds the request; null until one was posted.
SharePage* volatile g_postedPage = nullptr;

const char* Message() {
    if (g_postedPage == nullptr) {
        return "ko_cmd_tool: ended by a signal; nothing was sent\n";
    }
    SharePageHeader header = {};
    const PageResult looked = SharePageClient(g_postedPage).Look(header);
    return looked == PageResult::kDone && (header.flags & kReplyReady) == 0
               ? "ko_cmd_tool: ended by a signal; the request stays in the page\n"
               : "ko_cmd_tool: ended by a signal; the request was answered\n";
}

void OnSignal(int signal) {
    const char* message = Message();
    // Nothing can be done about a message that cannot be written.
    static_cast<void>(!write(STDERR_FILENO, message, std::strlen(message)));
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

// Gives the ending signals that are handled by `from` the handler `to`.
void ChangeHandlers(void (*from)(int), void (*to)(int)) {
    for (const int signal : kEndingSignals) {
        struct sigaction action = {};
        sigaction(signal, nullptr, &action);
        if (action.sa_handler == from) {
            std::signal(signal, to);
        }
    }
}

}  // namespace

StopMessage::StopMessage(SharePage* page) : m_page(page) {
    ChangeHandlers(SIG_DFL, OnSignal);
}

StopMessage::~StopMessage() {
    ChangeHandlers(OnSignal, SIG_DFL);
    g_postedPage = nullptr;
}

PageResult StopMessage::Post(SharePageClient& client, const android::Parcel& request) {
    sigset_t ending;
    sigset_t before;
    sigemptyset(&ending);
    for (const int signal : kEndingSignals) {
        sigaddset(&ending, signal);
    }
    sigprocmask(SIG_BLOCK, &ending, &before);
    const PageResult posted = client.Post(request.data(), request.dataSize());
    g_postedPage = posted == PageResult::kDone ? m_page : nullptr;
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return posted;
}
