// Port settings that every port takes, as a starting point for tests.
#pragma once

#include "serialport/qextserialport.h"

inline PortSettings plain_settings(long timeout_ms = 300)
{
    return {BaudRateType(115200), DATA_8, PAR_NONE, STOP_1, FLOW_OFF, timeout_ms};
}

// As many bytes as asked for, all values among them, the same at each run.
inline QByteArray mixed_bytes(int count)
{
    QByteArray data(count, Qt::Uninitialized);
    quint32 x = 2463534242u;
    for (char& byte : data) {
        x ^= x << 13;
        x ^= x >> 17;
        x ^= x << 5;
        byte = char(x >> 11);
    }
    return data;
}
