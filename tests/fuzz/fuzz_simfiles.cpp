// The files that a simulated module keeps: a memory of settings, or an image of its program. What
// it took from one or wrote into one, it finds there again.

#include "dorvmemory.h"
#include "fuzzing.h"
#include "romimage.h"

#include <QTemporaryDir>
#include <stdexcept>

namespace {

constexpr int CAPACITY = 2048;

QByteArray told(const DorvMemory& memory)
{
    QByteArray values;
    for (const char* name : {"mode", "bw", "uartcfg", "irq", "sleep", "devaddr", "pwrid", "deveui"})
        values += memory.value(name) + '\n';
    return values;
}

// A file that the module has written is one that it reads.
QByteArray told_by_file(const QString& path) noexcept
{
    return told(DorvMemory(path));
}

// The first line is set, as in a command; the others are the file.
void settings(const QString& path, const QByteArray& text)
{
    const int end = text.indexOf('\r');
    write_file(path, text.mid(end + 1));
    DorvMemory memory(path);
    const QByteArray line = text.left(end);
    const int sign = line.indexOf('=');
    const QByteArray before = told(memory);
    const bool done = memory.set(line.left(sign), line.mid(sign + 1));
    require(done || told(memory) == before);
    if (done)
        require(told_by_file(path) == told(memory));
}

void image(const QString& path, const QByteArray& content)
{
    write_file(path, content);
    RomImage rom(path, CAPACITY);
    require(content.size() <= CAPACITY);
    const int offset = content.isEmpty() ? 0 : quint8(content[0]) * 4;
    rom.write(offset, content.left(CAPACITY - offset));
    const QByteArray whole = rom.block(0, CAPACITY);
    require(whole.mid(offset, content.size()) == content.left(CAPACITY - offset));
    require(RomImage(path, CAPACITY).block(0, CAPACITY) == whole);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QTemporaryDir folder;
    const ChoiceInput input(data, size);
    try {
        if (input.choice % 4 == 0)
            image(folder.filePath("image"), input.rest);
        else
            settings(folder.filePath("settings"), input.rest);
    } catch (const std::runtime_error& refusal) {
        require(*refusal.what() != '\0');
    }
    return 0;
}
