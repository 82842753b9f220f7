// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeRegistration.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLoggingCategory>
#include <QtCore/QSet>
#include <QtWebEngineCore/QWebEngineUrlScheme>

#include <algorithm>

namespace kx {

namespace {

Q_LOGGING_CATEGORY(lcScheme, "kx.web.scheme")

/// RFC 3986, 3.1, in lower case.
bool isScheme(const QByteArray &name)
{
    const auto isLetter = [](char c) { return c >= 'a' && c <= 'z'; };
    return !name.isEmpty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), [&](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
    });
}

/// What the engine serves itself: making one of these a custom scheme would take the web away from every page.
bool isBuiltIn(const QByteArray &name)
{
    static const QSet<QByteArray> names = {"about", "blob", "chrome", "chrome-devtools", "chrome-error", "content",
        "data", "devtools", "file", "filesystem", "ftp", "http", "https", "javascript", "mailto", "qrc", "view-source",
        "ws", "wss"};
    return names.contains(name);
}

} // namespace

bool mayBeCustomScheme(const QByteArray &name)
{
    const QByteArray lower = name.toLower();
    return isScheme(lower) && !isBuiltIn(lower);
}

void registerSchemes(const QStringList &schemes)
{
    static QSet<QByteArray> warned;
    const auto warnOnce = [](const QByteArray &name, const char *reason) {
        if (!warned.contains(name)) {
            warned.insert(name);
            qCWarning(lcScheme, "URL scheme \"%s\": %s", name.constData(), reason);
        }
    };
    for (const QString &scheme : schemes) {
        const QByteArray name = scheme.toLower().toUtf8();
        if (!isScheme(name)) {
            warnOnce(name, "not a scheme, never served");
        } else if (isBuiltIn(name)) {
            warnOnce(name, "belongs to the web engine, never served by others");
        } else if (!QWebEngineUrlScheme::schemeByName(name).name().isEmpty()) {
            continue;
        } else if (QCoreApplication::instance()) {
            warnOnce(name,
                "listed after the application object was made; served without cross-origin requests, and not a "
                "secure context");
        } else {
            QWebEngineUrlScheme custom(name);
            custom.setSyntax(QWebEngineUrlScheme::Syntax::Host);
            custom.setFlags(QWebEngineUrlScheme::SecureScheme | QWebEngineUrlScheme::LocalScheme
                | QWebEngineUrlScheme::CorsEnabled);
            QWebEngineUrlScheme::registerScheme(custom);
        }
    }
}

} // namespace kx
