// Frames a second through each stack of framers over a link in memory, as multiples of the bare
// QFramerNull in the same run, and the heap allocations that a frame costs: a usual telegram, a
// page of firmware, and the longest frame that needs no heap.
#include "framers/qframerchan.h"
#include "framers/qframercnet.h"
#include "framers/qframercrc16.h"
#include "framers/qframerdorv.h"
#include "framers/qframernull.h"
#include "framers/qframerrtu.h"
#include "framers/qframerrwlt.h"
#include "links/qlink.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {
long allocations = 0;
} // namespace

// Qt's containers take memory from malloc, so that is where to count.
extern "C" {
void* __libc_malloc(std::size_t size);               // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* block, std::size_t size); // NOLINT(bugprone-reserved-identifier)

void* malloc(std::size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

void* realloc(void* block, std::size_t size)
{
    ++allocations;
    return __libc_realloc(block, size);
}
}

namespace {

constexpr int PAYLOADS[] = {64, 4096, 64 * 1024};
constexpr int BYTES_A_ROUND = 64 * 20000; // in each direction, whatever the payload is
constexpr int ROUNDS = 15; // interleaved, so that a busy moment doesn't hit one stack alone
constexpr int FRAMES_AN_EXCHANGE = 2;

// Plays what a device says, read by read, round and round; keeps the last write.
class ScriptLink : public QLink
{
public:
    std::vector<std::string> script;
    std::string written;

    int open() override { return 0; }
    bool is_open() override { return true; }
    int close() override { return 0; }
    void flush() override {}
    int bytes_available() override { return 0; }
    int getchar() override { return LINK_IO; }
    int putchar(int c) override { return c; }
    int read(char* buffer, int nbytes) override
    {
        if (script.empty())
            return 0;
        const std::string& piece = script[next++ % script.size()];
        return int(piece.copy(buffer, std::size_t(nbytes)));
    }
    int write(const char* buffer, int nbytes) override
    {
        written.assign(buffer, std::size_t(nbytes));
        return nbytes;
    }
    int readline(char* buffer, int size) override { return read(buffer, size - 1); }

private:
    std::size_t next = 0;
};

struct Stacks
{
    ScriptLink link;
    QFramerNull null{&link};
    QFramerCrc16 crc16{&null};
    QFramerRtu rtu{&null};
    QFramerChan chan{&null};
    QFramerRwlt rwlt{&null};
    QFramerCnet cnet{&null};
    QFramerCrc16 chan_crc16{&chan};
    QFramerCnet crc16_cnet{&crc16};
    QFramerDorv dorv{&null};
    QFramerDorv dorv_raw{&null};

    Stacks()
    {
        rtu.slave_set(1);
        chan.chan_set(std::uint16_t(0x1234));
        cnet.target_set(std::uint16_t(0x1234));
        crc16_cnet.target_set(std::uint16_t(0x1234));
        dorv.link_set(&link);
        dorv_raw.link_set(&link);
        dorv_raw.raw_set(true);
    }
};

struct Row
{
    const char* name;
    QFramer& (*framer)(Stacks&);
    std::vector<std::string> reply;  // to a write, read by read
    std::vector<std::string> report; // what a read then meets; empty: the frame that was written
    int room;                        // in the buffer of a read
};

bool measure(const Row& row, Stacks& stacks, const std::string& payload,
             std::vector<double>& frame_rates, double& per_frame)
{
    using Clock = std::chrono::steady_clock;
    QFramer& framer = row.framer(stacks);
    const int size = int(payload.size());
    const int exchanges = BYTES_A_ROUND / size;
    std::vector<char> back(std::size_t(row.room), '\0');

    stacks.link = {};
    framer.write(payload.data(), size);
    stacks.link.script = row.reply;
    if (row.report.empty())
        stacks.link.script.push_back(stacks.link.written);
    for (const std::string& piece : row.report)
        stacks.link.script.push_back(piece);

    const long before = allocations;
    const auto start = Clock::now();
    for (int i = 0; i < exchanges; ++i)
        if (framer.write(payload.data(), size) < size || framer.read(back.data(), row.room) != size)
            return false;
    const std::chrono::duration<double> taken = Clock::now() - start;
    frame_rates.push_back(exchanges * FRAMES_AN_EXCHANGE / taken.count());
    per_frame = double(allocations - before) / (exchanges * FRAMES_AN_EXCHANGE);
    return std::memcmp(payload.data(), back.data(), payload.size()) == 0;
}

std::vector<Row> rows_for(const std::string& payload)
{
    const std::string sent("\xAA\x01\x00\x55", 4);
    std::string hex;
    for (std::size_t i = 0; i < payload.size(); ++i)
        hex += "5A";
    char guarded_sent[CnetLocalResponse::SIZE + Crc16Frame::OVERHEAD];
    Crc16Frame{sent}.build(guarded_sent);

    const int size = int(payload.size());
    std::vector<Row> rows = {
        {"null", [](Stacks& s) -> QFramer& { return s.null; }, {}, {}, size},
        {"crc16", [](Stacks& s) -> QFramer& { return s.crc16; }, {}, {}, size},
        {"rtu", [](Stacks& s) -> QFramer& { return s.rtu; }, {}, {}, size},
        {"chan", [](Stacks& s) -> QFramer& { return s.chan; }, {}, {}, size},
        {"rwlt", [](Stacks& s) -> QFramer& { return s.rwlt; }, {}, {}, size},
        {"cnet", [](Stacks& s) -> QFramer& { return s.cnet; }, {sent}, {}, size},
        {"crc16 on chan", [](Stacks& s) -> QFramer& { return s.chan_crc16; }, {}, {}, size},
        {"cnet on crc16",
         [](Stacks& s) -> QFramer& { return s.crc16_cnet; },
         {{guarded_sent, sizeof guarded_sent}},
         {},
         size},
        {"dorv",
         [](Stacks& s) -> QFramer& { return s.dorv; },
         {"ok\r\n"},
         {"+radiorx=" + std::to_string(size) + "\r\n", payload},
         size},
        {"dorv raw",
         [](Stacks& s) -> QFramer& { return s.dorv_raw; },
         {"ok\r\n"},
         {"+radiorx=-70,9," + hex + "\r\n"},
         2 * size}, // the line needs the room
    };
    const auto too_long = [&](const Row& row) {
        return size > CnetFrame::PAYLOAD_MAX && std::strstr(row.name, "cnet");
    };
    rows.erase(std::remove_if(rows.begin(), rows.end(), too_long), rows.end());
    return rows;
}

bool run(const std::string& payload)
{
    const std::vector<Row> rows = rows_for(payload);
    std::vector<std::vector<double>> rates(rows.size());
    std::vector<double> per_frame(rows.size());
    Stacks stacks;
    for (int round = 0; round < ROUNDS; ++round)
        for (std::size_t i = 0; i < rows.size(); ++i)
            if (!measure(rows[i], stacks, payload, rates[i], per_frame[i])) {
                std::fprintf(stderr, "framers: %s lost a frame\n", rows[i].name);
                return false;
            }

    std::printf("%d bytes of payload, one frame down and one up\n%-16s%16s%12s%16s\n",
                int(payload.size()), "stack", "frames a second", "to null", "allocations");
    double of_null = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::sort(rates[i].begin(), rates[i].end());
        const double median = rates[i][rates[i].size() / 2];
        if (i == 0)
            of_null = median;
        std::printf("%-16s%16.0f%12.3f%16.2f\n", rows[i].name, median, median / of_null,
                    per_frame[i]);
    }
    return true;
}

} // namespace

int main()
{
    for (const int size : PAYLOADS)
        if (!run(std::string(std::size_t(size), '\x5A')))
            return EXIT_FAILURE;
    return EXIT_SUCCESS;
}
