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
class LoaderRun : public ToolRun
{
public:
    LoaderRun()
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
        QObject::connect(&loader, &Loader::dev_hard_info_set,
                         [this](const std::uint8_t* info, int nbytes) {
                             add("hard " + (info ? hex_of(info, nbytes) : "none"));
                         });
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
        link.written.clear();
        waits_ms.clear();
        loader.upgrade_start();
        return finish(loader);
    }
    // The first bytes of the requests of this run, which their kind is.
    QByteArray letters() const
    {
        QByteArray letters;
        for (const QByteArray& request : link.written)
            letters += request[0];
        return letters;
    }
    QByteArray flash() const { return file_content(settings.image); }

    BootSettings settings;    // of the module, which starts with the first request
    QVector<qint64> waits_ms; // from request to request of this run
    // Asked first: a reply of its own to this request, or a null one for the module's.
    std::function<QByteArray(const QByteArray& request)> fault;

private:
    QByteArray reply(const QByteArray& request)
    {
        waits_ms += waits_ms.isEmpty() ? 0 : since_request.elapsed();
        since_request.start();
        add("> " + hex_of(request, qMin(14, int(request.size())))); // a whole verify request
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
    QElapsedTimer since_request;
    QFramerNull framer{&link};

public:
    Loader loader{&framer}; // the first to go
};
