// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QEventLoop>
#include <QtCore/QJsonDocument>
#include <QtCore/QStringList>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWebEngineCore/QWebEnginePage>
#include <QtWebEngineCore/QWebEngineProfile>

#include <functional>
#include <optional>

namespace kx::test {

/// A page in the real engine, without a view, that remembers its console errors and alerts.
class ScriptPage : public QWebEnginePage {
    Q_OBJECT

public:
    /// Called with each console line of the lowest level, from the event loop.
    std::function<void(const QString &)> onConsoleLine;
    QStringList errors;
    QStringList alerts;

    explicit ScriptPage(QWebEngineProfile *profile)
        : QWebEnginePage(profile)
    {
    }

    /// Shows a document and waits until it is there.
    [[nodiscard]] bool show(const QString &html)
    {
        QSignalSpy finished(this, &QWebEnginePage::loadFinished);
        setHtml(html);
        return (!finished.isEmpty() || finished.wait(30000)) && finished.first().first().toBool();
    }

    /// Runs a script in the page's own world and waits for its value; an invalid value when the script throws.
    QVariant run(const QString &script)
    {
        std::optional<QVariant> value;
        QEventLoop loop;
        runJavaScript(script, [&](const QVariant &result) {
            value = result;
            loop.quit();
        });
        if (!value)
            loop.exec();
        return *value;
    }
    QVariant run(const char *script) { return run(QString::fromUtf8(script)); }

    /// The JSON text of an expression's value.
    QString json(const QString &expression)
    {
        return run(QStringLiteral("JSON.stringify(%1)").arg(expression)).toString();
    }
    QString json(const char *expression) { return json(QString::fromUtf8(expression)); }

protected:
    void javaScriptConsoleMessage(
        JavaScriptConsoleMessageLevel level, const QString &message, int, const QString &) override
    {
        if (level == ErrorMessageLevel)
            errors.append(message);
        else if (onConsoleLine)
            QMetaObject::invokeMethod(
                this, [this, message] { onConsoleLine(message); }, Qt::QueuedConnection);
    }
    void javaScriptAlert(const QUrl &, const QString &message) override { alerts.append(message); }
};

} // namespace kx::test
