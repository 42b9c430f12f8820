// One measurement of the receive path: what is sent, who reads it, and what the reader measured.
#pragma once

#include <QtGlobal>

enum class Reader {
    Bare,     // a QSerialPort whose bytes are thrown away
    Document, // puts the text into a QTextDocument that nobody shows
    Stock,    // a plain QPlainTextEdit, filled as the program's display does it
    Program   // the program's own window
};

enum class Text {
    Stream,      // printable text without line breaks
    Hexadecimal, // all byte values, shown in hexadecimal
    Lines        // lines of 80 characters
};

enum class Pace {
    Fastest, // writes of 512 bytes as soon as they are taken
    Steady,  // 300 KB/s by writes of 512 bytes, a fast USB adapter at 3 Mbit/s
    Baud     // 115200 baud by writes of 64 bytes, as a UART's buffer hands them over
};

struct Case
{
    Reader reader = Reader::Bare;
    Text text = Text::Stream;
    qint64 bytes = 0;
    Pace pace = Pace::Fastest; // of these bytes
    qint64 steady_bytes = 0;   // sent after them, at Pace::Steady
    int most_lines = 0;        // threshold of auto clear; 0 keeps everything
    bool handle = false;       // time what a user does with the window
};

constexpr qint64 MB = 1000000;

struct Duration
{
    double wall_ms = 0;
    double cpu_ms = 0; // what of it this program used; the rest is other programs'
};

// Plain data, as it goes through a pipe.
struct Measured
{
    double cpu_s = 0;           // of the whole process, for Case::bytes
    double last_to_first = 0;   // CPU of the last sixteenth of the bytes by that of the first
    qint64 memory_kb = 0;       // peak, above what the process had before the first byte
    qint64 early_memory_kb = 0; // the same after the first 10 MB
    Duration stall;             // longest time between two turns of the event loop, Pace::Steady
    Duration resize, top, page_up, select_all; // up to the painted window
};

// Runs a reader in a process of its own and feeds it through a pseudo-terminal. Ends the program
// with a message if that can't be done.
Measured measure(const Case& wanted);

// The reader's side: reads `device` and reports through `pipe` that it is ready, that it has got
// Case::bytes, and at last a Measured. Returns the process's exit code.
int read_and_report(const Case& wanted, const char* device, int pipe);
