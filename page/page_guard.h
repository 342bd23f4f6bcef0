#pragma once

// Runs `access(argument)`, which may touch a mapped page. Returns false, with the access broken
// off, if the page file has become too short for it: the kernel raises SIGBUS then,
// which would end the process. `access` must own nothing that needs a destructor. Safe on several
// threads at once, in signal handlers, and inside another guarded access, which then goes on.
//
// The first call installs a SIGBUS handler for the process; a SIGBUS from anywhere else goes on to
// the handler that was there. SIGBUS is let through on the calling thread for the time of the
// access.
bool RunGuarded(void (*access)(void*), void* argument);

// The same for a callable, which is called in place.
template <typename Access>
bool GuardPageAccess(Access access) {
    return RunGuarded([](void* raw) { (*static_cast<Access*>(raw))(); }, &access);
}
