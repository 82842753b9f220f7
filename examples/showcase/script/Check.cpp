// SPDX-License-Identifier: MIT
#include "Check.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int patienceInMilliseconds = 60'000;

} // namespace

Check::Check(QWidget &window, const QDir &pictures)
    : m_window(window)
    , m_pictures(pictures)
{
    m_pictures.mkpath(u"."_s);
    for (const QString &old : m_pictures.entryList({u"*.png"_s}, QDir::Files))
        m_pictures.remove(old);
}

void Check::that(const QString &what, const std::function<QString()> &happened, const QString &expected)
{
    QString seen;
    const bool passed = waitUntil([&] { return (seen = happened()) == expected; });
    report(passed, what + u": "_s + seen + (passed ? QString() : u", expected "_s + expected));
}

void Check::that(const QString &what, const std::function<bool()> &holds)
{
    report(waitUntil(holds), what);
}

void Check::picture(const QString &name)
{
    const QString file = m_pictures.filePath(u"%1-%2.png"_s.arg(++m_pictureCount, 2, 10, QChar(u'0')).arg(name));
    report(m_window.grab().save(file), u"picture "_s + file);
}

bool Check::waitUntil(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(patienceInMilliseconds);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QEventLoop loop;
        QTimer::singleShot(10, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

void Check::report(bool passed, const QString &text)
{
    std::printf("%s  %s\n", passed ? "ok  " : "FAIL", qPrintable(text));
    std::fflush(stdout);
    m_failures += passed ? 0 : 1;
}
