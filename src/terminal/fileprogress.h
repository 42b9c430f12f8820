// The progress of a file being sent, as the status bar shows it.
#pragma once

#include <QProgressBar>

// Wants room for the longest text of FileSend. With less it shows the percentage: no text is cut.
class FileProgress : public QProgressBar
{
    Q_OBJECT
public:
    using QProgressBar::QProgressBar;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QString text() const override;

private:
    int width_for(const QString& text) const;
};
