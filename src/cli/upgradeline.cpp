#include "cli/upgradeline.h"

#include "cli/progressline.h"
#include "stack/exchangetext.h"

#include <QJsonArray>
#include <algorithm>

namespace {
// The lines of one link, with its name.
class NamedLog final : public ExchangeSink
{
public:
    NamedLog(ExchangeLog& log, const QString& name)
        : log(log)
        , name(name + ' ')
    {
    }
    void sent(const QByteArray& bytes, int result) override
    {
        log.write(name + sent_text(bytes, result));
    }
    void received(const QByteArray& bytes, int result) override
    {
        log.write(name + received_text(bytes, result));
    }
    void note(const QString& text) override { log.write(name + note_text(text)); }

private:
    ExchangeLog& log;
    const QString name;
};

QString seconds_text(const UpgradeReport& report)
{
    return QString::number(double(report.elapsed_ms) / 1000, 'f', 1) + " s";
}

QJsonObject module_object(const QString& link, const ModuleEnding& ending)
{
    QJsonObject object = {{"link", link},
                          {"result", ending.failure ? "failed" : "upgraded"},
                          {"bytes", ending.report.file_size},
                          {"wire_bytes_sent", qint64(ending.report.wire_bytes)},
                          {"seconds", double(ending.report.elapsed_ms) / 1000},
                          {"device", ending.soft_info},
                          {"hard_info", ending.hard_info}};
    if (ending.failure)
        object["error"] = error_object(*ending.failure);
    return object;
}
} // namespace

UpgradeLine::UpgradeLine(const QVector<StackDescription>& links, const QStringList& texts,
                         const QString& file, const UpgradeSettings& settings,
                         const UpgradeOutputs& outputs)
    : file(file)
    , console(outputs.console)
{
    QStringList names;
    for (const StackDescription& stack : links)
        names.append(link_name(stack.link));
    if (names.removeDuplicates() > 0)
        names = texts;
    for (int i = 0; i < links.size(); ++i) {
        auto place = std::make_unique<Place>();
        place->text = texts[i];
        place->name = names[i];
        place->log = std::make_unique<NamedLog>(outputs.log, names[i]);
        place->record =
            std::make_unique<LinkRecord>(outputs.record, links[i].link, texts[i], *place->log);
        place->module = std::make_unique<ModuleUpgrade>(links[i], file, settings, *place->record,
                                                        watch(*place));
        places.push_back(std::move(place));
    }
}

UpgradeWatch UpgradeLine::watch(Place& place)
{
    return {[this, &place](const QString& text) { console.note(place.name + ": " + text); },
            [this, &place](const Progress& progress) { progress_take(place, progress); }};
}

// What is shown is the progress of all together.
void UpgradeLine::progress_take(Place& place, const Progress& progress)
{
    const std::lock_guard lock(mutex);
    place.progress = progress;
    Progress sum;
    for (const auto& other : places) {
        sum.done += other->progress.done;
        sum.total += progress.total; // as all have the same file
        sum.elapsed_ms = std::max(sum.elapsed_ms, other->progress.elapsed_ms);
    }
    console.progress(transfer_text(sum), sum.percent());
}

void UpgradeLine::run(const Interrupts& interrupts)
{
    QVector<ModuleUpgrade*> modules;
    for (const auto& place : places) {
        modules.append(place->module.get());
        QObject::connect(place->module.get(), &ModuleUpgrade::finished, place->module.get(),
                         [this, &place = *place] { end_note(place); });
    }
    run_all(modules, interrupts);
    console.end_progress();
    table_show();
    const auto has_failed = [](ModuleUpgrade* module) {
        return module->ending().failure.has_value();
    };
    const auto failed = std::count_if(modules.cbegin(), modules.cend(), has_failed);
    if (failed == 0)
        return console.result(result());
    auto* const first = *std::find_if(modules.cbegin(), modules.cend(), has_failed);
    throw Failure{first->ending().failure->code,
                  QStringLiteral("%1 of %2 upgrades failed").arg(failed).arg(modules.size()),
                  "Those of the table that failed can be run again: pages that have arrived aren't "
                  "sent a second time.",
                  result()};
}

void UpgradeLine::end_note(const Place& place) const
{
    const ModuleEnding& ending = place.module->ending();
    const auto& failure = ending.failure;
    console.note(place.name + ": " +
                 (failure
                      ? failure->what + (failure->advice.isEmpty() ? "" : ". ") + failure->advice
                      : "done after " + seconds_text(ending.report)));
}

void UpgradeLine::table_show() const
{
    int width = 0;
    for (const auto& place : places)
        width = std::max(width, int(place->text.size()));
    for (const auto& place : places) {
        const ModuleEnding& ending = place->module->ending();
        const QString rest =
            ending.failure ? "failed    " + ending.failure->what
                           : QStringLiteral("upgraded  %1  %2 bytes in %3")
                                 .arg(ending.soft_info, QString::number(ending.report.file_size),
                                      seconds_text(ending.report));
        console.line(place->text.leftJustified(width) + "  " + rest);
    }
}

QJsonObject UpgradeLine::result() const
{
    QJsonArray modules;
    bool good = true;
    for (const auto& place : places) {
        modules.append(module_object(place->text, place->module->ending()));
        good = good && !place->module->ending().failure;
    }
    return {{"result", good ? "upgraded" : "failed"}, {"file", file}, {"modules", modules}};
}
