#include "workbench/framerdialog.h"

#include "workbench/frameboxes.h"
#include "workbench/notice.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>

namespace {
// With an example of what follows the colon.
constexpr struct
{
    const char* text;
    const char* meaning;
} FRAMERS[] = {
    {"crc16", QT_TRANSLATE_NOOP("FramerDialog", "payload, CRC")},
    {"rtu:1", QT_TRANSLATE_NOOP("FramerDialog", "address, payload, CRC")},
    {"chan:05", QT_TRANSLATE_NOOP("FramerDialog", "1 to 16 bytes before the payload")},
    {"cnet:1234", QT_TRANSLATE_NOOP("FramerDialog", "to a cnet device of that address")},
    {"rwlt", QT_TRANSLATE_NOOP("FramerDialog", "markers around the payload")},
    {"dorv:radio", QT_TRANSLATE_NOOP("FramerDialog", "send commands of a Dorv module")},
};
} // namespace

FramerDialog::FramerDialog(const LinkDescription& link, const QVector<FramerDescription>& framers,
                           QWidget* parent)
    : QDialog(parent)
    , link(link)
    , good(framers)
    , list(new QListWidget)
    , boxes(new FrameBoxes)
    , notice(new Notice)
    , answer(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel))
{
    setWindowTitle(tr("Frame"));
    list->setObjectName("framers");
    auto* const label =
        new QLabel(tr("&Framers, the one nearest to the link first (F2 changes one):"));
    label->setBuddy(list);
    auto* const row = new QHBoxLayout;
    row->addWidget(list, 1);
    row->addWidget(buttons_create());
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addLayout(row);
    layout->addWidget(boxes);
    layout->addWidget(notice);
    layout->addWidget(answer);
    connect(answer, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(answer, &QDialogButtonBox::rejected, this, &QDialog::reject);
    for (const FramerDescription& framer : framers) {
        if (framer.kind != FramerKind::None)
            add(framers_text({framer}));
    }
    connect(list, &QListWidget::itemChanged, this, &FramerDialog::check);
    check();
    resize(520, 320);
}

QWidget* FramerDialog::buttons_create()
{
    auto* const column = new QWidget;
    auto* const layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const add_button = new QPushButton(tr("&Add"));
    auto* const menu = new QMenu(add_button);
    for (const auto& framer : FRAMERS) {
        const QString text = framer.text;
        menu->addAction(text + "   " + tr(framer.meaning), this, [this, text] {
            add(text);
            check();
        });
    }
    add_button->setMenu(menu);
    layout->addWidget(add_button);
    const auto button = [&](const QString& text, auto slot) {
        auto* const made = new QPushButton(text);
        connect(made, &QPushButton::clicked, this, slot);
        layout->addWidget(made);
    };
    button(tr("&Remove"), [this] { remove(); });
    button(tr("&Up"), [this] { move(-1); });
    button(tr("&Down"), [this] { move(1); });
    layout->addStretch();
    return column;
}

void FramerDialog::add(const QString& text)
{
    auto* const item = new QListWidgetItem(text);
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    list->addItem(item);
    list->setCurrentItem(item);
}

void FramerDialog::remove()
{
    delete list->currentItem();
    check();
}

void FramerDialog::move(int step)
{
    const int row = list->currentRow();
    if (row < 0 || row + step < 0 || row + step >= list->count())
        return;
    list->insertItem(row + step, list->takeItem(row));
    list->setCurrentRow(row + step);
    check();
}

void FramerDialog::check()
{
    QStringList texts;
    for (int row = 0; row < list->count(); ++row)
        texts += list->item(row)->text();
    bool right = false;
    try {
        const auto framers = parse_framers(texts.isEmpty() ? QString("none") : texts.join('+'));
        check_fit(link, framers);
        good = framers;
        boxes->framers_set(good);
        notice->clear();
        right = true;
    } catch (const TextError& error) {
        notice->say(Notice::Kind::Problem, error.message);
    }
    answer->button(QDialogButtonBox::Ok)->setEnabled(right);
}
