#pragma once

#include <poll.h>
#include <signal.h>

namespace tovi {

/// Holds signals back but while the process waits, so that none gets lost between two waits.
class SignalsWhileWaiting {
public:
    SignalsWhileWaiting() {
        sigset_t held;
        sigemptyset(&held);
        sigaddset(&held, SIGINT);
        sigaddset(&held, SIGTERM);
        ::pthread_sigmask(SIG_BLOCK, &held, &before_);
    }
    ~SignalsWhileWaiting() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsWhileWaiting(const SignalsWhileWaiting&) = delete;
    SignalsWhileWaiting& operator=(const SignalsWhileWaiting&) = delete;

    /// Waits for input; false when a signal comes first.
    bool waitFor(int descriptor) const {
        pollfd wanted{descriptor, POLLIN, 0};
        return ::ppoll(&wanted, 1, nullptr, &before_) == 1;
    }

private:
    sigset_t before_;
};

}  // namespace tovi
