// A Loader, a firmware file for it, and a simulated module on its link.
#pragma once

#include "devices/boot.h"
#include "framers/qframernull.h"
#include "toolrun.h"
#include "tools/loader.h"

#include <QTemporaryDir>
#include <sandbox.h>

// 10,000 bytes in which each page differs from the others.
inline QByteArray firmware()
{
    QByteArray content;
    for (int i = 0; i < 10000; ++i)
        content.append(char(i * 7 + i / 256));
    return content;
}

// Lines: requests as "> " and their first 14 bytes, boxes as "box ", other signals by a word each,
// logs as they are.
class Bench : public ToolRun
{
public:
    Bench()
    {
        settings.image = dir.filePath("rom");
        settings.version = {1, 2, 3, 4, 5};
        settings.hard_info = "\xA1\x02\x03\x04\x05";
        file_write(settings.image, {});
        choose("M1_1.bin", firmware());
        link.device = [this](const QByteArray& request) { return reply(request); };
        note(loader, &Loader::log);
        note(loader, &Loader::msgbox, "box");
        note(loader, &Loader::upgrade_started, "started");
        note(loader, &Loader::upgrade_progress, "progress");
        note(loader, &Loader::upgrade_done, "done");
        note(loader, &Loader::dev_soft_info_set, "soft");
        const auto add_hard_info = [this](const uint8_t* info, int nbytes) {
            const QByteArray bytes(reinterpret_cast<const char*>(info), nbytes);
            add("hard " + (info != nullptr ? hex_of(bytes) : "none"));
        };
        QObject::connect(&loader, &Loader::dev_hard_info_set, &loader, add_hard_info,
                         Qt::DirectConnection);
        note_end(loader);
        loader.reset_wait_ms_set(1);
        loader.verify_wait_ms_set(1);
    }

    // The file of the next run.
    void choose(const QString& name, const QByteArray& content)
    {
        file_write(dir.filePath(name), content);
        loader.filename_set(dir.filePath(name));
    }
    QStringList run()
    {
        loader.upgrade_start();
        return finish(loader);
    }
    void set_flash(const QByteArray& content) { file_write(settings.image, content); }
    QByteArray flash() const { return file_content(settings.image); }

    BootSettings settings; // of the module, which starts with the first request
    // Asked first: a reply of its own to this request, or a null one for the module's.
    std::function<QByteArray(const QByteArray& request)> fault;

private:
    QByteArray reply(const QByteArray& request)
    {
        constexpr int HEAD = 14; // a whole verify request
        const QString rest = QStringLiteral(" .. %1 bytes").arg(request.size());
        add("> " + hex_of(request.left(HEAD)) + (request.size() > HEAD ? rest : QString()));
        const QByteArray faulty = fault ? fault(request) : QByteArray();
        if (!faulty.isNull())
            return faulty;
        if (!module)
            module.emplace(settings);
        const Answer answer = module->answer(request);
        if (answer.resets)
            module->restart();
        return answer.replies.empty() ? QByteArray() : answer.replies.front().bytes;
    }

    QTemporaryDir dir;
    std::optional<Boot> module;
    QFramerNull framer{&link};

public:
    Loader loader{&framer}; // the first to go
};

const QByteArray SILENCE(""); // not null: the module's own reply is replaced

// The first bytes of all requests.
inline QByteArray letters_of(const QStringList& lines)
{
    QByteArray letters;
    for (const QString& request : lines.filter("> "))
        letters.append(QByteArray::fromHex(request.mid(2, 2).toLatin1()));
    return letters;
}
