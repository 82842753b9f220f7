// SPDX-License-Identifier: MIT
#pragma once

#include "../RecordingPageClient.h"
#include "Support/Evaluation.h"
#include "Support/HttpServer.h"

#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <memory>

namespace kx::test {

/// A page of the real engine with one script-message handler, "native", and a server to load from.
class PageFixture {
public:
    PageFixture()
        : configuration(std::make_shared<WebViewConfiguration>())
    {
        configuration->preferences.allowFileAccessFromFileURLs = true;
        configuration->userContentController->addScriptMessageHandler(
            [this](const ScriptMessage &message) { messages.append(message.body); }, QStringLiteral("native"));
    }

    /// Starts the engine and waits until it paints. Where there is no OpenGL, as on the offscreen platform, the engine
    /// complains about that meanwhile, also from a thread of its own: call this before warnings are failures.
    static void startEngine()
    {
        PageFixture fixture;
        fixture.loadHtml("<script>requestAnimationFrame(function () {"
                         "webkit.messageHandlers.native.postMessage('painted'); });</script>");
        QTRY_COMPARE(fixture.messages.size(), 1);
    }

    /// Makes the page; before that the configuration may be changed.
    WebPage &make()
    {
        page = WebEngine::real().makePage(configuration, client);
        page->widget()->resize(320, 240);
        page->widget()->show();
        return *page;
    }

    /// Loads a page from the server; `headers` may hold a Content-Security-Policy.
    void loadHtml(const QByteArray &html, const QList<QPair<QByteArray, QByteArray>> &headers = {})
    {
        HttpResponse response;
        response.body = html;
        response.headers = headers;
        server.serve("/page", response);
        load(server.url("/page"));
    }
    void load(const QUrl &url)
    {
        if (!page)
            make();
        const qsizetype before = client.ends.size();
        page->load(url);
        QTRY_COMPARE(client.ends.size(), before + 1);
    }
    void serve(const QByteArray &path, const QByteArray &html)
    {
        HttpResponse response;
        response.body = html;
        server.serve(path, response);
    }

    Evaluation evaluate(const QString &script) { return test::evaluate(*page, script); }
    [[nodiscard]] QStringList texts() const
    {
        QStringList result;
        for (const QJsonValue &body : messages)
            result.append(body.toString());
        return result;
    }

    std::shared_ptr<WebViewConfiguration> configuration;
    HttpServer server;
    RecordingPageClient client;
    std::unique_ptr<WebPage> page;
    QList<QJsonValue> messages; ///< The bodies that "native" got.
};

} // namespace kx::test
