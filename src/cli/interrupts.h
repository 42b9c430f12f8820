// Ctrl-C and requests to terminate, as a signal of the event loop and as a state to ask for.
#pragma once

#include <QObject>

// The first signal asks the command to end cleanly; from then on the system's own handling is back,
// so a second one ends the program at once. One object a process.
class Interrupts : public QObject
{
    Q_OBJECT

public:
    Interrupts();
    ~Interrupts() override;

    bool raised() const;
    // Throws Failure when it has been raised; for commands without an event loop, between their
    // exchanges.
    void check() const;

signals:
    void interrupted();
};
