// Widgets on Qt's offscreen platform, in a directory of their own.
#pragma once

#include "fuzzing.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QTemporaryDir>

// Message boxes are answered as soon as they show.
class FuzzApplication : public QApplication
{
public:
    static void start()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "fuzz";
        static char* argv[] = {name, nullptr};
        static FuzzApplication application(argc, argv);
        require(QDir::setCurrent(application.folder.path()));
        qputenv("XDG_RUNTIME_DIR", application.folder.path().toLocal8Bit());
    }

    bool notify(QObject* receiver, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QDialog*>(receiver))
            QMetaObject::invokeMethod(receiver, "reject", Qt::QueuedConnection);
        return QApplication::notify(receiver, event);
    }

private:
    using QApplication::QApplication;
    QTemporaryDir folder;
};
