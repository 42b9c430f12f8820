#include "workbench/upgrademodule.h"

#include "workbench/linkwords.h"

namespace {
PageState state_of(LoaderPage page)
{
    switch (page) {
    case LoaderPage::Equal:
        return PageState::Equal;
    case LoaderPage::Differs:
        return PageState::Differs;
    case LoaderPage::Sending:
        return PageState::Sending;
    case LoaderPage::Sent:
        return PageState::Sent;
    case LoaderPage::Failed:
        break;
    }
    return PageState::Failed;
}
} // namespace

UpgradeModule::UpgradeModule(LinkWorker& shared, QObject* parent)
    : QObject(parent)
    , stack{}
    , link(shared)
{
    connect_run();
}

UpgradeModule::UpgradeModule(const StackDescription& description, LogFeed& feed,
                             LinkRecorder& recorder, QObject* parent)
    : QObject(parent)
    , stack(description)
    , recorded(std::make_unique<RecordedLink>(recorder))
    , own_link(std::make_unique<LinkWorker>(feed, recorded.get()))
    , link(*own_link)
{
    recorded->description_set(description);
    connect_run();
    connect(&link, &LinkWorker::state_changed, this, &UpgradeModule::link_changed);
}

void UpgradeModule::connect_run()
{
    connect(&run, &UpgradeRun::device_found, this, &UpgradeModule::device_set);
    connect(&run, &UpgradeRun::phase_begun, this, &UpgradeModule::phase_set);
    connect(&run, &UpgradeRun::begun, this, [this](int size) { file_size = size; });
    connect(&run, &UpgradeRun::page_state, this, [this](quint32 offset, LoaderPage state) {
        map.set(offset, state_of(state));
        emit changed();
    });
    connect(&run, &UpgradeRun::progress, this, [this](int, int offset) { progress_set(offset); });
    connect(&run, &UpgradeRun::ended, this, &UpgradeModule::end);
}

void UpgradeModule::description_set(const StackDescription& description)
{
    stack = description;
    emit changed();
}

void UpgradeModule::start(const FirmwareFile& file, const UpgradeSettings& settings)
{
    this->file = file.path();
    this->settings = settings;
    name = file.name();
    found.reset();
    map = {};
    sent = {};
    report = {};
    open_problem.reset();
    if (own_link) {
        stage_set(Stage::Opening);
        link.open(stack);
        return;
    }
    stage_set(Stage::Asking);
    run.start(link, this->file, settings);
}

void UpgradeModule::abort()
{
    if (at == Stage::Opening)
        link.close();
    else if (running())
        run.abort();
}

// Of an own link.
void UpgradeModule::link_changed()
{
    if (at != Stage::Opening)
        return;
    if (link.state() == LinkWorker::State::Open) {
        stage_set(Stage::Asking);
        run.start(link, file, settings);
    } else if (link.state() == LinkWorker::State::Closed) {
        open_problem = link.problem();
        report.outcome.ending = LoaderEnding::Aborted; // where there was no problem
        stage_set(Stage::Ended);
        emit ended();
    }
}

void UpgradeModule::device_set(const LoaderDevice& device)
{
    if (!found || found->rom_page_size != device.rom_page_size)
        map = PageMap(file_size, device.rom_page_size);
    found = device;
    emit changed();
}

void UpgradeModule::phase_set(LoaderPhase phase)
{
    switch (phase) {
    case LoaderPhase::EnterBoot:
        return stage_set(Stage::EnteringBoot);
    case LoaderPhase::Send:
        send_clock.start();
        return stage_set(Stage::Sending);
    case LoaderPhase::Verify:
        progress_set(file_size);
        return stage_set(Stage::Verifying);
    }
}

void UpgradeModule::progress_set(int offset)
{
    sent = {{offset, file_size, send_clock.isValid() ? send_clock.elapsed() : 0}, false};
    emit changed();
}

void UpgradeModule::end(const UpgradeReport& report)
{
    this->report = report;
    sent.stopped = true;
    send_clock.invalidate();
    if (own_link)
        link.close();
    stage_set(Stage::Ended);
    emit ended();
}

void UpgradeModule::stage_set(Stage stage)
{
    at = stage;
    emit changed();
}

QString UpgradeModule::stage_text() const
{
    switch (at) {
    case Stage::Waiting:
        return ready() ? tr("ready") : tr("not connected");
    case Stage::Opening:
        return tr("opening the link");
    case Stage::Asking:
        return tr("asking the module");
    case Stage::EnteringBoot:
        return tr("starting the boot code");
    case Stage::Sending:
        return tr("sending");
    case Stage::Verifying:
        return tr("verifying");
    case Stage::Ended:
        if (!open_problem && report.outcome.ending == LoaderEnding::Aborted)
            return tr("stopped");
        return good() ? tr("done") : tr("failed");
    }
    return {};
}

QString UpgradeModule::end_text() const
{
    if (at != Stage::Ended)
        return {};
    return open_problem ? LinkWords::sentence(*open_problem) : verdict().text();
}
