// The frame of the fuzz programs, each of which includes it once. A program has a table of parsers;
// its first argument, --NAME, picks one.
#pragma once

#include <QByteArray>
#include <QMap>
#include <cstdlib>

using Parser = void (*)(const QByteArray& input); // the function that fuzzes it
extern const QMap<QByteArray, Parser> PARSERS;
inline Parser chosen = nullptr;

inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

extern "C" int LLVMFuzzerInitialize(int*, char*** argv)
{
    chosen = PARSERS.value(QByteArray((*argv)[1]).mid(2));
    if (chosen == nullptr)
        qFatal("The first argument is one of --%s", PARSERS.keys().join(", --").constData());
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uchar* data, std::size_t size)
{
    chosen(QByteArray(reinterpret_cast<const char*>(data), int(size)));
    return 0;
}
