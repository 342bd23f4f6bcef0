#pragma once

// Runs `access(argument)`, which may touch a mapped page. Returns false, with the access broken
// off, when the file behind the page has become too short for it: the kernel raises SIGBUS then,
// which would end the process. `access` must own nothing that needs a destructor. Safe on several
// threads at once. The first call installs the process's SIGBUS handler; a SIGBUS from anywhere
// else still ends the process.
bool RunGuarded(void (*access)(void*), void* argument);

// The same for a callable, which is called in place.
template <typename Access>
bool GuardPageAccess(Access access) {
    return RunGuarded([](void* raw) { (*static_cast<Access*>(raw))(); }, &access);
}
