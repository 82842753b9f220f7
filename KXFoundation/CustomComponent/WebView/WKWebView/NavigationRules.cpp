// SPDX-License-Identifier: MIT
#include "NavigationRules.h"

#include <algorithm>

namespace kx {

namespace {

bool isAllowedHost(const NavigationRules &rules, const QString &host)
{
    if (host.isEmpty())
        return false;
    const auto names = [&host](const QString &entry) {
        const qsizetype colon = entry.indexOf(u':');
        return (colon < 0 ? QStringView(entry) : QStringView(entry).first(colon)) == host;
    };
    return std::any_of(rules.whiteHostList.cbegin(), rules.whiteHostList.cend(), names) || rules.ownWebHost == host;
}

} // namespace

NavigationPolicy decideNavigation(const NavigationRules &rules, const NavigationAction &action)
{
    if (rules.name != u"root")
        return rules.allowNavigation ? NavigationPolicy::Allow : NavigationPolicy::Cancel;
    const bool takesOverMainFrame =
        !action.sourceFrame.mainFrame && action.targetFrame && action.targetFrame->mainFrame;
    if (!takesOverMainFrame)
        return NavigationPolicy::Allow;
    const QString scheme = action.url.scheme();
    if (scheme.startsWith(u"file"))
        return NavigationPolicy::Allow;
    // Deliberate: the scheme's beginning counts, here and above, so that "https" needs no rule of its own.
    if (scheme.startsWith(u"http") && isAllowedHost(rules, hostOf(action.url)))
        return NavigationPolicy::Allow;
    return NavigationPolicy::Cancel;
}

QString hostOf(const QUrl &url)
{
    const QString host = url.host(QUrl::FullyEncoded);
    return host.isEmpty() ? QString() : host;
}

} // namespace kx
