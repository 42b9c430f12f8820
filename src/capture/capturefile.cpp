#include "capture/capturefile.h"

#include "capture/capturesurvey.h"
#include "capture/namedpipe.h"

#include <QFileInfo>
#include <cerrno>
#include <cstring>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#else
#include <io.h>
#endif

namespace {

// 0, or an error number.
int bring_to_disk(int handle)
{
#if defined(Q_OS_LINUX)
    const int result = fdatasync(handle);
#elif defined(Q_OS_UNIX)
    const int result = fsync(handle);
#else
    const int result = _commit(handle);
#endif
    return result == 0 ? 0 : errno;
}

// False when another program has the lock.
bool lock(int handle)
{
#ifdef Q_OS_UNIX
    return flock(handle, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
#else
    Q_UNUSED(handle)
    return true;
#endif
}

CaptureResult failed(const QString& error, const QString& advice)
{
    CaptureResult result;
    result.error = error;
    result.advice = advice;
    return result;
}

CaptureResult in_use(const QString& path)
{
    return failed(path + " is being recorded by another program",
                  "End that program, or give another name.");
}

CaptureResult good()
{
    CaptureResult result;
    result.good = true;
    return result;
}

} // namespace

CaptureResult CaptureFile::open(const QString& path, CaptureExisting existing)
{
    file.setFileName(path);
    const QFileInfo info(path);
    if (info.isDir())
        return failed(path + " is a folder", "Give the name of a file.");
    CaptureResult result;
    if (is_named_pipe(path))
        result = open_pipe(path);
    else if (info.exists() && !info.isFile())
        result = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
                     ? good()
                     : failed(path + " can't be written: " + file.errorString(),
                              "Check its rights, or give another name.");
    else if (existing == CaptureExisting::Append && info.size() > 0)
        result = append_to(path);
    else
        result = create(path);
    if (!result)
        file.close();
    handle = result ? file.handle() : -1;
    return result;
}

CaptureResult CaptureFile::open_pipe(const QString& path)
{
    QString reason;
    const int descriptor = open_named_pipe(path, reason);
    if (descriptor >= 0 && file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered,
                                     QFileDevice::AutoCloseHandle))
        return good();
    return failed(path + " can't be written: " + reason, {});
}

CaptureResult CaptureFile::create(const QString& path)
{
    // A file without a byte in it holds nothing that could be lost.
    const bool empty = QFileInfo(path).isFile() && QFileInfo(path).size() == 0;
    const auto mode = empty ? QIODevice::ReadWrite | QIODevice::ExistingOnly
                            : QIODevice::WriteOnly | QIODevice::NewOnly;
    if (file.open(mode | QIODevice::Unbuffered)) {
        if (!lock(file.handle()))
            return in_use(path);
        keep_name(path);
        return good();
    }
    if (QFileInfo::exists(path))
        return failed(path + " is there already", "Give another name, or append to it.");
    return failed(path + " can't be created: " + file.errorString(),
                  "Does its folder exist, and may you write to it?");
}

CaptureResult CaptureFile::append_to(const QString& path)
{
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        return failed(path + " can't be appended to: " + file.errorString(),
                      "Give another name, or change the rights of the file.");
    if (!lock(file.handle()))
        return in_use(path);
    const CaptureSurvey survey = CaptureSurvey::of(file);
    // A file of another kind, such as an archive, may hold a capture; nothing is cut off its end.
    if (survey.section_count == 0 || survey.good_end == 0)
        return failed(path + " is no capture", "Give another name; nothing was changed in it.");
    CaptureResult result = good();
    const std::int64_t end = survey.torn_end ? survey.torn_end->offset : survey.size;
    result.cut = survey.size - end;
    if ((result.cut > 0 && !file.resize(end)) || !file.seek(end))
        return failed(path + " can't be appended to: " + file.errorString(),
                      "Is its disk whole, and not full? Else give another name.");
    return result;
}

void CaptureFile::close()
{
    file.close();
    handle = -1;
}

std::int64_t CaptureFile::write(const char* bytes, std::int64_t size)
{
    std::int64_t written = 0;
    while (written < size) {
        const std::int64_t count = file.write(bytes + written, size - written);
        if (count <= 0)
            break;
        written += count;
    }
    return written;
}

bool CaptureFile::take_back(std::int64_t count)
{
    if (count == 0)
        return true;
    const std::int64_t end = file.pos() - count;
    return !file.isSequential() && file.resize(end) && file.seek(end);
}

QString CaptureFile::sync() const
{
    const int error = bring_to_disk(handle);
    // EINVAL: a pipe or a device that keeps nothing.
    return error == 0 || error == EINVAL ? QString() : QString::fromLocal8Bit(std::strerror(error));
}

// The name of a new file is in its folder, which the disk has to get too.
void CaptureFile::keep_name(const QString& path) const
{
#ifdef Q_OS_UNIX
    const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    ::close(descriptor);
#else
    Q_UNUSED(path)
#endif
}
