// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

/// Lets a test fail on every warning, but for those by which the platform for tests without a display says that it
/// cannot raise windows, grab the keyboard or limit sizes.
inline void failOnWindowWarnings()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support )")));
}
