// The CRCs and MD5 beside the routines that others use: libmodbus, zlib and OpenSSL. Each pair runs
// interleaved on the same bytes, and the run ends with their speeds as ratios.
#include "checksum/crc.h"
#include "checksum/md5.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <modbus.h>
#include <openssl/evp.h>
#include <random>
#include <string>
#include <vector>
#include <zlib.h>

// libmodbus keeps its CRC routine to itself, but exports the table through which it is reached:
// send_msg_pre(request, length) puts the CRC of `length` bytes after them. These are the first
// fields of that table in versions 3.1.x; find_libmodbus checks that they are what is there.
extern "C" {
struct ModbusBackend
{
    unsigned type;
    unsigned header_length;
    unsigned checksum_length;
    unsigned max_frame_length;
    int (*set_slave)(modbus_t*, int);
    int (*build_request_basis)(modbus_t*, int, int, int, std::uint8_t*);
    int (*build_response_basis)(void*, std::uint8_t*);
    int (*prepare_response_tid)(const std::uint8_t*, int*);
    int (*send_msg_pre)(std::uint8_t* request, int length);
};
extern const ModbusBackend _modbus_rtu_backend;
}

namespace {

constexpr int SIZES[] = {8, 256, 16384}; // a short request, the longest RTU frame, a block

std::vector<std::uint8_t> random_bytes(std::size_t count)
{
    std::mt19937 random(1);
    std::vector<std::uint8_t> bytes(count);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

// Runs `routine` on a buffer of the size in question, with room after it for a CRC.
template <typename Routine> void measure(benchmark::State& state, Routine routine)
{
    const int size = static_cast<int>(state.range(0));
    std::vector<std::uint8_t> buffer = random_bytes(static_cast<std::size_t>(size) + 2);
    for (auto _ : state) {
        benchmark::DoNotOptimize(routine(buffer.data(), size));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * size);
}

void crc16_ours(benchmark::State& state)
{
    measure(state, [](std::uint8_t* bytes, int size) { return crc16(bytes, size); });
}

void crc16_libmodbus(benchmark::State& state)
{
    measure(state, _modbus_rtu_backend.send_msg_pre);
}

void crc32_ours(benchmark::State& state)
{
    measure(state, [](std::uint8_t* bytes, int size) {
        return crc32(bytes, static_cast<unsigned>(size), 0xFFFFFFFFu);
    });
}

void crc32_zlib(benchmark::State& state)
{
    measure(state,
            [](std::uint8_t* bytes, int size) { return crc32_z(0, bytes, std::size_t(size)); });
}

void md5_ours(benchmark::State& state)
{
    measure(state, [](std::uint8_t* bytes, int size) {
        Md5Context context;
        std::uint8_t digest[16];
        md5_init(&context);
        md5_update(&context, bytes, static_cast<unsigned>(size));
        md5_final(digest, &context);
        return digest[0];
    });
}

void md5_openssl(benchmark::State& state)
{
    // Fetched once, so that OpenSSL's search for a provider isn't counted.
    EVP_MD* md5 = EVP_MD_fetch(nullptr, "MD5", nullptr);
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    measure(state, [=](std::uint8_t* bytes, int size) {
        std::uint8_t digest[16];
        EVP_DigestInit_ex2(context, md5, nullptr);
        EVP_DigestUpdate(context, bytes, std::size_t(size));
        EVP_DigestFinal_ex(context, digest, nullptr);
        return digest[0];
    });
    EVP_MD_CTX_free(context);
    EVP_MD_free(md5);
}

struct Pair
{
    const char* ours;
    const char* theirs;
    void (*run_ours)(benchmark::State&);
    void (*run_theirs)(benchmark::State&);
};

constexpr Pair PAIRS[] = {{"crc16", "crc16 libmodbus", crc16_ours, crc16_libmodbus},
                          {"crc32", "crc32 zlib", crc32_ours, crc32_zlib},
                          {"md5", "md5 OpenSSL", md5_ours, md5_openssl}};

// Keeps the time of each repetition under the name of the routine and the size.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    RatioReporter()
        : ConsoleReporter(OO_None)
    {
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration && !run.error_occurred)
                times[run.run_name.function_name + run.run_name.args].push_back(
                    run.GetAdjustedCPUTime());
    }

    void print_ratios()
    {
        std::printf("\nSpeed as a multiple of the other's\n%-18s%8s%10s%10s\n", "beside", "bytes",
                    "median", "best");
        for (const Pair& pair : PAIRS)
            for (const int size : SIZES) {
                std::vector<double>& ours = times[pair.ours + std::to_string(size)];
                std::vector<double>& theirs = times[pair.theirs + std::to_string(size)];
                if (ours.empty() || theirs.empty())
                    continue;
                std::sort(ours.begin(), ours.end());
                std::sort(theirs.begin(), theirs.end());
                std::printf("%-18s%8d%10.2f%10.2f\n", pair.theirs, size,
                            theirs[theirs.size() / 2] / ours[ours.size() / 2],
                            theirs.front() / ours.front());
            }
    }

private:
    std::map<std::string, std::vector<double>> times;
};

// Whether libmodbus' table is the one declared above and its CRC agrees with ours.
bool find_libmodbus()
{
    const ModbusBackend& rtu = _modbus_rtu_backend;
    if (LIBMODBUS_VERSION_MAJOR != 3 || LIBMODBUS_VERSION_MINOR != 1 || rtu.header_length != 1 ||
        rtu.checksum_length != 2 || rtu.max_frame_length != MODBUS_RTU_MAX_ADU_LENGTH)
        return false;
    std::vector<std::uint8_t> frame = random_bytes(258);
    return rtu.send_msg_pre(frame.data(), 256) == 258 && crc16(frame.data(), 258) == 0;
}

} // namespace

int main(int argc, char** argv)
{
    // Repetitions of all routines in a random order, so that a busy moment doesn't hit one alone.
    std::vector<std::string> arguments = {
        argv[0], "--benchmark_repetitions=15", "--benchmark_min_time=0.02",
        "--benchmark_enable_random_interleaving=true", "--benchmark_report_aggregates_only=false"};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size());
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());

    if (!find_libmodbus()) {
        std::fprintf(stderr, "checksum: this libmodbus isn't laid out as versions 3.1.x are\n");
        return EXIT_FAILURE;
    }
    for (const Pair& pair : PAIRS)
        for (const int size : SIZES) {
            benchmark::RegisterBenchmark(pair.ours, pair.run_ours)->Arg(size);
            benchmark::RegisterBenchmark(pair.theirs, pair.run_theirs)->Arg(size);
        }

    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.print_ratios();
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}
