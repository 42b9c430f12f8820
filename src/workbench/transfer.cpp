#include "workbench/transfer.h"

QString Transfer::text() const
{
    if (total == 0)
        return {};
    QString text = tr("%1 of %2 bytes").arg(done).arg(total);
    if (has_pace())
        text += ", " + rate_text();
    if (!stopped && seconds_left() >= 0)
        text += ", " + tr("%1 left").arg(duration_text(seconds_left()));
    return text;
}
