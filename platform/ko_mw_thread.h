#pragma once

// Receiver of a thread's life-cycle events. The console needs none and passes null.
class IKoMWThreadEvt;

// Runs one function on a thread of its own. The thread is never joined: it ends with the process,
// so the body's argument must live as long.
class KoMWThread {
public:
    using Body = void (*)(const void*);

    KoMWThread(Body body, const void* argument, IKoMWThreadEvt* events);

    // Starts the thread; a second call starts nothing. `option` is handed through to the platform
    // and not interpreted here. Returns 0, or the error number when no thread could be made.
    int Run(unsigned int option);

private:
    Body m_body;
    const void* m_argument;
    IKoMWThreadEvt* m_events;
    bool m_started = false;
};
