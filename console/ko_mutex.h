#pragma once

#include <pthread.h>

// One pthread mutex with default attributes.
class KoMutex {
public:
    KoMutex() { pthread_mutex_init(&m_mutex, nullptr); }
    ~KoMutex() { pthread_mutex_destroy(&m_mutex); }
    KoMutex(const KoMutex&) = delete;
    KoMutex& operator=(const KoMutex&) = delete;

    // Holds the mutex from construction to destruction.
    class Autolock {
    public:
        explicit Autolock(KoMutex& mutex) : m_mutex(mutex) { pthread_mutex_lock(&m_mutex.m_mutex); }
        ~Autolock() { pthread_mutex_unlock(&m_mutex.m_mutex); }
        Autolock(const Autolock&) = delete;
        Autolock& operator=(const Autolock&) = delete;

    private:
        KoMutex& m_mutex;
    };

private:
    pthread_mutex_t m_mutex;
};
