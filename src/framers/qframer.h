// The frame layer of the device library: turns payload into frames on the way down and back on the
// way up.
#pragma once

#include <QObject>

// Error codes of framers, beside those of links.
//
//   FRAMER_CLOSED     -1   QFramerNull: the link is closed
//   FRAMER_BAD_FRAME  -5   a frame came but failed its check: wrong address, CRC or prefix
//   FRAMER_NO_LAYER  -19   no framer or link below
//   FRAMER_BAD_SIZE  -22   nbytes is below 0, or the frame around it is longer than the format, an
//                          int or the memory allows; nothing was sent or read
enum FramerError : int {
    FRAMER_CLOSED = -1,
    FRAMER_BAD_FRAME = -5,
    FRAMER_NO_LAYER = -19,
    FRAMER_BAD_SIZE = -22
};

// Framers stack: each holds the one below it and owns none. A frame is what one read of the layer
// below returns before the link's time-out; nothing is searched for or kept between calls. A frame
// is put together and taken apart in a buffer that lives for the one call and is as long as the
// frame may be: on the thread's stack up to 64 KiB (FrameBuffer::ON_STACK), on the heap beyond. No
// framer takes other memory, but for the texts of its log. One thread at a time drives a stack.
class QFramer : public QObject
{
    Q_OBJECT

public:
    QFramer();
    ~QFramer() override;

    // Drops what waits to be read in the layer below.
    virtual void flush() = 0;
    // Sends nbytes of payload as one frame. What a success returns is documented with each framer;
    // or an error code.
    virtual int write(const char* buffer, int nbytes) = 0;
    // Payload bytes stored in buffer, which holds nbytes, 0 when nothing came, or an error code.
    virtual int read(char* buffer, int nbytes) = 0;

    // The framer below; not owned. Without one, lower_flush does nothing and the other two give
    // FRAMER_NO_LAYER.
    void lower_set(QFramer* lower);
    void lower_flush();
    int lower_write(const char* buffer, int nbytes);
    int lower_read(char* buffer, int nbytes);

signals:
    void log(QString s);

protected:
    QFramer* lower = nullptr;
};
