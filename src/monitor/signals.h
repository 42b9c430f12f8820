// Signals as something to poll() for.
#pragma once

// One object a process. While it lives, the signals that ask for an end do nothing else.
class Signals
{
public:
    Signals();
    ~Signals();
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

    int descriptor() const;
    // The next signal that came, 0 for none: SIGINT, SIGTERM and SIGHUP ask for the end, SIGCONT
    // says that others had the terminal.
    int take();
    // How often an end was asked for.
    static int ends_asked();
};
