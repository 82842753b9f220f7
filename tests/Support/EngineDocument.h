// SPDX-License-Identifier: MIT
#pragma once

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWebEngineCore/QWebEnginePage>

#include <memory>
#include <optional>

namespace kx::test {

/// The value of a script in the page's own world; invalid, with a warning, when the engine does not answer.
inline QVariant evaluate(QWebEnginePage &page, const QString &script)
{
    const auto answer = std::make_shared<std::optional<QVariant>>();
    page.runJavaScript(script, [answer](const QVariant &value) { *answer = value; });
    if (!QTest::qWaitFor([&] { return answer->has_value(); }, 20'000))
        qWarning("no answer to %s", qPrintable(script));
    return answer->value_or(QVariant());
}

/// Loads and waits for the end; false when it fails or does not come.
inline bool load(QWebEnginePage &page, const QUrl &url)
{
    const QSignalSpy finished(&page, &QWebEnginePage::loadFinished);
    page.load(url);
    return QTest::qWaitFor([&] { return !finished.isEmpty(); }, 20'000) && finished.constFirst().constFirst().toBool();
}

} // namespace kx::test
