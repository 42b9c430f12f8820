// Room for one frame while one call builds or checks it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <string_view>

#ifdef _WIN32
#include <malloc.h>
#else
#include <alloca.h>
#endif

class FrameBuffer
{
public:
    // Up to here a frame needs no heap: 64 KiB with the headers of a whole stack. A frame takes as
    // much of the thread's stack as it is long, once for each framer that nests, so that a stack of
    // ten with the longest frames fits into one megabyte.
    static constexpr int ON_STACK = 64 * 1024 + 256;

    FrameBuffer(char* bytes, int length)
        : bytes(bytes)
        , length(length)
    {
    }
    FrameBuffer(const FrameBuffer&) = delete;
    FrameBuffer& operator=(const FrameBuffer&) = delete;

    // Null when payload is below 0, or the whole is more than an int counts or the memory holds.
    char* data() { return bytes; }
    int size() const { return length; }
    // The first count bytes: at most all, though a layer below may say that it stored more.
    std::string_view first(int count) const
    {
        return {bytes, std::size_t(std::clamp(count, 0, length))};
    }

private:
    char* const bytes = nullptr;
    const int length = 0;
};

// Calls use(FrameBuffer&) with room for `payload` bytes and `overhead` bytes around them, and gives
// what it returns. The room goes with the call.
template <typename Use> int with_frame_buffer(int payload, int overhead, const Use& use)
{
    const bool possible = payload >= 0 && payload <= std::numeric_limits<int>::max() - overhead;
    const int length = possible ? payload + overhead : 0;
    std::unique_ptr<char[]> on_heap;
    char* bytes = nullptr;
    if (length > FrameBuffer::ON_STACK) {
        on_heap.reset(new (std::nothrow) char[std::size_t(length)]);
        bytes = on_heap.get();
    } else if (possible) {
        bytes = static_cast<char*>(alloca(std::size_t(std::max(length, 1))));
    }
    FrameBuffer buffer(bytes, length);
    return use(buffer);
}
