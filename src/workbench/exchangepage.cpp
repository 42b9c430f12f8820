#include "workbench/exchangepage.h"

#include "stack/typedbytes.h"
#include "stack/typedtext.h"
#include "workbench/connectionbar.h"
#include "workbench/icons.h"
#include "workbench/notice.h"
#include "workbench/settingkeys.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>

namespace {
enum Kind { HEX, TEXT };
} // namespace

ExchangePage::ExchangePage(ConnectionBar& connection, QWidget* parent)
    : QWidget(parent)
    , connection(connection)
    , notice(new Notice)
{
    setObjectName("exchanges");
    notice->setObjectName("exchange_notice");
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(payload_create());
    layout->addWidget(history_create(), 1);
    layout->addWidget(buttons_create());
    layout->addWidget(notice);
    connect(&run, &ExchangeRun::ended, this, &ExchangePage::run_end);
    connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &ExchangePage::record_show);
    connect(&connection.link(), &LinkWorker::state_changed, this, [this] {
        if (this->connection.link().state() == LinkWorker::State::Closing)
            abort();
    });
    connect(view, &QTableView::activated, this, &ExchangePage::use_again);
    retranslate();
}

QPushButton* ExchangePage::button_create(const char* name, void (ExchangePage::*slot)())
{
    auto* const button = new QPushButton;
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

QWidget* ExchangePage::payload_create()
{
    payload_label = new QLabel;
    payload_edit = new QLineEdit;
    payload_edit->setObjectName("payload");
    payload_edit->setMaxLength(4 * LONGEST); // each byte as an escape
    payload_edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    payload_edit->setClearButtonEnabled(true);
    payload_label->setBuddy(payload_edit);
    connect(payload_edit, &QLineEdit::textChanged, notice, &Notice::clear);
    connect(payload_edit, &QLineEdit::returnPressed, this, &ExchangePage::send);
    kind_box = new QComboBox;
    kind_box->setObjectName("payload_kind");
    kind_box->addItems({QString(), QString()});
    connect(kind_box, QOverload<int>::of(&QComboBox::currentIndexChanged), notice, &Notice::clear);
    most_label = new QLabel;
    most_box = new QSpinBox;
    most_box->setObjectName("reply_most");
    most_box->setRange(1, LONGEST);
    most_box->setValue(EXCHANGE_MOST.fallback);
    most_label->setBuddy(most_box);
    send_button = button_create("send", &ExchangePage::send);

    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(payload_label);
    row->addWidget(payload_edit, 1);
    row->addWidget(kind_box);
    row->addWidget(most_label);
    row->addWidget(most_box);
    row->addWidget(send_button);
    return widget;
}

QWidget* ExchangePage::history_create()
{
    view = new QTableView;
    view->setObjectName("exchange_table");
    view->setModel(&table);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setTabKeyNavigation(false); // Tab leaves the table
    view->setWordWrap(false);
    view->horizontalHeader()->setSectionResizeMode(ExchangeTable::REQUEST, QHeaderView::Stretch);
    view->horizontalHeader()->setSectionResizeMode(ExchangeTable::REPLY, QHeaderView::Stretch);
    view->setColumnWidth(ExchangeTable::TIME, 110);
    view->setColumnWidth(ExchangeTable::WAIT, 90);
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 6);
    details = new QPlainTextEdit;
    details->setObjectName("exchange_details");
    details->setReadOnly(true);
    details->setTabChangesFocus(true);
    details->setLineWrapMode(QPlainTextEdit::NoWrap);
    details->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(view);
    splitter->addWidget(details);
    splitter->setChildrenCollapsible(false);
    return splitter;
}

QWidget* ExchangePage::buttons_create()
{
    copy_button = button_create("exchange_copy", &ExchangePage::copy);
    again_button = button_create("exchange_again", &ExchangePage::use_again);
    clear_button = button_create("exchange_clear", &ExchangePage::clear);

    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(copy_button);
    row->addWidget(again_button);
    row->addWidget(clear_button);
    row->addStretch();
    return widget;
}

bool ExchangePage::as_text() const
{
    return kind_box->currentIndex() == TEXT;
}

std::optional<QByteArray> ExchangePage::payload_typed()
{
    TypedBytes typed;
    if (as_text()) {
        typed = typed_bytes(payload_edit->text());
    } else {
        try {
            typed.bytes = parse_hex_bytes(payload_edit->text());
        } catch (const TextError& error) {
            typed.fault = error.message;
            typed.column = error.column;
        }
    }
    QString problem;
    if (!typed.fault.isEmpty())
        problem = tr("Payload, character %1: %2.").arg(typed.column + 1).arg(typed.fault);
    else if (typed.bytes.isEmpty())
        problem = tr("There is nothing to send: type the bytes first.");
    else if (typed.bytes.size() > LONGEST)
        problem =
            tr("A payload has at most %1 bytes, not %2.").arg(LONGEST).arg(typed.bytes.size());
    if (problem.isEmpty())
        return typed.bytes;
    notice->say(Notice::Kind::Problem, problem);
    return std::nullopt;
}

void ExchangePage::send()
{
    if (busy())
        return;
    const auto payload = payload_typed();
    if (!payload)
        return;
    const QString hindrance = connection.hindrance();
    if (!hindrance.isEmpty())
        return notice->say(Notice::Kind::Problem, hindrance);
    const auto stack = connection.description(); // can't change while the link is open
    if (!stack)
        return;
    run.start(connection.link(), {*stack, *payload, most_box->value()});
    notice->say(Notice::Kind::Hint, tr("Waiting for the reply ..."));
    record_show();
}

void ExchangePage::abort()
{
    if (!busy())
        return;
    run.abort();
    notice->say(Notice::Kind::Hint, tr("Stopping after the exchange under way ..."));
}

void ExchangePage::run_end(const ExchangeRecord& record)
{
    table.append(record);
    view->selectRow(table.rowCount() - 1);
    view->scrollToBottom();
    const bool good = record.ending == ExchangeEnding::Answered;
    notice->say(good ? Notice::Kind::Good : Notice::Kind::Problem, record.sentence());
    record_show();
    emit idle();
}

void ExchangePage::copy()
{
    QApplication::clipboard()->setText(table.record(view->currentIndex().row()).command());
    notice->say(Notice::Kind::Hint,
                connection.link().state() == LinkWorker::State::Closed
                    ? tr("The command is on the clipboard.")
                    : tr("The command is on the clipboard. Disconnect before it runs: a port has "
                         "one user."));
}

void ExchangePage::use_again()
{
    const int row = view->currentIndex().row();
    if (row < 0)
        return;
    const ExchangeRequest& request = table.record(row).request;
    kind_box->setCurrentIndex(HEX);
    payload_edit->setText(shown(request.payload));
    most_box->setValue(request.most);
    payload_edit->setFocus();
}

void ExchangePage::clear()
{
    table.clear();
    notice->clear();
    record_show();
}

void ExchangePage::record_show()
{
    const int row = view->currentIndex().row();
    details->setPlainText(row < 0 ? QString() : table.record(row).details());
    send_button->setEnabled(!busy());
    copy_button->setEnabled(row >= 0);
    again_button->setEnabled(row >= 0);
    clear_button->setEnabled(table.rowCount() > 0);
}

void ExchangePage::load(const QSettings& ini)
{
    kind_box->setCurrentIndex(EXCHANGE_TEXT.read(ini) ? TEXT : HEX);
    payload_edit->setText(EXCHANGE_PAYLOAD.read(ini));
    most_box->setValue(EXCHANGE_MOST.read(ini));
}

void ExchangePage::store(QSettings& ini) const
{
    EXCHANGE_TEXT.write_if_changed(ini, as_text());
    EXCHANGE_PAYLOAD.write_if_changed(ini, payload_edit->text());
    EXCHANGE_MOST.write_if_changed(ini, most_box->value());
}

void ExchangePage::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void ExchangePage::retranslate()
{
    payload_label->setText(tr("&Payload:"));
    payload_edit->setToolTip(tr("Bytes as 01 02 03, or a text with the escapes \\r \\n \\t \\e \\0 "
                                "\\\\ and \\x41. Enter sends it."));
    kind_box->setItemText(HEX, tr("hexadecimal"));
    kind_box->setItemText(TEXT, tr("text"));
    kind_box->setAccessibleName(tr("how the payload is typed"));
    most_label->setText(tr("Reply, &bytes at most:"));
    most_box->setToolTip(tr("An exchange ends when so many bytes of payload have come, or after "
                            "the time-out."));
    send_button->setText(tr("&Send"));
    send_button->setIcon(theme_icon("document-send", QStyle::SP_ArrowForward));
    view->setAccessibleName(tr("exchanges so far"));
    view->setToolTip(tr("Enter puts a request back into the line above."));
    details->setAccessibleName(tr("the exchange chosen, as payload and on the wire"));
    copy_button->setText(tr("Copy &as command"));
    copy_button->setIcon(theme_icon("edit-copy", QStyle::SP_FileDialogDetailedView));
    copy_button->setToolTip(tr("Copies what does the same with tarnwickctl in a shell."));
    again_button->setText(tr("Use a&gain"));
    again_button->setIcon(theme_icon("edit-redo", QStyle::SP_ArrowUp));
    clear_button->setText(tr("Clear his&tory"));
    clear_button->setIcon(theme_icon("edit-clear", QStyle::SP_TrashIcon));
    table.retranslate();
    record_show();
}
