// SPDX-License-Identifier: MIT
#include "SelfCheck.h"
#include "ShowcaseWindow.h"
#include "SlowPage.h"

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/Logger/KXLogger.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>
#include <string_view>

int main(int argc, char *argv[])
{
    // Before the application object: which platform to use, and which URL schemes the engine must know.
    const auto headlessGiven =
        std::any_of(argv + 1, argv + argc, [](std::string_view arg) { return arg == "--headless"; });
    if (headlessGiven)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    SlowPage::install();

    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("KXFoundation showcase"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A host that shows the library at work."));
    parser.addHelpOption();
    const QCommandLineOption headless(QStringLiteral("headless"),
        QStringLiteral("Show nothing; drive the page, print each step, exit non-zero if one failed."));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
        QStringLiteral("Save a picture of the window to <file> (headless)."), QStringLiteral("file"));
    const QCommandLineOption logs(QStringLiteral("logs"),
        QStringLiteral("Log below <folder> instead of the temporary one."), QStringLiteral("folder"));
    parser.addOptions({headless, screenshot, logs});
    parser.process(application);

    // A page may hand over an action URL whose value never decodes: give up after a few passes.
    KXActionItem::setDecodePassLimit(8);

    const QTemporaryDir temporary;
    const QString logFolder = parser.isSet(logs) ? parser.value(logs)
        : parser.isSet(headless)                 ? temporary.filePath(QStringLiteral("logs"))
                                                 : QDir::temp().filePath(QStringLiteral("kxfoundation-showcase"));
    KXLogger::sharedLogger().setLogBaseDirectory(logFolder);

    ShowcaseWindow window(QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("pages")));
    window.show();
    if (parser.isSet(headless)) {
        SelfCheck check(window, logFolder, parser.value(screenshot));
        const bool passed = check.run();
        std::printf("%s\n", passed ? "every step passed" : "a step failed");
        return passed ? 0 : 1;
    }
    std::printf("logs: %s\n", qPrintable(logFolder));
    window.openClips();
    const int result = QApplication::exec();
    KXLogger::sharedLogger().save();
    return result;
}
