#include "workbench/connectionbar.h"

#include "linkcfg/qlinkcfgdlg.h"
#include "stack/shelltext.h"
#include "workbench/frameboxes.h"
#include "workbench/framerdialog.h"
#include "workbench/icons.h"
#include "workbench/linkwords.h"
#include "workbench/notice.h"
#include "workbench/settingkeys.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace {
constexpr int LONGEST_TIMEOUT_MS = 600000;
} // namespace

ConnectionBar::ConnectionBar(LogFeed& feed, const QString& ini_path, QWidget* parent)
    : QWidget(parent)
    , feed(feed)
    , ini_path(ini_path)
    , recorded(recorder)
    , worker(feed, &recorded)
    , notice(new Notice)
    , record_notice(new Notice)
{
    setObjectName("connection");
    notice->setObjectName("connection_notice");
    record_notice->setObjectName("record_notice");
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 4);
    layout->addWidget(texts_create());
    layout->addWidget(state_create());
    layout->addWidget(record_notice);
    layout->addWidget(notice);
    connect(&worker, &LinkWorker::state_changed, this, &ConnectionBar::state_show);
    connect(&recorder, &LinkRecorder::changed, this, &ConnectionBar::record_show);
    connect(&recorder, &LinkRecorder::said, this, [this](bool good, const QString& sentence) {
        record_notice->say(good ? Notice::Kind::Good : Notice::Kind::Problem, sentence);
    });
    retranslate();
    texts_check();
}

QLineEdit* ConnectionBar::edit_create(const char* name, const QString& text)
{
    auto* const edit = new QLineEdit(text);
    edit->setObjectName(name);
    connect(edit, &QLineEdit::textChanged, this, &ConnectionBar::texts_check);
    return edit;
}

QWidget* ConnectionBar::texts_create()
{
    link_label = new QLabel;
    link_text_edit = edit_create("link_text", LINK.fallback);
    link_label->setBuddy(link_text_edit);
    link_button = new QPushButton;
    link_button->setObjectName("link_choose");
    connect(link_button, &QPushButton::clicked, this, &ConnectionBar::link_choose);
    frame_label = new QLabel;
    frame_text_edit = edit_create("frame_text", FRAME.fallback);
    frame_label->setBuddy(frame_text_edit);
    frame_button = new QPushButton;
    frame_button->setObjectName("frame_edit");
    connect(frame_button, &QPushButton::clicked, this, &ConnectionBar::frame_edit);
    copy_button = new QPushButton;
    copy_button->setObjectName("stack_copy");
    connect(copy_button, &QPushButton::clicked, this, &ConnectionBar::copy);

    auto* const texts = new QWidget;
    auto* const row = new QHBoxLayout(texts);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(link_label);
    row->addWidget(link_text_edit, 3);
    row->addWidget(link_button);
    row->addWidget(frame_label);
    row->addWidget(frame_text_edit, 2);
    row->addWidget(frame_button);
    row->addWidget(copy_button);
    return texts;
}

QWidget* ConnectionBar::state_create()
{
    connect_button = new QPushButton;
    connect_button->setObjectName("connect");
    connect(connect_button, &QPushButton::clicked, this, &ConnectionBar::toggle);
    state_label = new QLabel;
    state_label->setObjectName("connection_state");
    timeout_label = new QLabel;
    timeout_box = new QSpinBox;
    timeout_box->setObjectName("timeout");
    timeout_box->setRange(1, LONGEST_TIMEOUT_MS);
    timeout_box->setValue(TIMEOUT.fallback);
    connect(timeout_box, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &ConnectionBar::texts_check);
    timeout_label->setBuddy(timeout_box);
    log_box = new QCheckBox;
    log_box->setObjectName("log_on");
    log_box->setChecked(true);
    connect(log_box, &QCheckBox::toggled, this, [this](bool on) { feed.exchanges_set(on); });
    record_button = new QPushButton;
    record_button->setObjectName("record");
    connect(record_button, &QPushButton::clicked, this, &ConnectionBar::record_toggle);
    boxes = new FrameBoxes;

    auto* const state = new QWidget;
    auto* const row = new QHBoxLayout(state);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(connect_button);
    row->addWidget(state_label);
    row->addStretch(1);
    row->addWidget(boxes);
    row->addStretch(1);
    row->addWidget(timeout_label);
    row->addWidget(timeout_box);
    row->addWidget(record_button);
    row->addWidget(log_box);
    return state;
}

std::optional<StackDescription> ConnectionBar::description()
{
    QLineEdit* edit = link_text_edit;
    try {
        StackDescription stack = {};
        stack.link = parse_link(link_text_edit->text().trimmed());
        edit = frame_text_edit;
        stack.framers = parse_framers(frame_text_edit->text().trimmed());
        check_fit(stack.link, stack.framers);
        stack.timeout_ms = timeout_box->value();
        return stack;
    } catch (const TextError& error) {
        const QString where = edit == link_text_edit ? tr("Link") : tr("Frame");
        notice->say(Notice::Kind::Problem,
                    tr("%1, character %2: %3").arg(where).arg(error.column + 1).arg(error.message));
        return std::nullopt;
    }
}

QString ConnectionBar::hindrance() const
{
    if (worker.state() != LinkWorker::State::Open)
        return tr("There is no link to a device: connect first.");
    if (worker.busy())
        return tr("The link works for another page: wait for its end, or stop it.");
    return {};
}

void ConnectionBar::texts_check()
{
    notice->clear();
    const auto stack = description();
    connect_button->setEnabled(stack || worker.state() != LinkWorker::State::Closed);
    if (!stack)
        return;
    boxes->framers_set(stack->framers);
    emit description_changed();
}

void ConnectionBar::toggle()
{
    if (worker.state() != LinkWorker::State::Closed)
        return worker.close();
    if (const auto stack = description()) {
        if (!recorder.recording())
            record_notice->clear();
        recorded.description_set(*stack);
        worker.open(*stack);
    }
}

void ConnectionBar::record_toggle()
{
    if (recorder.recording())
        return recorder.stop();
    QFileDialog dialog(window(), tr("Record to"), {}, tr("Captures (*.pcapng)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix("pcapng");
    dialog.setOption(QFileDialog::DontConfirmOverwrite); // it goes on after its end
    if (dialog.exec() != QDialog::Accepted)
        return;
    record_notice->clear();
    recorder.start(dialog.selectedFiles().value(0), options_text());
}

void ConnectionBar::record_show()
{
    const bool on = recorder.recording();
    record_button->setText(on ? tr("Stop recording") : tr("Record..."));
    record_button->setIcon(on ? theme_icon("media-playback-stop", QStyle::SP_MediaStop)
                              : theme_icon("media-record", QStyle::SP_DialogSaveButton));
    record_button->setShortcut(QKeySequence("Ctrl+R")); // a change of text drops it
    const QString key = record_button->shortcut().toString(QKeySequence::NativeText);
    record_button->setToolTip(
        on ? tr("Recording into %1. Ends by %2.").arg(recorder.path(), key)
           : tr("Records all that passes the links into a capture (%1).").arg(key));
}

std::optional<LinkChoice> ConnectionBar::link_ask()
{
    QLinkCfgDlg dialog(window(), ini_path);
    return link_ask(dialog);
}

std::optional<LinkChoice> ConnectionBar::link_ask(QLinkCfgDlg& dialog)
{
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const LinkChoice choice = chosen_link(dialog);
    if (!choice.problem.isEmpty()) {
        notice->say(Notice::Kind::Problem, choice.problem);
        return std::nullopt;
    }
    return choice;
}

void ConnectionBar::link_choose()
{
    QLinkCfgDlg dialog(window(), ini_path);
    bool legible = true;
    try {
        show_link(dialog, parse_link(link_text_edit->text().trimmed()), timeout_box->value());
    } catch (const TextError&) {
        legible = false;
    }
    const LinkChoice shown = chosen_link(dialog);
    const auto choice = link_ask(dialog);
    if (!choice)
        return;
    // What nobody has changed stays as it is: the text may say more than the dialog can show.
    if (!legible || choice->timeout_ms != shown.timeout_ms)
        timeout_box->setValue(choice->timeout_ms);
    if (!legible || link_text(choice->link) != link_text(shown.link))
        link_text_edit->setText(link_text(choice->link));
}

void ConnectionBar::frame_edit()
{
    const auto stack = description();
    FramerDialog dialog(stack ? stack->link : LinkDescription{},
                        stack ? stack->framers : QVector<FramerDescription>{}, window());
    if (dialog.exec() == QDialog::Accepted)
        frame_text_edit->setText(framers_text(dialog.framers()));
}

QString ConnectionBar::options_text() const
{
    return "--link " + shell_word(link_text_edit->text().trimmed()) + " --frame " +
           shell_word(frame_text_edit->text().trimmed());
}

void ConnectionBar::copy() const
{
    QApplication::clipboard()->setText(options_text());
}

void ConnectionBar::state_show()
{
    using State = LinkWorker::State;
    const State state = worker.state();
    const bool closed = state == State::Closed;
    for (QWidget* const widget :
         {static_cast<QWidget*>(link_text_edit), static_cast<QWidget*>(link_button),
          static_cast<QWidget*>(frame_text_edit), static_cast<QWidget*>(frame_button),
          static_cast<QWidget*>(timeout_box)})
        widget->setEnabled(closed);
    connect_button->setText(closed ? tr("&Connect") : tr("Dis&connect"));
    connect_button->setIcon(closed ? theme_icon("network-connect", QStyle::SP_DialogYesButton)
                                   : theme_icon("network-disconnect", QStyle::SP_DialogNoButton));
    connect_button->setEnabled(state == State::Closed || state == State::Open ||
                               state == State::Opening);
    const QString texts[] = {tr("not connected"), tr("connecting ..."), tr("connected"),
                             tr("closing ...")};
    state_label->setText(texts[int(state)]);
    if (closed && worker.problem())
        notice->say(Notice::Kind::Problem, LinkWords::sentence(*worker.problem()));
    else if (!closed)
        notice->clear();
}

void ConnectionBar::load(const QSettings& ini)
{
    link_text_edit->setText(LINK.read(ini));
    frame_text_edit->setText(FRAME.read(ini));
    timeout_box->setValue(TIMEOUT.read(ini));
    log_box->setChecked(LOG.read(ini));
}

void ConnectionBar::store(QSettings& ini) const
{
    LINK.write_if_changed(ini, link_text_edit->text());
    FRAME.write_if_changed(ini, frame_text_edit->text());
    TIMEOUT.write_if_changed(ini, timeout_box->value());
    LOG.write_if_changed(ini, log_box->isChecked());
}

void ConnectionBar::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void ConnectionBar::retranslate()
{
    link_label->setText(tr("Lin&k:"));
    link_text_edit->setAccessibleName(tr("link as text"));
    link_text_edit->setToolTip(tr("As tarnwickctl takes it after --link."));
    link_button->setText(tr("C&hoose..."));
    frame_label->setText(tr("F&rame:"));
    frame_text_edit->setAccessibleName(tr("frame as text"));
    frame_text_edit->setToolTip(tr("As tarnwickctl takes it after --frame."));
    frame_button->setText(tr("E&dit..."));
    copy_button->setText(tr("Cop&y"));
    copy_button->setIcon(theme_icon("edit-copy", QStyle::SP_FileDialogDetailedView));
    copy_button->setToolTip(tr("Copies link and frame as options of tarnwickctl."));
    timeout_label->setText(tr("Ti&me-out:"));
    timeout_box->setSuffix(tr(" ms"));
    timeout_box->setToolTip(tr("How long to wait for an answer, and for a connection."));
    log_box->setText(tr("&Log"));
    log_box->setToolTip(tr("Log every exchange and what the tools do."));
    state_show();
    record_show();
}
