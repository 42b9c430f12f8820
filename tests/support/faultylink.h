// Makes one call of another link fail, so that a test can break a dialogue at each of its calls in
// turn:
//
//   for (int at = 1;; ++at) {
//       MemoryLink memory; // scripted afresh
//       FaultyLink link(memory, at);
//       ... run the dialogue over &link ...
//       if (!link.failed())
//           break; // it makes fewer calls than `at`
//       ... check the result ...
//   }
#pragma once

#include "qlink.h"

class FaultyLink : public QLink
{
public:
    // What becomes of the calls after the one that fails.
    enum Aftermath { RECOVERS, STAYS_BROKEN };

    // The call with number `at`, counted from 1 over all operations, doesn't reach `link` and gives
    // `result`: an error code, or a count of bytes for a write cut short or a read that never came.
    // Operations that give a bool give false, and a flush drops nothing.
    FaultyLink(QLink& link, int at, int result = LINK_IO, Aftermath aftermath = RECOVERS)
        : link(link)
        , at(at)
        , result(result)
        , aftermath(aftermath)
    {
    }

    int calls() const { return count; }
    bool failed() const { return count >= at; }

    int open() override { return breaks() ? result : link.open(); }
    bool is_open() override { return !breaks() && link.is_open(); }
    int close() override { return breaks() ? result : link.close(); }
    void flush() override
    {
        if (!breaks())
            link.flush();
    }
    int bytes_available() override { return breaks() ? result : link.bytes_available(); }
    int getchar() override { return breaks() ? result : link.getchar(); }
    int putchar(int c) override { return breaks() ? result : link.putchar(c); }
    int read(char* buffer, int nbytes) override
    {
        return breaks() ? result : link.read(buffer, nbytes);
    }
    int write(const char* buffer, int nbytes) override
    {
        return breaks() ? result : link.write(buffer, nbytes);
    }
    bool can_read_line() override { return !breaks() && link.can_read_line(); }
    int readline(char* buffer, int size) override
    {
        if (!breaks())
            return link.readline(buffer, size);
        if (size > 0)
            buffer[0] = '\0';
        return result;
    }

private:
    bool breaks()
    {
        ++count;
        return count == at || (count > at && aftermath == STAYS_BROKEN);
    }

    QLink& link;
    const int at;
    const int result;
    const Aftermath aftermath;
    int count = 0;
};
