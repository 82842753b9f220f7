// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>

#include <KXFoundation/Platform/Core/Format.h>
#include <KXFoundation/Platform/Core/Strings.h>

#include <QtCore/QCoreApplication>

#include <algorithm>
#include <limits>
#include <mutex>

namespace {

// The number that the leading digits spell, at most the largest one; 0 without digits.
qint32 leadingInteger(QStringView text)
{
    constexpr qint64 largest = std::numeric_limits<qint32>::max();
    qint64 number = 0;
    for (const QChar unit : text) {
        if (unit < u'0' || unit > u'9')
            break;
        number = std::min(number * 10 + (unit.unicode() - u'0'), largest);
    }
    return qint32(number);
}

struct AppVersion {
    std::mutex mutex;
    QString version; // null: not known yet
    QString buildNumber;
};

AppVersion &appVersions()
{
    static auto &versions = *new AppVersion; // for threads that outlive main() too
    return versions;
}

} // namespace

int KXUtil::versionCompare(const QString &version, const QString &with)
{
    const QList<QStringView> left = QStringView(version).split(u'.');
    const QList<QStringView> right = QStringView(with).split(u'.');
    if (left.size() == right.size())
        return kx::compareNumeric(version, with);
    const qsizetype common = std::min(left.size(), right.size()) - 1;
    for (qsizetype i = 0; i < common; ++i) {
        const qint32 a = leadingInteger(left[i]);
        const qint32 b = leadingInteger(right[i]);
        if (a != b)
            return a < b ? -1 : 1;
    }
    return left.size() > right.size() ? 1 : -1;
}

QString KXUtil::appVersion()
{
    const std::scoped_lock lock(appVersions().mutex);
    QString &version = appVersions().version;
    if (version.isNull() && !QCoreApplication::applicationVersion().isEmpty())
        version = QCoreApplication::applicationVersion();
    return version;
}

QString KXUtil::appBuildNumber()
{
    const std::scoped_lock lock(appVersions().mutex);
    return appVersions().buildNumber;
}

QString KXUtil::appFullVersion()
{
    return kx::format("%@.%@", appVersion(), appBuildNumber());
}

void KXUtil::setAppVersion(const QString &version)
{
    const std::scoped_lock lock(appVersions().mutex);
    appVersions().version = version;
}

void KXUtil::setAppBuildNumber(const QString &buildNumber)
{
    const std::scoped_lock lock(appVersions().mutex);
    appVersions().buildNumber = buildNumber;
}
