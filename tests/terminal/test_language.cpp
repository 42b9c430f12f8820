#include "windowtest.h"

#include <QDialogButtonBox>
#include <QLibraryInfo>
#include <QProcess>
#include <QTranslator>
#include <map>

namespace {

// By "context: source text": what follows the text in its message.
std::map<QString, QString> catalogue_read(const QString& path)
{
    std::map<QString, QString> messages;
    for (const QString& context : QString::fromUtf8(file_content(path)).split("<name>").mid(1))
        for (const QString& message : context.split("<source>").mid(1))
            messages[context.section('<', 0, 0) + ": " + message.section('<', 0, 0)] =
                message.section("</source>", 1);
    return messages;
}

} // namespace

TEST_F(WindowTest, CataloguesKnowEveryText)
{
    // As Qt's own collector sees the texts that the sources give to tr() and translate().
    QStringList arguments = {"-silent", "-I", SOURCE_FOLDER, "-extensions", "h,cpp,ui"};
    for (const char* folder :
         {"terminal", "linkcfg", "checksum", "serialport", "links", "framers", "tools"})
        arguments += QString("%1/%2").arg(SOURCE_FOLDER, folder);
    ASSERT_EQ(QProcess::execute(LUPDATE, arguments + QStringList({"-ts", "collected.ts"})), 0);
    const auto collected = catalogue_read("collected.ts");
    EXPECT_GT(collected.size(), 100u);
    const QString catalogues = QString(SOURCE_FOLDER) + "/resources/language/tarnwick_";
    const auto english = catalogue_read(catalogues + "en_US.ts");
    const auto chinese = catalogue_read(catalogues + "zh_CN.ts");
    const QStringList chinese_contexts = {"MainWindow",  "QSerialCfgWidget", "HashSelectDialog",
                                          "QLinkCfgDlg", "QLinkSerial",      "QTcpipCfgWidget"};
    for (const auto& [collected_text, rest] : collected) {
        // Listed by the framer that says it, though tr() takes it from their base.
        QString text = collected_text;
        text.replace("QFramer: cnet", "QFramerCnet: cnet").replace("QFramer: ", "QFramerRwlt: ");
        SCOPED_TRACE(text.toStdString());
        ASSERT_EQ(english.count(text), 1u);
        EXPECT_TRUE(english.at(text).contains("<translation type=\"unfinished\"></translation>"));
        ASSERT_EQ(chinese.count(text),
                  chinese_contexts.contains(text.section(':', 0, 0)) ? 1u : 0u);
        const QString rest_in_chinese = chinese.count(text) ? chinese.at(text) : QString();
        EXPECT_EQ(rest_in_chinese.contains("unfinished"), // stays in English, and says why
                  rest_in_chinese.contains("<translatorcomment>"));
    }
}

TEST_F(WindowTest, SpeaksChineseUnlessSetOtherwise)
{
    QFile::remove(INI);
    window_start();
    EXPECT_EQ(label(SEND), "\u53D1\u9001(&s)");
    EXPECT_EQ(find<QCheckBox>(LOOP)->text(), "\u56DE\u53D1\u6A21\u5F0F");
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#else
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#endif
    QTranslator translator;
    if (!translator.load("qtbase_zh_CN", folder))
        GTEST_SKIP() << "Qt's own catalogue isn't installed";
    const QDialogButtonBox buttons(QDialogButtonBox::Cancel);
    EXPECT_EQ(buttons.button(QDialogButtonBox::Cancel)->text(),
              translator.translate("QPlatformTheme", "Cancel"));
}

TEST_F(WindowTest, StartsInEnglishAfterOneMessageWithoutACatalogue)
{
    configure("global/language", "xx_YY");
    window_start();
    EXPECT_EQ(answers.boxes, QStringList("note|loading language tarnwick_xx_YY failed"));
    EXPECT_EQ(label(OPEN), "&open");
}
