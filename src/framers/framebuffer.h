// Room for one frame while one call builds or checks it.
#pragma once

#include <algorithm>
#include <memory>
#include <string_view>

class FrameBuffer
{
public:
    // Up to here a frame needs no heap: a kilobyte of firmware with the headers of a whole stack. A
    // stack of framers nests a few of these, which even a thread with a small stack can bear.
    static constexpr int ON_STACK = 1152;

    // Room for `payload` bytes and `overhead` bytes around them.
    FrameBuffer(int payload, int overhead);
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
    char on_stack[ON_STACK];
    std::unique_ptr<char[]> on_heap;
    char* bytes = nullptr;
    int length = 0;
};
