// One module that is being upgraded: its link, its run, and what is known of both.
#pragma once

#include "workbench/firmwarefile.h"
#include "workbench/linkrecorder.h"
#include "workbench/pagemap.h"
#include "workbench/transfer.h"
#include "workbench/upgraderun.h"
#include "workbench/upgradeverdict.h"

#include <QElapsedTimer>

class UpgradeModule : public QObject
{
    Q_OBJECT

public:
    enum class Stage { Waiting, Opening, Asking, EnteringBoot, Sending, Verifying, Ended };

    // On a link that is opened and closed by others; it outlives the module.
    UpgradeModule(LinkWorker& shared, QObject* parent);
    // On a link of its own, open only during a run.
    UpgradeModule(const StackDescription& description, LogFeed& feed, LinkRecorder& recorder,
                  QObject* parent);

    // Of its own link; of a shared one, what was set.
    const StackDescription& description() const { return stack; }
    void description_set(const StackDescription& description);
    bool shares_link() const { return own_link == nullptr; }
    bool ready() const { return !shares_link() || link.state() == LinkWorker::State::Open; }

    // Only while not running.
    void start(const FirmwareFile& file, const UpgradeSettings& settings);
    void abort();
    bool running() const { return at != Stage::Waiting && at != Stage::Ended; }

    Stage stage() const { return at; }
    QString stage_text() const;
    const QString& file_name() const { return name; }
    const std::optional<LoaderDevice>& device() const { return found; }
    const PageMap& pages() const { return map; }
    const Transfer& transfer() const { return sent; }
    // After the end of a run.
    UpgradeVerdict verdict() const { return upgrade_verdict(report, name, settings); }
    // An end without a run: the link could not be opened.
    const std::optional<LinkProblem>& link_problem() const { return open_problem; }
    // How it has ended, in one sentence; empty before.
    QString end_text() const;
    bool good() const { return at == Stage::Ended && !open_problem && verdict().good; }
    std::int64_t elapsed_ms() const { return report.elapsed_ms; }

signals:
    void changed();
    void ended();

private:
    void connect_run();
    void link_changed();
    void device_set(const LoaderDevice& device);
    void phase_set(LoaderPhase phase);
    void progress_set(int offset);
    void end(const UpgradeReport& report);
    void stage_set(Stage stage);

    StackDescription stack;
    std::unique_ptr<RecordedLink> recorded; // outlives the link
    std::unique_ptr<LinkWorker> own_link;
    LinkWorker& link;
    UpgradeRun run; // goes before its link
    Stage at = Stage::Waiting;
    QString file;
    QString name;
    UpgradeSettings settings;
    int file_size = 0;
    std::optional<LoaderDevice> found;
    PageMap map;
    Transfer sent;
    QElapsedTimer send_clock;
    UpgradeReport report;
    std::optional<LinkProblem> open_problem;
};
