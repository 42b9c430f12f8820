// The AT command set of the Dorv module: what goes out, and what answer means yes.
#pragma once

#include <QByteArray>
#include <QString>

constexpr int AT_EXCHANGE = 0;
constexpr const char* AT_ANY = "";

// A command is plain ASCII ended by one carriage return, with %1, %2 .. for its arguments: decimal
// numbers unless the command itself says 0x, words, or hexadecimal text. Most are answered as the
// defaults say.
struct AtCommand
{
    const char* text = "";
    int reply_size = AT_EXCHANGE;    // most bytes read; AT_EXCHANGE: through at_exchange
    const char* expected = "ok\r\n"; // the reply must contain it; AT_ANY: any reply will do
};

namespace at {
// clang-format off

//                                 text                                 reply        expected
// Module control
constexpr AtCommand ECHO_OFF      {"at+echo=off\r",                      16,          AT_ANY};
constexpr AtCommand REBOOT        {"at+reboot\r",                        16,          "ok"};
constexpr AtCommand FACTORY_RESET {"at+def\r",                           16,          "ok"};
constexpr AtCommand COMMAND_MODE  {"+++\r",                              16,          "ok"};
constexpr AtCommand MODE_RADIO    {"at+mode=radio\r",                    16,          AT_ANY};
constexpr AtCommand MODE_PMAC     {"at+mode=pmac\r",                     16,          AT_ANY};
constexpr AtCommand MODE_MAC      {"at+mode=mac\r",                      16,          AT_ANY};
constexpr AtCommand MODE_GET      {"at+mode=?\r",                        16,          AT_ANY};

// Radio settings
constexpr AtCommand FREQ          {"at+freq=%1\r"};
constexpr AtCommand SF            {"at+sf=%1\r"};
constexpr AtCommand BW            {"at+bw=%1\r"};
constexpr AtCommand CR            {"at+cr=%1\r"};
constexpr AtCommand PWR           {"at+pwr=%1\r"};
constexpr AtCommand TXPRLEN       {"at+txprlen=%1\r"};
constexpr AtCommand RXPRLEN       {"at+rxprlen=%1\r"};
constexpr AtCommand RADIO_RX_OFF  {"at+radiorx=0\r",                     16,          "ok"};
constexpr AtCommand RXFMT         {"at+rxfmt=%1\r",                      16,          "ok"};

// Serial port, pins and sleep of the module
constexpr AtCommand UARTCFG       {"at+uartcfg=%1,%2,%3,%4\r"};
constexpr AtCommand UARTPACK      {"at+uartpack=%1,%2\r"};
constexpr AtCommand IRQ           {"at+irq=%1,%2\r"};
constexpr AtCommand SLEEP_LEVEL   {"at+sleep=%1,%2,level,low\r"};
constexpr AtCommand SLEEP_TIMEOUT {"at+sleep=%1,%2,timeout,%3\r"};

// LoRaWAN settings
constexpr AtCommand DEVADDR_GET   {"at+devaddr=?\r",                     16,          AT_ANY};
constexpr AtCommand DEVADDR       {"at+devaddr=0x%1\r",                  32,          "ok"};
constexpr AtCommand JOIN_GET      {"at+join=?\r",                        16,          AT_ANY};
constexpr AtCommand JOIN          {"at+join=%1,%2\r",                    32,          "ok"};
constexpr AtCommand CLASS_GET     {"at+class=?\r",                       16,          AT_ANY};
constexpr AtCommand CLASS         {"at+class=%1\r",                      32,          "ok"};
constexpr AtCommand TRANSCNF      {"at+transcnf=%1\r"};
constexpr AtCommand TRANSFPORT    {"at+transfport=%1\r"};
constexpr AtCommand PWRID         {"at+pwrid=%1\r"};
constexpr AtCommand DR            {"at+dr=%1\r"};
constexpr AtCommand RETX          {"at+retx=%1\r"};
constexpr AtCommand ADR           {"at+adr=%1\r"};
constexpr AtCommand JOINADR       {"at+joinadr=%1\r"};
constexpr AtCommand LINKCHK       {"at+linkchk=%1,%2,%3\r"};
constexpr AtCommand CH            {"at+ch=%1,%2,1,5\r"};
constexpr AtCommand LEVEL         {"at+level=%1\r"};
constexpr AtCommand HEARTBEAT_GET {"at+heartbeat=?\r",                   AT_EXCHANGE, AT_ANY};
constexpr AtCommand HEARTBEAT     {"at+heartbeat=%1,%2,%3\r"};
constexpr AtCommand PWRLIMIT_GET  {"at+pwrlimit=?\r",                    AT_EXCHANGE, AT_ANY};
constexpr AtCommand PWRLIMIT      {"at+pwrlimit=%1,%2\r"};

// EUIs and keys
constexpr AtCommand DEVEUI_GET    {"at+deveui=?\r",                      64,          AT_ANY};
constexpr AtCommand DEVEUI        {"at+deveui=%1\r",                     64,          "ok"};
constexpr AtCommand APPEUI_GET    {"at+appeui=?\r",                      64,          AT_ANY};
constexpr AtCommand APPEUI        {"at+appeui=%1\r",                     64,          "ok"};
constexpr AtCommand APPKEY_GET    {"at+appkey=?xyz.quendal.zz\r",        AT_EXCHANGE, AT_ANY};
constexpr AtCommand APPKEY        {"at+appkey=%1\r"};
constexpr AtCommand APPSKEY_GET   {"at+appskey=?abp,xyz.quendal.zz\r",   AT_EXCHANGE, AT_ANY};
constexpr AtCommand APPSKEY       {"at+appskey=abp,%1\r"};
constexpr AtCommand NWKSKEY_GET   {"at+nwkskey=?abp,xyz.quendal.zz\r",   AT_EXCHANGE, AT_ANY};
constexpr AtCommand NWKSKEY       {"at+nwkskey=abp,%1\r"};

// Measurements
constexpr AtCommand COMM_QUALITY  {"at+pmactx=ucast,%1,communication quality\r", 120, AT_ANY};
constexpr AtCommand RSSI          {"at+rssi=0x%1\r",                     64,          "+rssi,"};

// clang-format on
} // namespace at

// The command with its arguments, numbers or text, filled in.
template <typename... Args> QByteArray at_text(const AtCommand& command, const Args&... args)
{
    QString text = QLatin1String(command.text);
    ((text = text.arg(args)), ...);
    return text.toLatin1();
}

// What a command has for an index or a code. The words of an index out of range are null.
const char* at_bandwidth(int index);    // 0 to 9: "7.8" to "500", in kHz
const char* at_coding_rate(int index);  // 0 to 3: "4/5" to "4/8"
const char* at_rx_format(int format);   // 0 "raw", 1 "hex"
const char* at_class(int device_class); // 0 to 2: "a" to "c"

// Upper-case pairs without separators.
QString at_hex(const void* data, int nbytes);
