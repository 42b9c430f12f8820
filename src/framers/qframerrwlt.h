// Wraps payload between two marker bytes.
#pragma once

#include "framers/qframer.h"

#include <optional>
#include <string_view>

//   offset   size   field
//   0        1      start, AB
//   1        n      payload; nothing in it is escaped
//   n + 1    1      end, BA
struct RwltFrame
{
    static constexpr int OVERHEAD = 2;

    std::string_view payload;

    // Writes payload.size() + OVERHEAD bytes to frame.
    void build(char* frame) const;
    // Nothing when a marker isn't in its place. The payload points into frame.
    static std::optional<RwltFrame> parse(std::string_view frame);
};

class QFramerRwlt : public QFramer
{
public:
    explicit QFramerRwlt(QFramer* lower);

    void flush() override;
    // Drops what waits to be read, then sends. Always nbytes, whatever happened below.
    int write(const char* buffer, int nbytes) override;
    // Every failure gives 0 and a line in the log; never a negative number. A frame without payload
    // counts as a failure.
    int read(char* buffer, int nbytes) override;
};
