#pragma once

#include <pthread.h>
#include <sched.h>
#include <unistd.h>

#include <atomic>

// One pthread mutex with default attributes. A process-wide one is destroyed at exit while the
// watcher thread still runs, and locking a destroyed mutex ends the process on some C libraries: so
// the destructor waits for whoever holds or wants the mutex, and a thread that comes later waits
// for the end of the process.
class KoMutex {
public:
    KoMutex() { pthread_mutex_init(&m_mutex, nullptr); }
    ~KoMutex() {
        m_closed = true;
        while (m_users != 0) {
            sched_yield();
        }
        pthread_mutex_destroy(&m_mutex);
    }
    KoMutex(const KoMutex&) = delete;
    KoMutex& operator=(const KoMutex&) = delete;

    // Holds the mutex from construction to destruction.
    class Autolock {
    public:
        explicit Autolock(KoMutex& mutex) : m_mutex(mutex) { m_mutex.Lock(); }
        ~Autolock() { m_mutex.Unlock(); }
        Autolock(const Autolock&) = delete;
        Autolock& operator=(const Autolock&) = delete;

    private:
        KoMutex& m_mutex;
    };

private:
    void Lock() {
        ++m_users;
        if (m_closed) {
            --m_users;
            for (;;) {
                pause();
            }
        }
        pthread_mutex_lock(&m_mutex);
    }

    void Unlock() {
        pthread_mutex_unlock(&m_mutex);
        --m_users;
    }

    pthread_mutex_t m_mutex;
    std::atomic<int> m_users{0};  // threads that hold the mutex or wait for it
    std::atomic<bool> m_closed{false};
};
