// What the receive path costs: the program's window on a real pseudo-terminal, beside a bare
// reader of the same port in the same run.
#include "receive_case.h"

#include <QByteArray>
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

namespace {

struct Work
{
    const char* name;
    Text text;
    int most_lines;
    double ratio_wanted;  // to the bare reader, at most
    double memory_wanted; // bytes for each received one, at most; 0 where lines are cleared
};

constexpr Work WORKS[] = {
    {"stream", Text::Stream, 0, 2.5, 3},
    {"hexadecimal", Text::Hexadecimal, 0, 5, 8},
    {"lines", Text::Lines, 0, 9, 5},
    {"lines, clear", Text::Lines, 100, 5, 0},
};

struct Sizes
{
    qint64 mb = 64;         // of each work
    qint64 clear_mb = 1024; // with auto clear, for the memory
    qint64 stock_kb = 20;   // that the stock widget can bear
    qint64 steady_s = 3;    // at Pace::Steady, after the rest
    qint64 runs = 3;
    qint64 work = 0; // the only one, from 1; 0 is all of them
};

struct Row
{
    Work work;
    Measured bare;
    Measured document;
    Measured program;
    double ratio() const { return program.cpu_s / bare.cpu_s; }
};

template <typename Value, typename Less>
void take_median(std::vector<Measured>& runs, Value Measured::*field, Less less, Measured& result)
{
    const auto middle = runs.begin() + static_cast<std::ptrdiff_t>(runs.size() / 2);
    std::nth_element(runs.begin(), middle, runs.end(), [&](const Measured& a, const Measured& b) {
        return less(a.*field, b.*field);
    });
    result.*field = (*middle).*field;
}

Measured medians(std::vector<Measured> runs)
{
    const auto shorter = [](const Duration& a, const Duration& b) { return a.wall_ms < b.wall_ms; };
    Measured result;
    for (const auto field : {&Measured::cpu_s, &Measured::last_to_first})
        take_median(runs, field, std::less<>(), result);
    take_median(runs, &Measured::memory_kb, std::less<>(), result);
    for (const auto field : {&Measured::stall, &Measured::resize, &Measured::top,
                             &Measured::page_up, &Measured::select_all})
        take_median(runs, field, shorter, result);
    return result;
}

Row measure_row(const Work& work, const Sizes& sizes)
{
    std::vector<Measured> bare;
    std::vector<Measured> document;
    std::vector<Measured> program;
    for (qint64 run = 0; run < sizes.runs; ++run) {
        Case wanted;
        wanted.text = work.text;
        wanted.bytes = sizes.mb * MB;
        wanted.most_lines = work.most_lines;
        bare.push_back(measure(wanted));
        wanted.reader = Reader::Document;
        document.push_back(measure(wanted));
        wanted.reader = Reader::Program;
        wanted.steady_bytes = sizes.steady_s * 300000;
        wanted.handle = true;
        program.push_back(measure(wanted));
    }
    return {work, medians(bare), medians(document), medians(program)};
}

void print_costs(const std::vector<Row>& rows, const Sizes& sizes)
{
    std::printf("CPU for %lld MB by writes of 512 bytes (median of %lld runs)\n\n",
                static_cast<long long>(sizes.mb), static_cast<long long>(sizes.runs));
    std::printf("%-14s %8s %10s %10s %8s %8s %8s %12s %14s %8s\n", "work", "bare s", "document s",
                "program s", "ms/MB", "ratio", "at most", "last/first", "memory/byte", "at most");
    for (const Row& row : rows) {
        const Work& work = row.work;
        const Measured& program = row.program;
        std::printf("%-14s %8.3f %10.3f %10.3f %8.2f %8.2f %8.1f %12.2f %14.2f %8.1f\n", work.name,
                    row.bare.cpu_s, row.document.cpu_s, program.cpu_s,
                    program.cpu_s * 1e3 / double(sizes.mb), row.ratio(), work.ratio_wanted,
                    program.last_to_first, double(program.memory_kb) * 1024 / double(sizes.mb * MB),
                    work.memory_wanted);
    }
}

void print_duration(const Duration& duration)
{
    std::printf(" %8.1f (%5.1f)", duration.wall_ms, duration.cpu_ms);
}

void print_answers(const std::vector<Row>& rows, const Sizes& sizes)
{
    std::printf(
        "\nLongest stall of the event loop at 300 KB/s (20 at most), and time to the painted "
        "window (50 at most),\nbehind %lld MB: ms, and in brackets CPU ms of the "
        "program\n\n",
        static_cast<long long>(sizes.mb));
    std::printf("%-14s %16s %16s %16s %16s %16s\n", "work", "stall", "resize", "top", "page up",
                "select all");
    for (const Row& row : rows) {
        const Measured& program = row.program;
        std::printf("%-14s", row.work.name);
        for (const Duration& each :
             {program.stall, program.resize, program.top, program.page_up, program.select_all})
            print_duration(each);
        std::printf("\n");
    }
}

void print_memory_with_clear(const Sizes& sizes)
{
    Case wanted;
    wanted.reader = Reader::Program;
    wanted.text = Text::Lines;
    wanted.most_lines = 100;
    wanted.bytes = sizes.clear_mb * MB;
    const Measured measured = measure(wanted);
    std::printf(
        "\nMemory with auto clear at %d lines: %lld KB more after 10 MB, %lld KB more after "
        "%lld MB; last/first cost %.2f\n",
        wanted.most_lines, static_cast<long long>(measured.early_memory_kb),
        static_cast<long long>(measured.memory_kb), static_cast<long long>(sizes.clear_mb),
        measured.last_to_first);
}

void print_stock(const Sizes& sizes)
{
    std::printf("\nBeside a stock QPlainTextEdit, CPU for %lld KB at 115200 baud by writes of 64 "
                "bytes\n\n%-14s %8s %10s %8s\n",
                static_cast<long long>(sizes.stock_kb), "work", "stock s", "program s", "ratio");
    for (const Work& work : WORKS) {
        if (work.most_lines > 0)
            continue;
        Case wanted;
        wanted.text = work.text;
        wanted.bytes = sizes.stock_kb * 1000;
        wanted.pace = Pace::Baud;
        wanted.reader = Reader::Stock;
        const Measured stock = measure(wanted);
        wanted.reader = Reader::Program;
        const Measured program = measure(wanted);
        std::printf("%-14s %8.3f %10.3f %8.0f\n", work.name, stock.cpu_s, program.cpu_s,
                    stock.cpu_s / program.cpu_s);
        std::fflush(stdout);
    }
}

qint64* option(Sizes& sizes, const std::string& name)
{
    if (name == "--mb")
        return &sizes.mb;
    if (name == "--clear-mb")
        return &sizes.clear_mb;
    if (name == "--stock-kb")
        return &sizes.stock_kb;
    if (name == "--steady-s")
        return &sizes.steady_s;
    if (name == "--runs")
        return &sizes.runs;
    if (name == "--work")
        return &sizes.work;
    return nullptr;
}

bool parse(int argc, char** argv, Sizes& sizes)
{
    for (int i = 1; i < argc; i += 2) {
        qint64* const value = option(sizes, argv[i]);
        if (!value || i + 1 == argc)
            return false;
        *value = std::atoll(argv[i + 1]);
        if (*value < 0)
            return false;
    }
    return sizes.mb > 0 && sizes.runs > 0 && sizes.work <= qint64(std::size(WORKS));
}

void set_unless_set(const char* variable, const char* value)
{
    if (!qEnvironmentVariableIsSet(variable))
        qputenv(variable, value);
}

} // namespace

int main(int argc, char** argv)
{
    Sizes sizes;
    if (!parse(argc, argv, sizes)) {
        std::fprintf(stderr,
                     "usage: bench_receive [--mb N] [--runs N] [--steady-s N] [--clear-mb N] "
                     "[--stock-kb N] [--work 1..4]\nA size of 0 leaves the last three "
                     "measurements out.\n");
        return EXIT_FAILURE;
    }
    set_unless_set("QT_QPA_PLATFORM", "offscreen");
    set_unless_set("QT_LOGGING_RULES", "default.warning=false"); // that platform's many warnings
    if (!qEnvironmentVariableIsSet("LANG"))
        set_unless_set("LC_ALL", "C.UTF-8"); // what people have
    std::vector<Row> rows;
    for (const Work& work : WORKS)
        if (sizes.work == 0 || &work == &WORKS[sizes.work - 1])
            rows.push_back(measure_row(work, sizes));
    print_costs(rows, sizes);
    print_answers(rows, sizes);
    std::fflush(stdout);
    if (sizes.clear_mb > 0)
        print_memory_with_clear(sizes);
    if (sizes.stock_kb > 0)
        print_stock(sizes);
    return EXIT_SUCCESS;
}
