// Puts a channel prefix before the payload.
#pragma once

#include "framers/qframer.h"

#include <cstdint>
#include <optional>
#include <string_view>

//   offset          size            field
//   0               prefix length   the channel prefix, 0 to 16 bytes
//   prefix length   n               payload
struct ChanFrame
{
    std::string_view prefix;
    std::string_view payload;

    // Writes prefix.size() + payload.size() bytes to frame.
    void build(char* frame) const;
    // Nothing when another prefix or no payload is there. The payload points into frame.
    static std::optional<ChanFrame> parse(std::string_view frame, std::string_view prefix);
};

// Without a prefix, as after construction, it adds nothing.
class QFramerChan : public QFramer
{
public:
    static constexpr int PREFIX_MAX = 16;

    explicit QFramerChan(QFramer* lower);

    // A prefix of one byte.
    void chan_set(std::uint8_t chan);
    // A prefix of two bytes, the high one first.
    void chan_set(std::uint16_t chan);
    // Copies the nbytes at chan, at most PREFIX_MAX; more change nothing at all.
    void chan_set(const void* chan, unsigned nbytes);

    void flush() override;
    // What the framer below returns: nbytes and the prefix length when the whole frame has gone
    // out.
    int write(const char* buffer, int nbytes) override;
    // FRAMER_BAD_FRAME when the prefix is wrong, and also when nothing came in time, when the
    // prefix came alone and when the layer below failed.
    int read(char* buffer, int nbytes) override;

private:
    std::string_view prefix_bytes() const;

    std::uint8_t prefix[PREFIX_MAX] = {};
    int prefix_length = 0;
};
