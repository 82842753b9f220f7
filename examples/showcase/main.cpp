// SPDX-License-Identifier: MIT
#include "Look.h"
#include "clips/ClipFolder.h"
#include "page/ClipPage.h"
#include "page/PageServer.h"
#include "script/Script.h"
#include "window/PlayerActions.h"
#include "window/PlayerWindow.h"

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QLoggingCategory>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

// What the player shares with the daemon lies in one directory: the logs, and here the clips as well.
const QString group = u"example.kxfoundation"_s;

QString defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u'/' + group + u"/Clips"_s;
}

} // namespace

int main(int argc, char *argv[])
{
    // Before the application object: the platform, the player's engine, and the URL schemes that pages may use.
    if (std::any_of(argv + 1, argv + argc, [](std::string_view arg) { return arg == "--headless"; }))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("QT_MEDIA_BACKEND"))
        qputenv("QT_MEDIA_BACKEND", "ffmpeg"); // Qt 6.4 prefers GStreamer, and crashes where its plugins are missing
    QLoggingCategory::setFilterRules(u"default.debug=false"_s); // the engine's own remarks about codecs
    PageServer::registerScheme();

    const QApplication application(argc, argv);
    QApplication::setApplicationName(u"KXFoundation showcase"_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"A small player."_s);
    parser.addHelpOption();
    parser.addPositionalArgument(
        u"folder"_s, u"Where the videos are; one that is empty is given some."_s, u"[folder]"_s);
    const QCommandLineOption script(
        u"script"_s, u"Play a script of input events, print each check, exit non-zero if one failed."_s);
    const QCommandLineOption headless(u"headless"_s, u"The same without showing anything."_s);
    const QCommandLineOption pictures(u"pictures"_s,
        u"Where the script saves its pictures; build/showcase by default."_s, u"folder"_s, u"build/showcase"_s);
    parser.addOptions({script, headless, pictures});
    parser.process(application);
    const bool isScripted = parser.isSet(script) || parser.isSet(headless);

    // The script leaves nothing behind in the user's directories.
    const QTemporaryDir temporary;
    if (isScripted)
        qputenv("XDG_DATA_HOME", QFile::encodeName(temporary.path()));
    KXActionItem::setDecodePassLimit(8); // the URLs come from pages
    KXUtil::setApplicationGroup(group);
    KXLogger::sharedLogger().setLogBaseDirectory(KXUtil::mainLogDirPath());
    look::apply();

    ClipFolder folder(parser.positionalArguments().value(0, defaultFolder()));
    const PageServer server(folder);
    PlayerWindow window(folder);
    PlayerActions::registerFor(window);
    window.page().open();
    folder.open();
    window.show();
    const int result =
        isScripted ? (Script(window, folder, QDir(parser.value(pictures))).play() ? 0 : 1) : QApplication::exec();
    KXLogger::sharedLogger().save();
    return result;
}
