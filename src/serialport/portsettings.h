// The settings of a serial port: rate, data bits, parity, stop bits, flow control, time-out.
#pragma once

// Bits per second, as a plain number: any rate that the device can make, not only the usual ones.
enum BaudRateType : int {
    BAUD110 = 110,
    BAUD300 = 300,
    BAUD600 = 600,
    BAUD1200 = 1200,
    BAUD2400 = 2400,
    BAUD4800 = 4800,
    BAUD9600 = 9600,
    BAUD19200 = 19200,
    BAUD38400 = 38400,
    BAUD57600 = 57600,
    BAUD115200 = 115200,
    BAUD230400 = 230400,
    BAUD460800 = 460800,
    BAUD921600 = 921600,
};

enum DataBitsType : int { DATA_5 = 5, DATA_6 = 6, DATA_7 = 7, DATA_8 = 8 };

enum ParityType : int { PAR_NONE = 0, PAR_ODD = 1, PAR_EVEN = 2, PAR_MARK = 3, PAR_SPACE = 4 };

// 1.5 stop bits exist with 5 data bits; a POSIX port sends 2 with the others, which every receiver
// of 1.5 takes.
enum StopBitsType : int { STOP_1 = 0, STOP_1_5 = 1, STOP_2 = 2 };

enum FlowType : int { FLOW_OFF = 0, FLOW_HARDWARE = 1, FLOW_XONXOFF = 2 };

struct PortSettings
{
    BaudRateType BaudRate;
    DataBitsType DataBits;
    ParityType Parity;
    StopBitsType StopBits;
    FlowType FlowControl;
    long Timeout_Millisec; // ms; QextSerialPort says what it bounds
};
