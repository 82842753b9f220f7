// SPDX-License-Identifier: MIT
#include "GalleryWindow.h"
#include "Pictures.h"
#include "common/Icons.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QProcess>
#include <QtGui/QFont>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

// A player is dark.
QPalette darkPalette()
{
    QPalette palette(QColor(44, 46, 52));
    palette.setColor(QPalette::Base, QColor(24, 26, 30));
    palette.setColor(QPalette::BrightText, QColor(236, 236, 236)); // behind shadows
    return palette;
}

// The device pixel ratio of a process is settled before its start, so each ratio has one of its own.
bool takePicturesAt(const QString &ratio, const QString &folder)
{
    QProcess gallery;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    environment.insert(u"QT_SCALE_FACTOR"_s, ratio);
    gallery.setProcessEnvironment(environment);
    gallery.setProcessChannelMode(QProcess::ForwardedChannels);
    gallery.start(QCoreApplication::applicationFilePath(), {u"--pictures"_s, folder});
    return gallery.waitForFinished(-1) && gallery.exitStatus() == QProcess::NormalExit && gallery.exitCode() == 0;
}

bool takePictures(const QDir &folder)
{
    QList<QDir> folders;
    bool allGood = true;
    for (const QString &ratio : {u"1"_s, u"2"_s}) {
        folders.append(QDir(folder.filePath(ratio + u'x')));
        allGood &= takePicturesAt(ratio, folders.last().path());
    }
    return allGood && Pictures::correspond(folders.first(), folders.last(), 2);
}

} // namespace

int main(int argc, char *argv[])
{
    // Before the application object: which platform to use.
    if (std::any_of(argv + 1, argv + argc, [](std::string_view arg) { return arg == "--headless"; }))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setApplicationName(u"KXFoundation gallery"_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Every control in every state."_s);
    parser.addHelpOption();
    const QCommandLineOption headless(u"headless"_s,
        u"Show nothing; save a picture of each state at device pixel ratios 1 and 2, exit non-zero if one is wrong."_s);
    const QCommandLineOption output(
        u"output"_s, u"Where those go (headless); build/gallery by default."_s, u"folder"_s, u"build/gallery"_s);
    const QCommandLineOption pictures(
        u"pictures"_s, u"Save the pictures at the ratio of this process into <folder>, and quit."_s, u"folder"_s);
    parser.addOptions({headless, output, pictures});
    parser.process(application);
    if (parser.isSet(headless)) {
        const bool allGood = takePictures(QDir(parser.value(output)));
        std::printf("%s\n", allGood ? "every picture is as it should be" : "a picture is wrong");
        return allGood ? 0 : 1;
    }

    QApplication::setPalette(darkPalette());
    QFont::insertSubstitution(u"PingFangSC-Regular"_s, QFontInfo(QApplication::font()).family());
    icons::registerIndicators();
    GalleryWindow window;
    GalleryWindow::showAndSettle(window);
    if (parser.isSet(pictures)) {
        const QDir folder(parser.value(pictures));
        return folder.mkpath(u"."_s) && Pictures(folder).takeAll(window) ? 0 : 1;
    }
    for (const State &state : window.states()) {
        if (state.enter && !state.picture->isWindow())
            state.enter();
    }
    return QApplication::exec();
}
