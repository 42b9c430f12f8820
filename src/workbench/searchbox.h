// What a search is to look for, to be typed.
#pragma once

#include "workbench/searchrun.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QSettings;
class QSpinBox;

class SearchBox : public QWidget
{
    Q_OBJECT

public:
    explicit SearchBox(QWidget* parent = nullptr);

    // Otherwise it is for Dorv modules.
    bool for_cnet() const;
    // Of a search for cnet devices; nothing, and a sentence, when a text has a mistake.
    std::optional<CnetSearchSettings> settings(QString& problem) const;
    // How long to listen for Dorv modules.
    int duration_ms() const;

    void load(const QSettings& ini);
    void store(QSettings& ini) const;

signals:
    void changed();

protected:
    void changeEvent(QEvent* event) override;

private:
    void cnet_create();
    void kind_show();
    void retranslate();

    QLabel* kind_label;
    QComboBox* kind_box;
    QWidget* cnet_part;
    QLabel* channels_label;
    QLineEdit* channels_edit;
    QCheckBox* rate_boxes[CNET_RATES];
    QLabel* target_label;
    QLineEdit* target_edit;
    QCheckBox* long_box;
    QWidget* dorv_part;
    QLabel* duration_label;
    QSpinBox* duration_box;
};
