// SPDX-License-Identifier: MIT
#pragma once

#include "Support/Evaluation.h"
#include "Support/HttpServer.h"
#include "Support/SharedLog.h"

#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <memory>

namespace kx::test {

/// A host on the real engine in a shown window, with pages to load and a log of its own.
class HostedPage {
public:
    explicit HostedPage(const std::shared_ptr<WebViewConfiguration> &configuration = {})
    {
        window->resize(320, 240);
        host = configuration ? new KXWKWebView(configuration, window.get())
                             : new KXWKWebView(QRectF(0, 0, 320, 240), window.get());
        host->setFrame(QRectF(0, 0, 320, 240));
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        QVERIFY(QDir(directory.path()).mkpath(QStringLiteral("app/pages")));
    }

    /// Writes a page on the disk and returns its URL.
    QUrl file(const QByteArray &html, const QString &name = QStringLiteral("index.html"))
    {
        QFile file(directory.filePath(QString(QStringLiteral("app/pages/") + name)));
        if (!file.open(QIODevice::WriteOnly) || file.write(html) != html.size())
            qFatal("no page on the disk");
        return QUrl::fromLocalFile(file.fileName());
    }

    /// Loads a page and waits for its end.
    void load(const QUrl &url)
    {
        const QSignalSpy completed(host, &KXWKWebView::navigationCompleted);
        host->updateURL(url);
        QTRY_VERIFY(!completed.isEmpty() && !host->wkWebView()->isLoading());
    }
    void show(const QByteArray &html) { load(file("<!DOCTYPE html><meta charset=utf-8>" + html)); }

    /// The value of an expression in the page, or its error's text.
    QJsonValue value(const QString &expression) { return value(*host->wkWebView(), expression); }
    static QJsonValue value(WebView &view, const QString &expression)
    {
        return evaluate(view, expression).valueOrText();
    }

    /// Clicks in the window, as the window system does.
    void click(const QPoint &point)
    {
        QTest::mouseMove(window->windowHandle(), point);
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, point);
    }

    SharedLog log;
    QTemporaryDir directory;
    HttpServer server;
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    QPointer<KXWKWebView> host;
};

/// The first page starts the engine, which says that the offscreen platform has no OpenGL.
inline void startEngine()
{
    HostedPage().show("started");
}

} // namespace kx::test
