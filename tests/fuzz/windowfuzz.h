// Widgets on Qt's offscreen platform, in a directory of their own.
#pragma once

#include "fuzzing.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QTemporaryDir>

// The libraries behind the platform keep what they have until the end.
extern "C" const char* __asan_default_options() // once in a program, as this header is
{
    return "detect_leaks=0";
}

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
        static const FuzzApplication application(argc, argv);
        static const QTemporaryDir folder;
        require(QDir::setCurrent(folder.path()));
        qputenv("XDG_RUNTIME_DIR", folder.path().toLocal8Bit());
    }

    bool notify(QObject* receiver, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<QDialog*>(receiver))
            QMetaObject::invokeMethod(receiver, "reject", Qt::QueuedConnection);
        return QApplication::notify(receiver, event);
    }

private:
    using QApplication::QApplication;
};
