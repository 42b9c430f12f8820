// How far a transfer is, in the words of the window.
#pragma once

#include "stack/progress.h"

#include <QCoreApplication>

struct Transfer : Progress
{
    Q_DECLARE_TR_FUNCTIONS(Transfer)
public:
    bool stopped = false; // what is left doesn't come

    // "131072 of 262144 bytes, 10.9 KB/s, 0:12 left"
    QString text() const;
};
