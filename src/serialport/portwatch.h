// The news that an open port has lost its device, from the port to all enumerators of the process.
#pragma once

#include <QObject>
#include <QString>

// A port sees a hang-up before any folder changes, and a folder may not change at all: a link to a
// pseudo-terminal outlives it. So the port speaks up, on whatever thread it notices.
class PortWatch : public QObject
{
    Q_OBJECT

public:
    static PortWatch& instance();

signals:
    void lost(QString port_name);
};
