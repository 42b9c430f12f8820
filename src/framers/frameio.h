// One frame down and one frame up, for framers that differ in their frame and in what they say of a
// bad one.
#pragma once

#include "framers/framebuffer.h"
#include "framers/qframer.h"

#include <string_view>

// Builds the frame and sends it through the layer below: the result of that, or FRAMER_BAD_SIZE.
// `overhead` is what the frame needs beyond its payload, whose length may have been below 0.
template <typename Frame> int write_frame(QFramer& framer, const Frame& frame, int overhead)
{
    return with_frame_buffer(int(frame.payload.size()), overhead, [&](FrameBuffer& room) -> int {
        if (!room.data())
            return FRAMER_BAD_SIZE;
        frame.build(room.data());
        return framer.lower_write(room.data(), room.size());
    });
}

// Reads a frame from the layer below and stores its payload: its length. parse(std::string_view)
// gives the frame, or nothing when it isn't right; refuse(std::string_view, int) then gives the
// result, from the bytes that came and the result of the layer below. Without room for the frame
// that is FRAMER_BAD_SIZE, and the bytes have no address.
template <typename Parse, typename Refuse>
int read_frame(QFramer& framer, char* buffer, int nbytes, int overhead, const Parse& parse,
               const Refuse& refuse)
{
    return with_frame_buffer(nbytes, overhead, [&](FrameBuffer& room) -> int {
        const int received =
            room.data() ? framer.lower_read(room.data(), room.size()) : FRAMER_BAD_SIZE;
        const std::string_view came = room.first(received);
        const auto good = parse(came);
        return good ? int(good->payload.copy(buffer, std::size_t(nbytes))) : refuse(came, received);
    });
}

// The refusal of framers that return codes.
inline int code_of_refused(std::string_view, int received)
{
    return received < 1 ? received : int(FRAMER_BAD_FRAME);
}
