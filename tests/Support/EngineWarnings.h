// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QRegularExpression>

namespace kx::test {

/// For QTest::failOnWarning() in tests that start the web engine: every warning but the one that the engine's graphics
/// thread gives, at a time of its own choice, where there is no OpenGL, as on the offscreen platform.
inline QRegularExpression anyWarningButTheEngines()
{
    return QRegularExpression(QStringLiteral("^(?!No suitable graphics backend found)"));
}

} // namespace kx::test
