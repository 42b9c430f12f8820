#include "workbench/searchbox.h"

#include "stack/numbermask.h"
#include "workbench/settingkeys.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

namespace {
enum Kind { CNET, DORV };
constexpr int LONGEST_S = 3600;
constexpr int LAST_CHANNEL = CNET_FIRST_CHANNEL + CNET_CHANNELS - 1;

QHBoxLayout* row_create(QWidget* part)
{
    auto* const row = new QHBoxLayout(part);
    row->setContentsMargins(0, 0, 0, 0);
    return row;
}

QByteArray parse_target(const Piece& text)
{
    QByteArray target = parse_hex_bytes(text);
    if (!target.isEmpty() && target.size() != CNET_TARGET_SIZE)
        throw text.error(SearchBox::tr("an address to ask for has 4 hexadecimal digits"));
    return target;
}
} // namespace

SearchBox::SearchBox(QWidget* parent)
    : QWidget(parent)
{
    kind_label = new QLabel;
    kind_box = new QComboBox;
    kind_box->setObjectName("search_kind");
    kind_box->addItems({"cnet", "Dorv"});
    kind_label->setBuddy(kind_box);
    connect(kind_box, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &SearchBox::kind_show);
    cnet_create();
    dorv_part = new QWidget;
    duration_label = new QLabel;
    duration_box = new QSpinBox;
    duration_box->setObjectName("search_duration");
    duration_box->setRange(1, LONGEST_S);
    duration_label->setBuddy(duration_box);
    auto* const dorv_row = row_create(dorv_part);
    dorv_row->addWidget(duration_label);
    dorv_row->addWidget(duration_box);
    dorv_row->addStretch();

    auto* const row = row_create(this);
    row->addWidget(kind_label);
    row->addWidget(kind_box);
    row->addWidget(cnet_part, 1);
    row->addWidget(dorv_part, 1);
    retranslate();
    kind_show();
}

void SearchBox::cnet_create()
{
    cnet_part = new QWidget;
    channels_label = new QLabel;
    channels_edit = new QLineEdit(SEARCH_CHANNELS.fallback);
    channels_edit->setObjectName("search_channels");
    channels_label->setBuddy(channels_edit);
    target_label = new QLabel;
    target_edit = new QLineEdit;
    target_edit->setObjectName("search_target");
    target_label->setBuddy(target_edit);
    long_box = new QCheckBox;
    long_box->setObjectName("search_long");
    for (QLineEdit* const edit : {channels_edit, target_edit})
        connect(edit, &QLineEdit::textChanged, this, &SearchBox::changed);

    auto* const row = row_create(cnet_part);
    row->addWidget(channels_label);
    row->addWidget(channels_edit, 2);
    for (int rate = 0; rate < CNET_RATES; ++rate) {
        rate_boxes[rate] = new QCheckBox(baud_text(rate));
        rate_boxes[rate]->setObjectName(QStringLiteral("search_rate%1").arg(rate));
        rate_boxes[rate]->setChecked(true);
        connect(rate_boxes[rate], &QCheckBox::toggled, this, &SearchBox::changed);
        row->addWidget(rate_boxes[rate]);
    }
    row->addWidget(target_label);
    row->addWidget(target_edit, 1);
    row->addWidget(long_box);
}

bool SearchBox::for_cnet() const
{
    return kind_box->currentIndex() == CNET;
}

int SearchBox::duration_ms() const
{
    return duration_box->value() * 1000;
}

std::optional<CnetSearchSettings> SearchBox::settings(QString& problem) const
{
    CnetSearchSettings settings;
    const QLineEdit* edit = channels_edit;
    try {
        settings.channels =
            parse_number_mask(channels_edit->text(), CNET_FIRST_CHANNEL, LAST_CHANNEL);
        edit = target_edit;
        settings.target = parse_target(target_edit->text());
    } catch (const TextError& error) {
        const QString where = edit == channels_edit ? tr("Channels") : tr("Only address");
        problem = tr("%1, character %2: %3.").arg(where).arg(error.column + 1).arg(error.message);
        return std::nullopt;
    }
    for (int rate = 0; rate < CNET_RATES; ++rate)
        settings.rates |= rate_boxes[rate]->isChecked() ? 1u << rate : 0;
    settings.long_answers = long_box->isChecked();
    if (settings.rates != 0)
        return settings;
    problem = tr("There is no rate to search: choose at least one.");
    return std::nullopt;
}

void SearchBox::kind_show()
{
    cnet_part->setVisible(for_cnet());
    dorv_part->setVisible(!for_cnet());
    emit changed();
}

void SearchBox::load(const QSettings& ini)
{
    kind_box->setCurrentIndex(SEARCH_DORV.read(ini) ? DORV : CNET);
    channels_edit->setText(SEARCH_CHANNELS.read(ini));
    const int rates = SEARCH_RATES.read(ini);
    for (int rate = 0; rate < CNET_RATES; ++rate)
        rate_boxes[rate]->setChecked((rates >> rate & 1) != 0);
    target_edit->setText(SEARCH_TARGET.read(ini));
    long_box->setChecked(SEARCH_LONG.read(ini));
    duration_box->setValue(SEARCH_DURATION.read(ini));
}

void SearchBox::store(QSettings& ini) const
{
    int rates = 0;
    for (int rate = 0; rate < CNET_RATES; ++rate)
        rates |= rate_boxes[rate]->isChecked() ? 1 << rate : 0;
    SEARCH_DORV.write_if_changed(ini, !for_cnet());
    SEARCH_CHANNELS.write_if_changed(ini, channels_edit->text());
    SEARCH_RATES.write_if_changed(ini, rates);
    SEARCH_TARGET.write_if_changed(ini, target_edit->text());
    SEARCH_LONG.write_if_changed(ini, long_box->isChecked());
    SEARCH_DURATION.write_if_changed(ini, duration_box->value());
}

void SearchBox::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void SearchBox::retranslate()
{
    kind_label->setText(tr("Devices:"));
    kind_box->setToolTip(tr("cnet devices are asked on each channel and rate; Dorv modules report "
                            "themselves."));
    channels_label->setText(tr("Ch&annels:"));
    channels_edit->setToolTip(tr("From 9 to 30, as in 9-12,30."));
    for (QCheckBox* const box : rate_boxes)
        box->setToolTip(tr("Search at this rate."));
    target_label->setText(tr("Only address:"));
    target_edit->setPlaceholderText(tr("everybody"));
    target_edit->setToolTip(tr("Asks for this address alone, 4 hexadecimal digits."));
    long_box->setText(tr("Lon&g answers"));
    long_box->setToolTip(tr("Asks for the longer answers of devices with long addresses."));
    duration_label->setText(tr("Listen for:"));
    duration_box->setSuffix(tr(" s"));
}
