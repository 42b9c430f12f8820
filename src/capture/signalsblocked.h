// Threads that no signal goes to.
#pragma once

#ifndef _WIN32
#include <csignal>
#include <pthread.h>
#endif

// Threads that are started while it lives take no signals: these belong to the program's other
// threads, whose waits they end, and a pipe that nobody reads gives an error.
class SignalsBlocked
{
public:
#ifdef _WIN32
    SignalsBlocked() {} // no signals there
#else
    SignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &before);
    }
    ~SignalsBlocked()
    {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
#endif
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
#ifndef _WIN32
    sigset_t before;
#endif
};
