#include "framers/qframer.h"

QFramer::QFramer() = default;
QFramer::~QFramer() = default;

void QFramer::lower_set(QFramer* lower)
{
    this->lower = lower;
}

void QFramer::lower_flush()
{
    if (lower)
        lower->flush();
}

int QFramer::lower_write(const char* buffer, int nbytes)
{
    return lower ? lower->write(buffer, nbytes) : FRAMER_NO_LAYER;
}

int QFramer::lower_read(char* buffer, int nbytes)
{
    return lower ? lower->read(buffer, nbytes) : FRAMER_NO_LAYER;
}
