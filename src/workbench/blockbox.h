// The configuration block of one cnet device: read, changed, written.
#pragma once

#include "workbench/blockmodel.h"
#include "workbench/cnetblockrun.h"
#include "workbench/notice.h"

#include <QGroupBox>

class ConnectionBar;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTableView;

class BlockBox : public QGroupBox
{
    Q_OBJECT

public:
    explicit BlockBox(ConnectionBar& connection, QWidget* parent = nullptr);

    bool running() const { return run.running(); }
    bool unwritten() const { return model.changed_words() > 0; }
    void abort() { run.abort(); }
    // The device to be read next.
    void place_set(const CnetPlace& place);
    void read();
    // While the link searches, nothing here can use it.
    void link_taken_set(bool taken);

signals:
    void said(Notice::Kind kind, const QString& sentence);
    void begun();
    void ended();

protected:
    void changeEvent(QEvent* event) override;

private:
    QWidget* place_create();
    QWidget* buttons_create();
    QPushButton* button_create(const char* name, void (BlockBox::*slot)());
    std::optional<CnetPlace> place_typed();
    void write();
    void revert();
    void start(const CnetPlace& place, const QByteArray& block);
    void run_end(const BlockReport& report);
    void buttons_set();
    void retranslate();

    ConnectionBar& connection;
    CnetBlockRun run;
    BlockModel model;
    CnetPlace held; // whose block the table has
    CnetPlace asked;
    bool writing = false;
    bool link_taken = false;
    QByteArray extra;
    QLabel* address_label;
    QLineEdit* address_edit;
    QLabel* channel_label;
    QSpinBox* channel_box;
    QLabel* rate_label;
    QComboBox* rate_box;
    QTableView* table;
    QLabel* extra_label;
    QPushButton* read_button;
    QPushButton* write_button;
    QPushButton* revert_button;
};
