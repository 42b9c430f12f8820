// The configuration dialogue of a cnet radio device, and the search for such devices on the air.
#pragma once

#include "tools/cnetframe.h"

#include <QThread>
#include <atomic>

class QLink;

// How an operation, or a search, has ended.
//
//   Done        an operation was carried out, or sent when it reads no answer; a search visited all
//               its pairs
//   Aborted     abort() ended the search before its last pair was done
//   NoLink      there is no link or it is closed, and nothing was sent
//   LinkError   the link reported an error
//   NoAnswer    nothing came in time
//   BadAnswer   what came is no answer to the request
//   Refused     the device answered that it did not do it
//
// A search ends with one of the last five when the local device could not be tuned to a pair.
enum class CnetOutcome { Done, Aborted, NoLink, LinkError, NoAnswer, BadAnswer, Refused };

// "250 kbps", "500 kbps", "1 Mbps" for the rate indices 0 to 2, "N/A bps" for any other.
QString baud_text(int rate);

// A local device hangs on the link; through it the settings of the local device and of remote ones
// are read and written. The device operations run on the caller's thread and block until the
// link's read returns; a search runs on this object's own thread, and the caller keeps off the link
// meanwhile. Nothing is retried. The link isn't owned; the destructor aborts a search and waits for
// its end.
//
// Addresses are 2 bytes (short) or 8 bytes (long), copied as they are. A configuration is a block
// of 13 words that only the device understands, copied as it lies in memory. Outputs are written on
// success only.
class CnetCfg : public QThread
{
    Q_OBJECT

public:
    explicit CnetCfg(QLink* link);
    ~CnetCfg() override;

    // Sends one frame, after dropping what waits on the link. target is 2 bytes or null; payload
    // may be null. The frame's length, whatever the link made of it; TOOL_NO_LINK, or TOOL_FAILED
    // when the link isn't open.
    int cmd_send(std::uint8_t cmd, const void* target, const void* payload, int nbytes);
    int cmd_send(std::uint8_t cmd, const void* payload, int nbytes);
    int cmd_send(std::uint8_t cmd);
    // A payload of 2 bytes, and one as a number, sent high byte first.
    int cmd_send(std::uint8_t cmd, const void* payload);
    int cmd_send(std::uint8_t cmd, std::uint16_t payload);
    // The target as a number, sent high byte first.
    int cmd_send(std::uint8_t cmd, std::uint16_t target, const void* payload, int nbytes);
    // Reads one frame and copies its payload to out, which holds nbytes. Payload bytes stored, 0
    // for a bad frame, what QLink::read returned when that was 0 or an error, or TOOL_NO_LINK.
    int resp_read(std::uint8_t cmd, void* out, int nbytes);

    // out holds 7 bytes, for _ext 15. What cmd_send returned when below 1, else as resp_read.
    int local_info_get(void* out);
    int local_info_get_ext(void* out);
    // cfg holds 13 words, extra 5 bytes. The 61 or 67 bytes of the answer; 0 for a missing answer,
    // one of another length or for another address; what cmd_send returned when below 1.
    int remote_cfg_get(const void* addr, std::uint32_t* cfg, void* extra);
    int remote_cfg_get_ext(const void* addr, std::uint32_t* cfg, void* extra);
    // 0, or TOOL_FAILED: no answer, one for another address, or a refusal by the device.
    int remote_cfg_set(const void* addr, const std::uint32_t* cfg);
    int remote_cfg_set_ext(const void* addr, const std::uint32_t* cfg);
    // Tunes the local device. Only the low byte of each travels. 0 or TOOL_FAILED.
    int local_chan_baud_set(int chan, int rate);
    static constexpr int VALUE_FAILED = -128;
    // A signed 8-bit value, or VALUE_FAILED; outcome() says whether a device reported that very
    // value. The long form has a second value, which second takes unless it is null.
    int remote_value_get(const void* addr);
    int remote_value_get_ext(const void* addr, int* second);
    // Sent without reading an answer; data is 2 bytes. As cmd_send.
    int cmd_d7_send(const void* target, const void* data);
    int cmd_67_send(const void* addr, const void* data);
    int cmd_6b_send(const void* addr, const void* data);

    // Start a search for one address or for all, over the channels and rates of the masks (see
    // cnet_pairs). 0, or TOOL_BUSY while the thread runs, which it does for a moment beyond
    // search_finished: QThread::finished or wait() show the end.
    int search_addr(std::uint32_t chan_mask, std::uint32_t baud_mask, const void* target);
    int search_addr(std::uint32_t chan_mask, std::uint32_t baud_mask, std::uint16_t target);
    int search_addr_ext(std::uint32_t chan_mask, std::uint32_t baud_mask, const void* target);
    int search_addr_ext(std::uint32_t chan_mask, std::uint32_t baud_mask, std::uint16_t target);
    int search_all(std::uint32_t chan_mask, std::uint32_t baud_mask);
    int search_all_ext(std::uint32_t chan_mask, std::uint32_t baud_mask);
    // What they all go through; a null target keeps the last one.
    int search_begin(std::uint32_t chan_mask, std::uint32_t baud_mask, const void* target,
                     std::uint8_t cmd);

    // Of the last operation or search that has ended. From any thread.
    CnetOutcome outcome() const { return last_outcome; }

signals:
    // Emitted from the search's thread, log also from the caller's.
    void log(QString s);
    void search_started(int total);
    // The pair about to be visited; current counts from 0.
    void search_progress(int current, int chan, int baud);
    // The search has ended; outcome() is the reason.
    void search_finished();
    // resp is good only while the signal is delivered: connect directly and copy.
    void dev_found(int chan, int baud, const cnet_search_response* resp);
    void dev_found(int chan, int baud, const cnet_search_response_ext* resp);

public slots:
    // Ends a search when the read in progress has returned. From any thread.
    void abort();

protected:
    // The search that search_prepare has set. A subclass that has a thread already, that of its
    // link, prepares and runs it there instead of having a thread started.
    void run() override;
    void search_prepare(std::uint32_t chan_mask, std::uint32_t baud_mask, const void* target,
                        std::uint8_t cmd);

private:
    bool judge(bool fits, bool accepted = true);
    int exchange(const CnetCommand& command, const QByteArray& payload, QByteArray* answer);
    int info_get(const CnetCommand& command, void* out);
    int cfg_get(const CnetCommand& command, const QByteArray& addr, std::uint32_t* cfg,
                void* extra);
    int cfg_set(const CnetCommand& command, const QByteArray& addr, const std::uint32_t* cfg);
    int value_get(const CnetCommand& command, const QByteArray& addr, int* second);

    void search(const CnetCommand& command);
    CnetOutcome pair_search(const CnetCommand& command, const CnetPair& pair);
    CnetOutcome answers_read(const CnetCommand& command, const CnetPair& pair);
    void answer_report(const CnetPair& pair, const QByteArray& record);

    QLink* link;
    std::uint32_t chan_mask = 0;
    std::uint32_t baud_mask = 0;
    std::uint8_t target[CNET_TARGET_SIZE] = {};
    std::atomic<std::uint8_t> search_cmd{0}; // 0 when no search is pending
    std::atomic<bool> stopped{true};         // while no search runs, and after an abort
    std::atomic<CnetOutcome> last_outcome{CnetOutcome::Done};
};
