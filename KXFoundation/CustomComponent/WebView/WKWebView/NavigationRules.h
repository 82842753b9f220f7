// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/NavigationAction.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace kx {

/// What a web view host knows when it is asked about a navigation.
struct NavigationRules {
    QString name; ///< "root" for the application's main page.
    bool allowNavigation = true; ///< The answer of hosts with any other name.
    QStringList whiteHostList; ///< Host names, each with or without ":" and a port, which does not count.
    QString ownWebHost; ///< One more allowed host; empty for none.
};

/// Whether the navigation may happen. The page named "root" goes anywhere by itself, but its sub frames may send it
/// only to files and to allowed web hosts.
[[nodiscard]] NavigationPolicy decideNavigation(const NavigationRules &rules, const NavigationAction &action);

/// The host of a URL as decisions and log lines have it: in lower case, international names in their ASCII form. Null
/// when the URL has none.
[[nodiscard]] QString hostOf(const QUrl &url);

} // namespace kx
