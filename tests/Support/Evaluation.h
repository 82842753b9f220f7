// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QJsonValue>
#include <QtTest/QTest>

#include <memory>
#include <optional>

namespace kx::test {

/// What a script in a page came to.
struct Evaluation {
    QJsonValue value = QJsonValue::Undefined;
    std::optional<KXError> error;

    /// The value, or the error's text.
    [[nodiscard]] QJsonValue valueOrText() const { return error ? QJsonValue(error->localizedDescription) : value; }
};

/// Evaluates a script in a page or web view and waits for it; nothing, with a warning, when there is no answer.
template <class Page> Evaluation evaluate(Page &page, const QString &script)
{
    const auto answer = std::make_shared<std::optional<Evaluation>>();
    page.evaluateJavaScript(script, [answer](const QJsonValue &value, const std::optional<KXError> &error) {
        *answer = {value, error};
    });
    if (!QTest::qWaitFor([&] { return answer->has_value(); }, 20'000))
        qWarning("no answer to %s", qPrintable(script));
    return answer->value_or(Evaluation());
}

} // namespace kx::test
