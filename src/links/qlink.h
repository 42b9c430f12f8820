// The byte link of the device library: eleven byte operations that say nothing of what carries
// them.
#pragma once

#include <QObject>

// Error codes of links: negative errno numbers in the numbering of the Windows C runtime.
//
//   LINK_FAILED   -1   an open failed: already open, protocol not supported, no connection
//   LINK_IO       -5   getchar or putchar of a network link moved no byte
//   LINK_CLOSED   -6   the operation needs an open link and this one is closed
//   LINK_AGAIN   -11   the serial port could not be opened
enum LinkError : int { LINK_FAILED = -1, LINK_IO = -5, LINK_CLOSED = -6, LINK_AGAIN = -11 };

// A link knows no frames and not who uses it. Whoever assembles a stack creates the link, hands its
// pointer to the layer above and deletes it through its concrete type or QObject, never through
// QLink. One thread at a time drives a link.
//
// On a closed link flush does nothing, is_open and can_read_line are false, and the other
// operations on data give LINK_CLOSED. Each concrete link says where it differs and what its own
// failures are.
//
// Each has a signal log(QString) too. It reports why an operation failed, where its result leaves
// that open; and, once logging of data is on, each operation that moved bytes, with the bytes in
// hexadecimal.
class QLink
{
public:
    // Opens the link. 0, or an error code. Close it after a failure too: a link that could not
    // connect may go on calling itself open.
    virtual int open() = 0;
    virtual bool is_open() = 0;
    // Closes the link. 0; or LINK_CLOSED, where a link has that for a closed one.
    virtual int close() = 0;
    // Drops every byte that already waits to be read; does nothing on a closed link.
    virtual void flush() = 0;
    // Bytes that can be read at once, or an error code.
    virtual int bytes_available() = 0;
    // The next byte, 0 to 255, or an error code.
    virtual int getchar() = 0;
    // Writes the low 8 bits of c. c as passed, or an error code.
    virtual int putchar(int c) = 0;
    // Reads at most nbytes into buffer. Bytes read, 0 when none came in time, or an error code.
    virtual int read(char* buffer, int nbytes) = 0;
    // Bytes written, or an error code.
    virtual int write(const char* buffer, int nbytes) = 0;
    // True when a whole line waits. Here: false.
    virtual bool can_read_line();
    // Reads a line, its line feed included, of at most size - 1 bytes, and ends it with a NUL.
    // Bytes stored, the NUL not counted; a line cut short by an error of getchar counts what came.
    virtual int readline(char* buffer, int size);

protected:
    ~QLink() = default;
};

Q_DECLARE_INTERFACE(QLink, "QLink")
