// A file descriptor that is closed with its owner.
#pragma once

#include <utility>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

class FileDescriptor
{
public:
    // What open(2) and its kind return: -1 for none.
    explicit FileDescriptor(int number = -1)
        : fd(number)
    {
    }
    ~FileDescriptor() { close(); }
    FileDescriptor(FileDescriptor&& other) noexcept
        : fd(std::exchange(other.fd, -1))
    {
    }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        close();
        fd = std::exchange(other.fd, -1);
        return *this;
    }

    int number() const { return fd; }
    bool is_open() const { return fd >= 0; }
    void close()
    {
        if (fd >= 0)
            ::close(std::exchange(fd, -1));
    }

private:
    int fd = -1;
};
