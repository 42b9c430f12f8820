// The connection that the pages work on: its link, its frame, and whether it is open.
#pragma once

#include "workbench/linkchoice.h"
#include "workbench/linkrecorder.h"
#include "workbench/linkworker.h"

#include <QWidget>

class FrameBoxes;
class Notice;
class QCheckBox;
class QLabel;
class QLineEdit;
class QLinkCfgDlg;
class QPushButton;
class QSettings;
class QSpinBox;

class ConnectionBar : public QWidget
{
    Q_OBJECT

public:
    // The link dialog keeps its settings in `ini_path`. `feed` outlives the bar.
    ConnectionBar(LogFeed& feed, const QString& ini_path, QWidget* parent);

    LinkWorker& link() { return worker; }
    LinkRecorder& link_recorder() { return recorder; }
    // What the texts mean; nothing, and a sentence in the bar, when they have a mistake.
    std::optional<StackDescription> description();
    // Asks by the link dialog; nothing when it is cancelled, or after a sentence in the bar.
    std::optional<LinkChoice> link_ask();
    // Why no work can begin on the link now, in a sentence; empty when it can.
    QString hindrance() const;

    void load(const QSettings& ini);
    void store(QSettings& ini) const;

signals:
    // A text or the time-out, without a mistake.
    void description_changed();

protected:
    void changeEvent(QEvent* event) override;

private:
    QLineEdit* edit_create(const char* name, const QString& text);
    QWidget* texts_create();
    QWidget* state_create();
    void toggle();
    std::optional<LinkChoice> link_ask(QLinkCfgDlg& dialog);
    void link_choose();
    void frame_edit();
    QString options_text() const; // of tarnwickctl
    void copy() const;
    void record_toggle();
    void record_show();
    void texts_check();
    void state_show();
    void retranslate();

    LogFeed& feed;
    const QString ini_path;
    LinkRecorder recorder;
    RecordedLink recorded; // outlives the link
    LinkWorker worker;
    QLabel* link_label;
    QLineEdit* link_text_edit;
    QPushButton* link_button;
    QLabel* frame_label;
    QLineEdit* frame_text_edit;
    QPushButton* frame_button;
    QPushButton* copy_button;
    QLabel* timeout_label;
    QSpinBox* timeout_box;
    FrameBoxes* boxes;
    QPushButton* connect_button;
    QLabel* state_label;
    QPushButton* record_button;
    QCheckBox* log_box;
    Notice* notice;
    Notice* record_notice; // stays when the link opens or closes
};
