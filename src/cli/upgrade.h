// One firmware upgrade for a person: what the loader tells becomes progress, notes and a verdict.
#pragma once

#include "console.h"
#include "interrupts.h"
#include "session.h"

#include <QElapsedTimer>
#include <QStringList>

struct UpgradeSettings
{
    QString file;
    unsigned packet; // bytes of the file in a packet at most
    unsigned retries;
    unsigned interval_ms;
    unsigned reset_wait_ms;
    unsigned verify_wait_ms;
};

struct UpgradeResult
{
    int file_size = 0;
    qint64 elapsed_ms = 0;
    QString soft_info; // of the device as it was found
    QString hard_info; // in hexadecimal
};

// Throws Failure when there is no such file to read.
void check_firmware_file(const QString& file);

class Loader;

class Upgrade
{
public:
    Upgrade(const UpgradeSettings& settings, Connection& connection, Console& console,
            Interrupts& interrupts);

    // Runs an event loop until the loader has ended. Throws Failure unless the device holds the
    // file and has said so.
    UpgradeResult run();

private:
    void connect_signals(Loader& loader);
    void note_log(const QString& line);
    void note_soft_info(const QString& info);
    void show_progress(int file_size, int offset);
    Failure failure() const;

    const UpgradeSettings settings;
    Connection& connection;
    Console& console;
    Interrupts& interrupts;
    QStringList boxes; // what the loader wants a person to see
    QString trouble;   // the last log line that tells of a fault
    ExitCode trouble_code = ExitCode::NoAnswer;
    unsigned refusals = 0;  // of the last packet
    QString refused_offset; // in the file
    bool sending = false;
    QElapsedTimer run_clock;
    QElapsedTimer pages_clock;
    UpgradeResult result;
};
