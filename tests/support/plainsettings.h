// Port settings that every port takes, as a starting point for tests.
#pragma once

#include "pty.h"
#include "serialport/qextserialport.h"

inline PortSettings plain_settings(long timeout_ms = 300)
{
    return {BaudRateType(115200), DATA_8, PAR_NONE, STOP_1, FLOW_OFF, timeout_ms};
}
