#include "bootmodule.h"

#include "crc.h"

#include <QFile>
#include <QtEndian>

namespace {

quint32 number(const QByteArray& bytes, int at)
{
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

QString shown(const QByteArray& request)
{
    constexpr int HEAD = 14; // a whole verify request
    const QString rest =
        request.size() > HEAD ? QStringLiteral(" .. %1 bytes").arg(request.size()) : QString();
    return "> " + hex_of(request.left(HEAD)) + rest;
}

} // namespace

QByteArray BootModule::answer(const QByteArray& request)
{
    if (fault) {
        QByteArray reply = fault(request);
        if (!reply.isNull())
            return reply;
    }
    switch (request[0]) {
    case 'a':
        return info();
    case 'b':
        in_boot = in_boot || obeys_enter;
        return {};
    case 'c':
        in_boot = false;
        ++reboots;
        return {};
    case 'd':
        return QByteArray("d").append(matches(request) ? '\0' : '\1');
    default:
        const int offset = int(number(request, 1));
        const QByteArray payload = request.mid(5);
        if (flash.size() < offset + payload.size())
            flash.append(offset + payload.size() - flash.size(), '\xFF');
        flash.replace(offset, payload.size(), payload);
        return QByteArray("e\0", 2);
    }
}

QByteArray BootModule::info() const
{
    const char head[] = {'a',
                         char(in_boot),
                         1, // hard info follows the name
                         1,
                         2,
                         3,
                         4,
                         5,
                         char(page_size >> 8),
                         char(page_size),
                         char(mtu >> 8),
                         char(mtu)};
    return QByteArray(head, sizeof head) + name + QByteArray("\0\xA1\x02\x03\x04\x05", 6);
}

bool BootModule::matches(const QByteArray& request) const
{
    const QByteArray block = flash.mid(int(number(request, 1)), int(number(request, 5)));
    return quint32(block.size()) == number(request, 5) &&
           crc32(block.constData(), unsigned(block.size()), 0xFFFFFFFF) == number(request, 9);
}

Bench::Bench()
{
    link.device = [this](const QByteArray& request) {
        transcript.add(shown(request));
        gate.visit();
        return module.answer(request);
    };
    const auto add = [this](const QString& line) { transcript.add(line); };
    QObject::connect(&loader, &Loader::log, &loader, add, Qt::DirectConnection);
    QObject::connect(
        &loader, &Loader::msgbox, &loader, [add](const QString& msg) { add("box " + msg); },
        Qt::DirectConnection);
    QObject::connect(
        &loader, &Loader::upgrade_started, &loader,
        [add](int size) { add(QStringLiteral("started %1").arg(size)); }, Qt::DirectConnection);
    QObject::connect(
        &loader, &Loader::upgrade_progress, &loader,
        [add](int size, int sent) { add(QStringLiteral("progress %1 %2").arg(size).arg(sent)); },
        Qt::DirectConnection);
    QObject::connect(
        &loader, &Loader::upgrade_done, &loader, [add] { add("done"); }, Qt::DirectConnection);
    QObject::connect(
        &loader, &Loader::dev_soft_info_set, &loader,
        [add](const QString& info) { add("soft " + info); }, Qt::DirectConnection);
    QObject::connect(
        &loader, &Loader::dev_hard_info_set, &loader,
        [add](const uint8_t* info, int nbytes) {
            const QByteArray bytes(reinterpret_cast<const char*>(info), nbytes);
            add(info != nullptr ? "hard " + hex_of(bytes) : QStringLiteral("hard none"));
        },
        Qt::DirectConnection);
    QObject::connect(
        &loader, &QThread::finished, &loader, [this] { ++ended; }, Qt::DirectConnection);
    loader.reset_wait_ms_set(1);
    loader.verify_wait_ms_set(1);
}

void Bench::choose(const QString& name, const QByteArray& content)
{
    QFile file(dir.filePath(name));
    file.open(QIODevice::WriteOnly);
    file.write(content);
    file.close();
    loader.filename_set(file.fileName());
}

QStringList Bench::run()
{
    loader.upgrade_start();
    finish();
    return transcript.take();
}

void Bench::finish()
{
    ++awaited;
    wait_until([this] { return ended == awaited; });
    loader.wait();
}

QByteArray firmware()
{
    QByteArray content;
    for (int i = 0; i < 10000; ++i)
        content.append(char(i * 7 + i / 256));
    return content;
}
