#include "workbench/firmwarefile.h"

#include <QFileInfo>

FirmwareFile::FirmwareFile(const QString& path)
    : file(path)
{
    const QFileInfo info(path);
    bytes = info.size();
    if (path.isEmpty())
        trouble = tr("Choose a firmware file first.");
    else if (!info.exists())
        trouble = tr("There is no file %1: check its name.").arg(path);
    else if (!info.isFile())
        trouble = tr("%1 is no file: choose a firmware file.").arg(path);
    else if (!info.isReadable())
        trouble = tr("The file %1 can't be read: check its rights.").arg(info.fileName());
    else if (bytes == 0)
        trouble = tr("The file %1 is empty: look how it was made.").arg(info.fileName());
    else if (bytes > LARGEST)
        trouble = tr("The file %1 is too large: %2 bytes, and no module takes more than %3.")
                      .arg(info.fileName(), QString::number(bytes), QString::number(LARGEST));
}

QString FirmwareFile::name() const
{
    return QFileInfo(file).fileName();
}
