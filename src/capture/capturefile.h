// The file under a writer. Errors are the system's texts.
#pragma once

#include "capture/capturewriter.h"

#include <QFile>

class CaptureFile
{
public:
    // Creates the file, or opens it to append after its good end.
    CaptureResult open(const QString& path, CaptureExisting existing);
    void close();

    // The bytes written: less than size when there is an error.
    std::int64_t write(const char* bytes, std::int64_t size);
    // Takes back what was written last. False where that can't be, as in a pipe.
    bool take_back(std::int64_t count);
    QString error() const { return file.errorString(); }

    // Has the system bring all that is written to the disk. Empty, or the error. Any thread.
    QString sync() const;

private:
    CaptureResult open_pipe(const QString& path);
    CaptureResult create(const QString& path);
    CaptureResult append_to(const QString& path);
    void keep_name(const QString& path) const;

    QFile file;
    int handle = -1;
};
