#include "workbench/blockbox.h"

#include "stack/typedtext.h"
#include "workbench/cnetwords.h"
#include "workbench/connectionbar.h"
#include "workbench/icons.h"
#include "workbench/rowview.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QVBoxLayout>

namespace {
constexpr int LEAST_ROWS = 5; // of the 13 words with their heading; a small screen has no more
} // namespace

BlockBox::BlockBox(ConnectionBar& connection, QWidget* parent)
    : QGroupBox(parent)
    , connection(connection)
{
    table = new RowView(0);
    table->setObjectName("block");
    table->setModel(&model);
    table->setTabKeyNavigation(false); // Tab leaves the table
    table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                           QAbstractItemView::AnyKeyPressed);
    table->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont)); // of the cell being typed
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 3);
    table->setMinimumHeight(LEAST_ROWS * table->verticalHeader()->defaultSectionSize());

    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(place_create());
    layout->addWidget(table, 1);
    layout->addWidget(buttons_create());
    connect(&model, &BlockModel::edited_changed, this, &BlockBox::buttons_set);
    connect(&run, &CnetBlockRun::ended, this, &BlockBox::run_end);
    retranslate();
}

QPushButton* BlockBox::button_create(const char* name, void (BlockBox::*slot)())
{
    auto* const button = new QPushButton;
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

QWidget* BlockBox::place_create()
{
    address_label = new QLabel;
    address_edit = new QLineEdit;
    address_edit->setObjectName("block_address");
    address_label->setBuddy(address_edit);
    connect(address_edit, &QLineEdit::returnPressed, this, &BlockBox::read);
    channel_label = new QLabel;
    channel_box = new QSpinBox;
    channel_box->setObjectName("block_channel");
    channel_box->setRange(CNET_FIRST_CHANNEL, CNET_FIRST_CHANNEL + CNET_CHANNELS - 1);
    channel_label->setBuddy(channel_box);
    rate_label = new QLabel;
    rate_box = new QComboBox;
    rate_box->setObjectName("block_rate");
    for (int rate = 0; rate < CNET_RATES; ++rate)
        rate_box->addItem(baud_text(rate));
    rate_label->setBuddy(rate_box);

    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(address_label);
    row->addWidget(address_edit, 1);
    row->addWidget(channel_label);
    row->addWidget(channel_box);
    row->addWidget(rate_label);
    row->addWidget(rate_box);
    return widget;
}

QWidget* BlockBox::buttons_create()
{
    read_button = button_create("block_read", &BlockBox::read);
    write_button = button_create("block_write", &BlockBox::write);
    revert_button = button_create("block_revert", &BlockBox::revert);
    extra_label = new QLabel;
    extra_label->setObjectName("block_extra");
    extra_label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(read_button);
    row->addWidget(write_button);
    row->addWidget(revert_button);
    row->addWidget(extra_label, 1);
    return widget;
}

void BlockBox::place_set(const CnetPlace& place)
{
    address_edit->setText(shown(place.address));
    channel_box->setValue(place.channel);
    rate_box->setCurrentIndex(place.rate);
}

std::optional<CnetPlace> BlockBox::place_typed()
{
    CnetPlace place;
    place.channel = channel_box->value();
    place.rate = rate_box->currentIndex();
    QString problem = tr("An address has 4 hexadecimal digits, or 16.");
    try {
        place.address = parse_hex_bytes(address_edit->text());
    } catch (const TextError& error) {
        problem = tr("Address, character %1: %2.").arg(error.column + 1).arg(error.message);
    }
    if (place.address.size() == CNET_SHORT_ADDRESS || place.address.size() == CNET_LONG_ADDRESS)
        return place;
    emit said(Notice::Kind::Problem, problem);
    return std::nullopt;
}

void BlockBox::read()
{
    const auto place = place_typed();
    if (!place)
        return;
    const bool other = !(*place == held);
    if (other && model.changed_words() > 0)
        return emit said(Notice::Kind::Problem,
                         tr("Changed words of %1 aren't written yet: write or revert them first.")
                             .arg(shown(held.address)));
    start(*place, {});
}

// To the device that the words were read from, whatever the fields above say since.
void BlockBox::write()
{
    if (!model.problem().isEmpty())
        return emit said(Notice::Kind::Problem, model.problem());
    start(held, model.block());
}

void BlockBox::revert()
{
    model.changes_drop();
}

void BlockBox::start(const CnetPlace& place, const QByteArray& block)
{
    if (run.running() || link_taken)
        return;
    const QString hindrance = connection.hindrance();
    if (!hindrance.isEmpty())
        return emit said(Notice::Kind::Problem, hindrance);
    asked = place;
    writing = !block.isEmpty();
    run.start(connection.link(), place, block);
    const QString sentence = writing ? tr("Writing the configuration of %1 ...")
                                     : tr("Reading the configuration of %1 ...");
    emit said(Notice::Kind::Hint, sentence.arg(shown(place.address)));
    buttons_set();
    emit begun();
}

void BlockBox::run_end(const BlockReport& report)
{
    const QString address = shown(asked.address);
    QString sentence = CnetWords::block_end(report, address, writing);
    bool good = report.good();
    if (good) {
        if (!(asked == held))
            model.clear();
        held = asked;
        extra = report.extra;
        model.held_set(report.block);
        if (writing && model.changed_words() > 0) {
            good = false;
            sentence = tr("The device %1 holds something else than was written: see the words in "
                          "bold.")
                           .arg(address);
        }
        retranslate();
    }
    emit said(good ? Notice::Kind::Good : Notice::Kind::Problem, sentence);
    buttons_set();
    emit ended();
}

void BlockBox::link_taken_set(bool taken)
{
    link_taken = taken;
    buttons_set();
}

void BlockBox::buttons_set()
{
    const bool idle = !run.running() && !link_taken;
    const bool changed = model.changed_words() > 0;
    read_button->setEnabled(idle);
    // Not only after a change: a click on it ends the typing of a word too.
    write_button->setEnabled(idle && !model.is_empty());
    revert_button->setEnabled(!run.running() && changed);
    table->setEnabled(!run.running());
}

void BlockBox::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QGroupBox::changeEvent(event);
}

void BlockBox::retranslate()
{
    // The blanks are for the style, which makes less room for a title than it takes.
    setTitle(model.is_empty() ? tr("Configuration")
                              : tr("Configuration of %1 on channel %2, %3")
                                        .arg(shown(held.address))
                                        .arg(held.channel)
                                        .arg(baud_text(held.rate)) +
                                    QString(2, QChar::Nbsp));
    address_label->setText(tr("Address:"));
    address_edit->setToolTip(tr("4 hexadecimal digits, or 16 for devices with long addresses. A "
                                "device chosen fills in the first bytes of its answer."));
    channel_label->setText(tr("Channel:"));
    rate_label->setText(tr("Rate:"));
    table->setAccessibleName(tr("words of the configuration"));
    extra_label->setText(model.is_empty() ? QString() : tr("then: %1").arg(shown(extra)));
    extra_label->setToolTip(tr("The bytes that follow the words."));
    read_button->setText(tr("Read &block"));
    read_button->setIcon(theme_icon("view-refresh", QStyle::SP_BrowserReload));
    write_button->setText(tr("Write"));
    write_button->setIcon(theme_icon("document-save", QStyle::SP_DialogSaveButton));
    revert_button->setText(tr("Re&vert"));
    revert_button->setIcon(theme_icon("edit-undo", QStyle::SP_DialogResetButton));
    model.retranslate();
    buttons_set();
}
