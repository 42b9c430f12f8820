// Settings of a Dorv module, read and written one after the other on the thread of its link.
#pragma once

#include "tools/dorvcfg.h"
#include "tools/dorvsettings.h"
#include "workbench/linktask.h"

struct SettingTask
{
    enum class Kind { Read, Write, CommandMode };

    Kind kind = Kind::Read;
    const DorvSetting* setting = nullptr; // none for CommandMode
    DorvValues values = {};               // of Write
};

struct SettingResult
{
    const DorvSetting* setting = nullptr;
    SettingTask::Kind kind = SettingTask::Kind::Read;
    DorvOutcome outcome = DorvOutcome::Done;
    QString held = {};     // what the module holds, as SettingValue has it
    bool differs = false;  // it was written, and isn't what reads back
    QByteArray reply = {}; // of Refused
};

enum class SettingsEnding {
    Done,
    Aborted,
    Silent, // the module doesn't answer
    Echo,   // the module repeats what it is sent
};

struct SettingsReport
{
    SettingsEnding ending = SettingsEnding::Done;
    SettingTask::Kind kind = SettingTask::Kind::Read; // of all its tasks
    int total = 0;
    int done = 0;                                   // as asked
    int bad = 0;                                    // refused, or read back as something else
    QString last = {};                              // the setting at which it has ended early
    LinkProblem link = {LinkTrouble::NoAnswer, {}}; // how the link looked at the end
};

// Its signals come on the thread that it belongs to.
class SettingsRun : public QObject
{
    Q_OBJECT

public:
    // For each question; a repeated one does no harm.
    static constexpr int ATTEMPTS = 2;

    // At its end it aborts a run and waits for it.
    using QObject::QObject;

    bool running() const { return job.running(); }
    // Only while none is running, on an open link, which outlives it. The tasks are of one kind.
    // What is written is read back where the module lets it.
    void start(LinkWorker& link, const QVector<SettingTask>& tasks);
    // After the exchange under way.
    void abort() { job.abort(); }

signals:
    void result(SettingResult result);
    void ended(SettingsReport report);

private:
    void work(Stack& stack, const QVector<SettingTask>& tasks);
    SettingResult carry_out(DorvCfg& cfg, const SettingTask& task) const;
    void write(DorvCfg& cfg, const SettingTask& task, SettingResult& result) const;
    void read(DorvCfg& cfg, const SettingTask& task, SettingResult& result) const;
    template <typename Operation> DorvOutcome repeated(DorvCfg& cfg, Operation operation) const;

    SettingsReport report; // of the last run
    LinkTask job;          // goes first, as its work uses the rest
};
