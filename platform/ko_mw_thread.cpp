#include "platform/ko_mw_thread.h"

#include <pthread.h>

#include <cerrno>
#include <memory>

namespace {

struct StartInfo {
    KoMWThread::Body body;
    const void* argument;
};

void* RunBody(void* raw) {
    const std::unique_ptr<StartInfo> owned(static_cast<StartInfo*>(raw));
    const StartInfo start = *owned;
    start.body(start.argument);
    return nullptr;
}

}  // namespace

KoMWThread::KoMWThread(Body body, const void* argument, IKoMWThreadEvt* events)
    : m_body(body), m_argument(argument), m_events(events) {}

int KoMWThread::Run(unsigned int option) {
    static_cast<void>(option);
    static_cast<void>(m_events);
    if (m_started) {
        return EALREADY;
    }
    auto start = std::make_unique<StartInfo>(StartInfo{m_body, m_argument});
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, RunBody, start.get());
    if (error != 0) {
        return error;
    }
    static_cast<void>(start.release());
    pthread_detach(thread);
    m_started = true;
    return 0;
}
