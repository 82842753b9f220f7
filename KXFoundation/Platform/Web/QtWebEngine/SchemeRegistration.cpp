// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeRegistration.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
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

enum class Use { Documents, Other };

/// The engine's own schemes, and whether it loads documents from them: making one of these a custom scheme would take
/// the web away from every page.
const QHash<QByteArray, Use> &builtIn()
{
    static const QHash<QByteArray, Use> schemes = {{"about", Use::Documents}, {"blob", Use::Documents},
        {"chrome", Use::Documents}, {"chrome-devtools", Use::Other}, {"chrome-error", Use::Other},
        {"content", Use::Other}, {"data", Use::Documents}, {"devtools", Use::Other}, {"file", Use::Documents},
        {"filesystem", Use::Documents}, {"ftp", Use::Other}, {"http", Use::Documents}, {"https", Use::Documents},
        {"javascript", Use::Documents}, {"mailto", Use::Other}, {"qrc", Use::Documents},
        {"view-source", Use::Documents}, {"ws", Use::Other}, {"wss", Use::Other}};
    return schemes;
}

} // namespace

bool mayBeCustomScheme(const QByteArray &name)
{
    const QByteArray lower = name.toLower();
    return isScheme(lower) && !builtIn().contains(lower);
}

bool isLoadedByTheEngine(const QByteArray &name)
{
    return builtIn().value(name.toLower(), Use::Other) == Use::Documents;
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
        } else if (builtIn().contains(name)) {
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
