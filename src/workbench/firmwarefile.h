// A firmware file that was chosen, and whether it can be used.
#pragma once

#include <QCoreApplication>
#include <QString>
#include <cstdint>

class FirmwareFile
{
    Q_DECLARE_TR_FUNCTIONS(FirmwareFile)

public:
    static constexpr std::int64_t LARGEST = 0x7FFFFFFF; // what the loader takes

    FirmwareFile() = default;
    explicit FirmwareFile(const QString& path);

    const QString& path() const { return file; }
    QString name() const;
    std::int64_t size() const { return bytes; }
    // One sentence; empty when the file can be sent.
    const QString& problem() const { return trouble; }
    bool usable() const { return trouble.isEmpty() && !file.isEmpty(); }

private:
    QString file;
    std::int64_t bytes = 0;
    QString trouble;
};
