// SPDX-License-Identifier: MIT
#pragma once

#include "Support/HttpServer.h"

#include <KXFoundation/Platform/Web/QtWebEngine/SchemeRegistration.h>
#include <KXFoundation/Platform/Web/URLSchemeTask.h>

#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineCore/QWebEngineProfile>
#include <QtWidgets/QApplication>

#include <functional>
#include <memory>

namespace kx::test {

using Task = kx::URLSchemeTaskPtr;

/// Keeps the tasks that it gets, and may do something with each.
struct RecordingSchemeHandler final : URLSchemeHandler {
    void startURLSchemeTask(const Task &task) override;
    void stopURLSchemeTask(const Task &task) override;

    std::function<void(const Task &)> start;
    QList<Task> started, stopped;
    bool onMainThread = true;
    bool stoppedFlag = true; ///< Every stopped task said so of itself.
};

/// A whole answer at once.
void answer(const Task &task, const QByteArray &mimeType, const QByteArray &body);
[[nodiscard]] QByteArray png();
/// What SchemePages::request() asks for, by the path: "/image", "/script", "/style", "/frame" or any page.
void answerByPath(const Task &task);

/// Base of tests with real pages in the real engine, where a recording handler serves the schemes "early" and "late",
/// of which only the first was known before the application object was made.
class SchemePages : public QObject {
protected:
    /// Starts the engine, which complains about the missing OpenGL of the offscreen platform.
    static void startEngine() { QWebEngineProfile::defaultProfile(); }
    void makePage();
    void destroyPage();

    QVariant evaluate(const QString &script);
    bool load(const QUrl &url);
    /// Loads a page of "http", "file", "file+remote" (a file page with remote access) or a scheme of the handler.
    bool loadPageOf(const QString &origin);
    /// Has the page ask for something, with an element ("image", "script", "style", "frame"), "xhr" or "fetch". What
    /// comes of it stands in `window.result`: "loaded", "error" or "empty".
    void request(const QString &kind, const QString &url);
    void waitForResult(const QString &result)
    {
        QTRY_COMPARE(evaluate(QStringLiteral("window.result")).toString(), result);
    }

    std::unique_ptr<RecordingSchemeHandler> m_handler;
    std::unique_ptr<QWebEngineProfile> m_profile;
    std::unique_ptr<QWebEnginePage> m_page;
    std::unique_ptr<HttpServer> m_server;
    QTemporaryDir m_directory;
};

/// The main function of such a test.
template <class Test> int runWithSchemes(int argc, char **argv)
{
    registerSchemes({QStringLiteral("early"), QStringLiteral("shared")});
    QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace kx::test
