// The lowest framer of a stack: hands payload through to a link, with nothing around it.
#pragma once

#include "framers/qframer.h"

class QLink;

class QFramerNull : public QFramer
{
public:
    // The link is not owned and may be null. It is used while it calls itself open; one whose open
    // failed is closed by its owner first (see QLink::open).
    explicit QFramerNull(QLink* link);

    void link_set(QLink* link);

    // Does nothing while the link is closed.
    void flush() override;
    // The result of the link; FRAMER_NO_LAYER without a link, FRAMER_CLOSED while it is closed.
    int write(const char* buffer, int nbytes) override;
    int read(char* buffer, int nbytes) override;

private:
    QLink* link = nullptr;
};
