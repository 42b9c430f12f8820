// The settings and queries of a Dorv radio module, over its AT commands.
#pragma once

#include "tools/atcommand.h"

#include <QThread>
#include <QTimer>
#include <cstdint>

class QFramer;
class QLink;

// How an operation of DorvCfg has ended.
//
//   Done        the reply agrees, or gave the value that was asked for
//   Unsent      an index was out of range, and nothing was sent
//   NoReply     nothing came in time, or the framer reported an error
//   Echoed      the reply is a command, the one that was sent: the module's echo is on
//   Refused     any other reply: the module says no, or what it says is no whole value
//
// It is stricter than what the operations return: some of these return 0 for any reply, also for an
// error or a part of a key, and outcome() is then Refused.
enum class DorvOutcome { Done, Unsent, NoReply, Echoed, Refused };

// Each operation sends one command through the framer, once, and blocks on the caller's thread
// until its reply has come or the link's read time-out is over. The framer must pass the command on
// unchanged, as QFramerNull does; it isn't owned. One operation at a time on one framer.
//
// The operations return 0, or TOOL_FAILED (-1) when the reply is missing or doesn't agree. Outputs
// are written on success only. Values travel unchecked: units and ranges are the module's business.
class DorvCfg : public QThread
{
    Q_OBJECT

public:
    // link is kept for whoever assembles the stack; no operation uses it.
    explicit DorvCfg(QLink* link);
    ~DorvCfg() override;

    // Before the first operation.
    void framer_set(QFramer* framer) { this->framer = framer; }

    // Module control. The modes are radio, pmac and mac; mode_is_* gives 0 in that mode.
    int echo_off() { return carry_out(at::ECHO_OFF); }
    int module_reboot() { return carry_out(at::REBOOT); }
    int factory_reset() { return carry_out(at::FACTORY_RESET); }
    int command_mode_enter() { return carry_out(at::COMMAND_MODE); }
    int mode_radio_set() { return carry_out(at::MODE_RADIO); }
    int mode_pmac_set() { return carry_out(at::MODE_PMAC); }
    int mode_mac_set() { return carry_out(at::MODE_MAC); }
    int mode_is_radio() { return mode_is("radi"); }
    int mode_is_pmac() { return mode_is("pmac"); }
    int mode_is_mac() { return mode_is("mac"); }

    // Radio settings. Bandwidth and coding rate are indices (see atcommand.h), format is 0 raw or
    // 1 hexadecimal; one out of range is refused with TOOL_FAILED, and nothing is sent.
    int freq_set(std::uint32_t freq) { return carry_out(at::FREQ, freq); }
    int sf_set(std::uint8_t sf) { return carry_out(at::SF, sf); }
    int bw_set(int bw) { return carry_out_word(at::BW, at_bandwidth(bw)); }
    int cr_set(std::uint8_t cr) { return carry_out_word(at::CR, at_coding_rate(cr)); }
    int pwr_set(std::uint8_t pwr) { return carry_out(at::PWR, pwr); }
    int txprlen_set(std::uint16_t length) { return carry_out(at::TXPRLEN, length); }
    int rxprlen_set(std::uint16_t length) { return carry_out(at::RXPRLEN, length); }
    int radio_rx_off() { return carry_out(at::RADIO_RX_OFF); }
    int rxfmt_hex_set() { return rxfmt_set(1); }
    int rxfmt_set(int format) { return carry_out_word(at::RXFMT, at_rx_format(format)); }

    // Serial port, pins and sleep of the module. parity: 2 even, else none. edge: 2 "wdo", else
    // "rise". mode: 2 "deep", else "off". With wake set the module wakes at a low level and second
    // isn't sent; without, it wakes after the time second.
    int uartcfg_set(std::uint32_t baud, std::uint8_t data_bits, int parity, std::uint8_t stop_bits)
    {
        return carry_out(at::UARTCFG, baud, data_bits, parity == 2 ? "e" : "n", stop_bits);
    }
    int uartpack_set(std::uint16_t first, std::uint16_t second)
    {
        return carry_out(at::UARTPACK, first, second);
    }
    int irq_set(int edge, std::uint16_t value)
    {
        return carry_out(at::IRQ, edge == 2 ? "wdo" : "rise", value);
    }
    int sleep_set(int mode, std::uint16_t first, int wake, std::uint16_t second)
    {
        const char* depth = mode == 2 ? "deep" : "off";
        return wake != 0 ? carry_out(at::SLEEP_LEVEL, depth, first)
                         : carry_out(at::SLEEP_TIMEOUT, depth, first, second);
    }

    // LoRaWAN settings. Join type: 0 OTAA, else ABP, read as 0 or 1. Class: 0 a, 1 b, 2 c; any
    // other is refused, and nothing is sent. Flags: 1 is on, or confirmed; any other is off.
    int devaddr_get(std::uint32_t* addr);
    int devaddr_set(std::uint32_t addr)
    {
        return carry_out(at::DEVADDR, QString::number(addr, 16));
    }
    int join_get(int* type);
    int join_set(int type, std::uint16_t value)
    {
        return carry_out(at::JOIN, type == 0 ? "otaa" : "abp", value);
    }
    int class_get(int* device_class);
    int class_set(int device_class) { return carry_out_word(at::CLASS, at_class(device_class)); }
    int transcnf_set(std::uint8_t flag)
    {
        return carry_out(at::TRANSCNF, flag == 1 ? "cnf" : "uncnf");
    }
    int transfport_set(std::uint8_t port) { return carry_out(at::TRANSFPORT, port); }
    int pwrid_set(std::int8_t index) { return carry_out(at::PWRID, index); }
    int dr_set(std::uint8_t rate) { return carry_out(at::DR, rate); }
    int retx_set(std::uint8_t count) { return carry_out(at::RETX, count); }
    int adr_set(std::uint8_t flag) { return carry_out(at::ADR, flag == 1 ? "on" : "off"); }
    int joinadr_set(std::uint8_t flag) { return carry_out(at::JOINADR, flag == 1 ? "on" : "off"); }
    int linkchk_set(std::uint16_t first, std::uint16_t second, std::uint16_t third)
    {
        return carry_out(at::LINKCHK, first, second, third);
    }
    int ch_set(std::uint8_t channel, std::uint32_t value)
    {
        return carry_out(at::CH, channel, value);
    }
    int level_set(std::uint32_t level) { return carry_out(at::LEVEL, level); }
    int heartbeat_get(std::uint16_t* first, std::uint16_t* second, std::uint16_t* third);
    int heartbeat_set(std::uint16_t first, std::uint16_t second, std::uint16_t third)
    {
        return carry_out(at::HEARTBEAT, first, second, third);
    }
    int pwrlimit_get(std::uint16_t* first, std::uint16_t* second);
    int pwrlimit_set(std::uint16_t first, std::uint16_t second)
    {
        return carry_out(at::PWRLIMIT, first, second);
    }

    // EUIs are 8 bytes. The characters of the module's reply aren't examined.
    int deveui_get(void* eui) { return eui_get(at::DEVEUI_GET, eui); }
    int deveui_set(const void* eui) { return carry_out(at::DEVEUI, at_hex(eui, 8)); }
    int appeui_get(void* eui) { return eui_get(at::APPEUI_GET, eui); }
    int appeui_set(const void* eui) { return carry_out(at::APPEUI, at_hex(eui, 8)); }
    // Keys are 16 bytes. Any reply is a success: what it doesn't spell of the key stays as it was.
    int appkey_get(void* key) { return key_get(at::APPKEY_GET, key); }
    int appkey_set(const void* key) { return carry_out(at::APPKEY, at_hex(key, 16)); }
    int appskey_get(void* key) { return key_get(at::APPSKEY_GET, key); }
    int appskey_set(const void* key) { return carry_out(at::APPSKEY, at_hex(key, 16)); }
    int nwkskey_get(void* key) { return key_get(at::NWKSKEY_GET, key); }
    int nwkskey_set(const void* key) { return carry_out(at::NWKSKEY, at_hex(key, 16)); }

    // The quality of the radio path to the device at addr: fields 4, 5, 1 and 2 of the seven of the
    // module's report, counted from 0.
    int comm_quality_get(std::uint16_t addr, float* out1, float* out2, float* out3, float* out4);
    // What follows the sixth byte of the reply, with its line end if it has one; or "N/A".
    QString rssi_get(std::uint32_t addr);

    // How at_exchange compares a reply with the expected text: all of it, all that follows the
    // module's echo of the command and CR LF, or any part of it.
    enum Match : int { MATCH_EQUAL = 0, MATCH_ECHO = 1, MATCH_CONTAINS = 2 };
    static constexpr int AT_NO_REPLY = -3;
    static constexpr int AT_MISMATCH = -4;
    // Sends command until a reply fits, retries + 1 times at most, and copies the reply, without
    // its echo, to out, which holds out_size bytes or is null. expected null: any reply fits. The
    // bytes of the reply, without its echo; AT_NO_REPLY or AT_MISMATCH, whichever the last attempt
    // met. Only a result of at least 1 is a success.
    int at_exchange(const char* command, const char* expected, int match, int retries,
                    void* out = nullptr, int out_size = 0);

    // Of the last operation; the search is none. For the thread of the operations.
    DorvOutcome outcome() const { return last_outcome; }
    // The last that the module replied to it, empty for nothing: what was refused, if it was.
    const QByteArray& reply() const { return last_reply; }

    // Listens, every 300 ms on the thread that owns this object, for what modules report of
    // themselves, until the layer below the framer has nothing more to give. Sends nothing.
    // Returns 0. A report may come in pieces, and may go on in the next search; one without a line
    // end counts as whole when a period brings nothing more. Whoever wants to listen for a certain
    // time starts a search again when one has finished.
    int search_start(int unused = 0);

signals:
    void search_started(int request_total);
    void search_progress(int request_sent, int bind_width, int spreading_factor);
    void search_finished();
    // A whole report; info is the rest of its line. The radio parameters are 0, as the search
    // doesn't walk over them and a report's layout is the module's.
    void dev_found(int bind_width, int spreading_factor, QString info);

protected slots:
    // One look of a search that has been started. A subclass whose thread runs no event loop calls
    // it in turn.
    void search_timer_timeout();

private:
    template <typename... Args> int carry_out(const AtCommand& command, const Args&... args)
    {
        return agreed(command, at_text(command, args...));
    }
    int carry_out_word(const AtCommand& command, const char* word);
    int agreed(const AtCommand& command, const QByteArray& text);
    int judge(bool fits, bool whole = true);
    int judge_value(bool fits, bool whole = true);

    void devices_emit(const QByteArray& text);
    void command_write(const QByteArray& text);
    QByteArray reply_read(int size);
    QByteArray text_queried(const AtCommand& command);
    QByteArray query(const AtCommand& command);
    int mode_is(const char* beginning);
    int eui_get(const AtCommand& command, void* eui);
    int key_get(const AtCommand& command, void* key);

    QFramer* framer = nullptr;
    QLink* link;
    QTimer* search_timer = nullptr;
    DorvOutcome last_outcome = DorvOutcome::Done;
    QByteArray last_reply;
    QByteArray search_text; // the beginning of a report whose rest hasn't come
};
