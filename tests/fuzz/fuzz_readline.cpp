#include "framerfuzz.h"

// The link's own readline: the line up to its feed, or as much as fits or came.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const FuzzInput input(data, size);
    MemoryLink link;
    link.arrive(input.came);
    while (true) {
        const QByteArray before = link.unread();
        std::vector<char> line(std::size_t(input.nbytes) + input.choice);
        const int room = int(line.size());
        const int length = link.readline(line.data(), room);
        const int feed = before.indexOf('\n');
        const int whole = feed < 0 ? before.size() : feed + 1;
        require(length == qBound(0, whole, qMax(0, room - 1)));
        require(room == 0 || line[std::size_t(length)] == '\0');
        require(QByteArray(line.data(), length) + link.unread() == before);
        if (length == 0)
            return 0;
    }
}
