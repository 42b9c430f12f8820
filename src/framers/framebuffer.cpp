#include "framebuffer.h"

#include <limits>
#include <new>

FrameBuffer::FrameBuffer(int payload, int overhead)
{
    if (payload < 0 || payload > std::numeric_limits<int>::max() - overhead)
        return;
    length = payload + overhead;
    if (length > ON_STACK)
        on_heap.reset(new (std::nothrow) char[std::size_t(length)]);
    bytes = length > ON_STACK ? on_heap.get() : on_stack;
}
