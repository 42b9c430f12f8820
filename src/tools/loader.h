// The firmware upgrader: brings a module into its boot code and has its flash match a file.
#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>
#include <QThread>
#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>

class QFramer;
struct DeviceInfo;

// How a run has ended. Each ending but None and Upgraded leaves the module in the code that it ran
// last, and without a reboot; a later run completes what this one began.
//
//   ending         last box or log line                       reason
//   None           no run has ended yet                        None
//   Upgraded       box File sent and verified OK               None
//   Aborted        that of the step in progress                any
//   FileNotRead    box on the file; no upgrade_done            the four from FileNotOpened on
//   NoInfo         box Get device infomation failed            NoReply, BadReply, ZeroSize
//   WrongFirmware  that box, after box wrong firmware ..       None
//   NoBootInfo     box Get device info failed after ..         NoReply, BadReply, ZeroSize
//   NotInBoot      box device not in boot mode, try again      None
//   SendFailed     log Firmware send failed, please retry      NoReply, BadReply, PacketRefused,
//                                                              ShortPacket, None
//   VerifyFailed   box File verify failed                      NoReply, BadReply, CrcDiffers
enum class LoaderEnding {
    None,
    Upgraded,
    Aborted, // abort() was called, wherever in the run that fell
    FileNotRead,
    NoInfo,
    WrongFirmware,
    NoBootInfo,
    NotInBoot,
    SendFailed,
    VerifyFailed,
};

// What went wrong in the last exchange with the module, or with the file.
enum class LoaderReason {
    None,          // nothing; or no attempt was allowed, with a retry_count of 0
    NoReply,       // nothing came in time, or less than a reply
    BadReply,      // a reply to something else
    ZeroSize,      // the information record has a page size or an MTU of 0
    ShortPacket,   // pack_len is below 4
    PacketRefused, // the module refused a data packet
    CrcDiffers,    // the module holds something else than the file
    FileNotOpened,
    FileTooLarge,
    NoMemory,
    FileCutShort, // it gave less than its size
};

struct LoaderOutcome
{
    LoaderEnding ending = LoaderEnding::None;
    LoaderReason reason = LoaderReason::None;
    QString module_name;        // as the module reports it; may be empty
    std::uint32_t offset = 0;   // in the file, of the packet that was sent last
    std::uint32_t refusals = 0; // of that packet by the module
};

// What a run knows of a page of the file.
//
//   state    when
//   Equal    the module holds it already
//   Differs  the module holds something else; also of a page whose sending was aborted
//   Sending  its first packet is about to go out
//   Sent     the module has accepted all its packets
//   Failed   its check or one of its packets was given up
enum class LoaderPage : int { Equal, Differs, Sending, Sent, Failed };
Q_DECLARE_METATYPE(LoaderPage)

// What a module says of itself.
struct LoaderDevice
{
    QString soft_info; // as in dev_soft_info_set
    QByteArray hard_info;
    bool in_boot = false;
    int rom_page_size = 0; // bytes
    int mtu = 0;           // most payload bytes of a data packet, as the module reports it
};
Q_DECLARE_METATYPE(LoaderDevice)

// The parts of a run that take time.
enum class LoaderPhase { EnterBoot, Send, Verify };
Q_DECLARE_METATYPE(LoaderPhase)

// A run reads the file into memory, walks it by ROM pages, sends only those whose CRC differs, has
// the whole file verified and reboots the module. The dialogue is in bootdialogue.h.
//
// One Loader serves any number of runs, one at a time. The settings are made between runs, and the
// run owns the framer's dialogue from its first request to its last. The framer isn't owned, must
// be valid before upgrade_start, and outlives the run. The destructor aborts a run and waits for
// it.
//
// An abort is polled: before each attempt to send or verify, between packets, and once more before
// the reboot, which an aborted run never sends. It interrupts no read and no sleep, so a run ends
// within the information exchanges, waits and the one read in progress.
//
// Refused, beyond what the module itself refuses:
//   - a file that has no size of its own, that is larger than 2 GiB - 1, for which memory is short,
//     or that gives less than its size: a message box, and the run ends like one whose file can't
//     be opened;
//   - a record with a ROM page size or an MTU of 0: a log line, and the information exchange fails
//     with TOOL_BAD_REPLY (-5);
//   - a pack_len below 4, once a page has to be sent: a log line, and the transfer fails.
class Loader : public QThread
{
    Q_OBJECT

public:
    // Starts with pack_len 1024, retry_count 3, send_interval 0, reset_wait_ms 1000 and
    // verify_wait_ms 500.
    explicit Loader(QFramer* framer, QObject* parent = nullptr);
    ~Loader() override;

    // The dialogue, which a run goes through; only for its thread, or for the caller's while no run
    // is under way. It is a flush and a write for each request and a read for each reply. After a
    // missed reply the next two requests wait before that flush until what is on its way has come:
    // for the time that the slowest page check took, at least 10 ms and at most 1 s. After a reply
    // to another request each verify does, for the rest of the run. data points at the first byte
    // of the packet or block. Results are 0, BLOCK_DIFFERS or a ToolError.
    static constexpr int BLOCK_DIFFERS = 1;

    // One exchange, and up to retry_count repeats.
    int dev_info_get();
    int dev_info_get_retry();
    // No reply is awaited.
    void dev_boot_enter();
    void dev_reboot();
    // n when the device accepted; _retry gives 0 when retry_count is 0.
    int packet_send(const std::uint8_t* data, std::uint32_t offset, std::uint32_t n);
    int packet_send_retry(const std::uint8_t* data, std::uint32_t offset, std::uint32_t n);
    // True on an abort too: block_verify_retry, which comes next, then refuses. The information
    // record, which has page size and MTU, comes before these two.
    bool block_send(const std::uint8_t* data, std::uint32_t offset, std::uint32_t size,
                    std::uint32_t total);
    bool file_send(const std::uint8_t* data, std::uint32_t size);
    int block_verify(std::uint32_t crc, std::uint32_t offset, std::uint32_t size, bool final);
    int block_verify_retry(const std::uint8_t* data, std::uint32_t offset, std::uint32_t size,
                           bool final);

    // Of the last run. From its upgrade_done on, in a slot that is connected directly; else after
    // its end. A new run clears it.
    const LoaderOutcome& outcome() const { return last; }

public slots:
    void abort();
    void filename_set(QString filename);
    // Most payload bytes of a data packet; the device's MTU may be less. Rounded down to a multiple
    // of 4.
    void pack_len_set(uint nbyte);
    // Attempts for each packet and each verify; the information exchange makes one more. At 0
    // no page is checked or sent.
    void retry_count_set(uint retry);
    // Pause after each data packet and each failed information or verify attempt.
    void send_interval_set(uint ms);
    // Pause between the command to enter boot mode and the next information request.
    void reset_wait_ms_set(uint ms);
    // Pause between the final verify request and the reading of its reply; and before that
    // request when the run missed a reply, which could otherwise come late and pass for this one.
    // Without a miss the pause before it is that of a page check, at least 10 ms: the time in which
    // a second copy of the last reply arrives.
    void verify_wait_ms_set(uint ms);
    // Starts a run, or says in a message box that one is under way. The thread runs on for a moment
    // beyond upgrade_done: QThread::finished or wait() show when the next run can start.
    void upgrade_start();

signals:
    // Emitted from the run's thread.
    void upgrade_started(int file_size);
    // At the start with 0, then once a page with its offset: never the full size.
    void upgrade_progress(int file_size, int file_sent);
    // The last signal of a run whose file was read; outcome() is what became of it.
    void upgrade_done();
    void phase_begun(LoaderPhase phase);
    // What has become of the page whose first byte is at this offset.
    void page_state(quint32 offset, LoaderPage state);
    // After each information exchange that succeeds, before the checks on the firmware's name.
    void device_found(LoaderDevice device);
    // After each information exchange: what runs on the device, or "N/A".
    void dev_soft_info_set(QString info);
    // After each information exchange: opaque bytes that are good only while the signal is
    // delivered (connect directly and copy), or null and 0.
    void dev_hard_info_set(const uint8_t* info, int nbytes);
    void log(QString log);
    // A text that a person must see.
    void msgbox(QString msg);

protected:
    void run() override;

private:
    std::optional<std::uint32_t> file_read(std::unique_ptr<std::uint8_t[]>* content);
    LoaderEnding upgrade(const std::uint8_t* data, std::uint32_t size);
    LoaderEnding boot_reach();

    void request_send(const QByteArray& request);
    int status_get(const QByteArray& request, std::uint32_t wait_ms);
    void reply_miss();
    std::uint32_t quiet_ms() const;
    int info_refusal(const std::uint8_t* reply, int size);
    void zero_report(std::uint32_t page_size, std::uint32_t mtu);
    void device_report(const DeviceInfo& info);
    bool page_send(const std::uint8_t* data, std::uint32_t offset, std::uint32_t n,
                   std::uint32_t total);
    int firmware_check(const QString& module_name);
    void hard_info_report(const DeviceInfo& info);

    QFramer* framer;
    QString filename;
    std::uint32_t rom_page_size = 0;
    std::uint32_t mtu = 0;
    std::uint32_t pack_len = 1024;      // what most boot codes take in one packet
    std::uint32_t retry_count = 3;      // enough for a noisy line, quick to find a dead one
    std::uint32_t send_interval = 0;    // the replies already pace the packets
    std::uint32_t reset_wait_ms = 1000; // a reset and the start of the boot code
    std::uint32_t verify_wait_ms = 500; // a CRC over the whole flash
    bool dev_in_boot = false;
    // Of this run:
    LoaderOutcome last;
    bool reply_missed = false; // an answer may still be on its way
    bool stray_seen = false;   // an answer to another request came: replies are doubled or late
    int careful_requests = 0;  // so many requests to come wait first
    std::int64_t slowest_check_ms = 0;
    std::atomic<bool> abort_flag{false};
};
