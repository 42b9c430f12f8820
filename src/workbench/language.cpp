#include "workbench/language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace {
QString qt_folder()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#else
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#endif
}
} // namespace

QString Language::of_desktop(const QStringList& ui_languages)
{
    for (const QString& language : ui_languages) {
        if (language.startsWith("zh"))
            return CHINESE;
        if (language.startsWith("en"))
            return ENGLISH;
    }
    return ENGLISH;
}

Language::~Language()
{
    for (QTranslator* const translator : {&qt, &dialogs, &workbench})
        QCoreApplication::removeTranslator(translator);
}

void Language::use(const QString& stored)
{
    const QString language =
        stored.isEmpty() ? of_desktop(QLocale::system().uiLanguages()) : stored;
    install(qt, "qtbase_" + language, qt_folder());
    install(dialogs, "tarnwick_" + language, ":/language");
    install(workbench, "workbench_" + language, ":/language");
}

// The source texts are English, so that an absent catalogue is no mistake.
void Language::install(QTranslator& translator, const QString& name, const QString& folder)
{
    QCoreApplication::removeTranslator(&translator);
    if (translator.load(name, folder))
        QCoreApplication::installTranslator(&translator);
}
