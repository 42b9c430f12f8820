// The page that sends single payloads and shows what comes back.
#pragma once

#include "workbench/exchangerun.h"
#include "workbench/exchangetable.h"

#include <QWidget>

class ConnectionBar;
class Notice;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QSettings;
class QSpinBox;
class QTableView;

class ExchangePage : public QWidget
{
    Q_OBJECT

public:
    static constexpr int LONGEST = 65536; // bytes of payload, as in tarnwickctl

    // Outlives it.
    explicit ExchangePage(ConnectionBar& connection, QWidget* parent = nullptr);

    // Something would be lost by closing now.
    bool busy() const { return run.running(); }
    // One that has been sent ends with its reply or the time-out.
    void abort();
    const ExchangeTable& history() const { return table; }

    void load(const QSettings& ini);
    void store(QSettings& ini) const;

signals:
    // The last run has ended.
    void idle();

protected:
    void changeEvent(QEvent* event) override;

private:
    QWidget* payload_create();
    QWidget* history_create();
    QWidget* buttons_create();
    QPushButton* button_create(const char* name, void (ExchangePage::*slot)());
    bool as_text() const;
    // Nothing, and a sentence in the page, when it has a mistake.
    std::optional<QByteArray> payload_typed();
    void send();
    void run_end(const ExchangeRecord& record);
    void copy();
    void use_again();
    void clear();
    void record_show();
    void retranslate();

    ConnectionBar& connection;
    ExchangeRun run;
    ExchangeTable table;
    QComboBox* kind_box;
    QLabel* payload_label;
    QLineEdit* payload_edit;
    QLabel* most_label;
    QSpinBox* most_box;
    QPushButton* send_button;
    QTableView* view;
    QPlainTextEdit* details;
    QPushButton* copy_button;
    QPushButton* again_button;
    QPushButton* clear_button;
    Notice* notice;
};
