#include "framers/qframernull.h"

#include "links/qlink.h"

QFramerNull::QFramerNull(QLink* link)
    : link(link)
{
}

void QFramerNull::link_set(QLink* link)
{
    this->link = link;
}

void QFramerNull::flush()
{
    if (link && link->is_open())
        link->flush();
}

int QFramerNull::write(const char* buffer, int nbytes)
{
    if (!link)
        return FRAMER_NO_LAYER;
    return link->is_open() ? link->write(buffer, nbytes) : FRAMER_CLOSED;
}

int QFramerNull::read(char* buffer, int nbytes)
{
    if (!link)
        return FRAMER_NO_LAYER;
    return link->is_open() ? link->read(buffer, nbytes) : FRAMER_CLOSED;
}
