// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/Url.h>

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringView>

#include <optional>

/// A command to the application in the form of a URL, scheme://action.cmd/path?key=value&...: what KXActionManager
/// dispatches and a handler receives. A value type; use one item from one thread at a time.
///
/// DANGER. A value of the query is decoded again and again until no "%" is left in it. A value that cannot be decoded
/// to its end, such as "100%" or "%FF", therefore never finishes: the first call of queryMap() does not return and
/// keeps a processor busy. Whoever can hand your program a URL, a page for example, can stop a thread with it. Set a
/// limit with setDecodePassLimit() before the first URL from outside arrives.
class KX_CORE_EXPORT KXActionItem {
public:
    /// The same as initWithURLString().
    [[nodiscard]] static std::optional<KXActionItem> actionItemWithString(const QString &string);

    /// Reads a URL as people and pages write it. Blanks at both ends are dropped; then every character that may not
    /// stand in a query is percent-encoded, "%" and "#" included, so that an escape comes out as it went in (and is
    /// undone by queryMap()) and a "#" never starts a fragment; the result is parsed as kx::Url does. None when the
    /// text is absent or blank, has no UTF-8 form, or is no URL.
    [[nodiscard]] static std::optional<KXActionItem> initWithURLString(const QString &urlString);

    /// Takes the URL's components over as they are.
    [[nodiscard]] static KXActionItem initWithURL(kx::Url url);

    /// An item without anything, to be filled by hand.
    KXActionItem() = default;

    /// The case is kept; null in a relative reference.
    [[nodiscard]] const QString &scheme() const { return m_url.scheme; }
    void setScheme(const QString &scheme) { m_url.scheme = scheme; }

    /// By convention "action.cmd"; dispatch does not look at it.
    [[nodiscard]] const QString &host() const { return m_url.host; }
    void setHost(const QString &host) { m_url.host = host; }

    [[nodiscard]] std::optional<int> port() const { return m_url.port; }
    void setPort(std::optional<int> port) { m_url.port = port; }

    /// Percent-decoded once, without its trailing "/"; what handlers are registered for.
    [[nodiscard]] const QString &path() const { return m_url.path; }
    void setPath(const QString &path) { m_url.path = path; }

    /// Without the "?", still percent-encoded; null when there is none.
    [[nodiscard]] const QString &query() const;
    void setQuery(const QString &query);

    /// The pairs of the query, built at the first call and kept; a later setQuery() does not change them. Keys stay
    /// percent-encoded, values are decoded (see the danger above). Of equal keys the last wins; "a=b=c" is "a" to "c";
    /// a bare "flag" stands for itself; an empty piece is "" to "". A query of fewer than two characters has no pairs.
    [[nodiscard]] const QHash<QString, QString> &queryMap() const;

    /// Presets what queryMap() returns; the query is then not parsed.
    void setQueryMap(const QHash<QString, QString> &queryMap) { m_queryMap = queryMap; }
    /// Forgets the pairs: the next call of queryMap() builds them from the query of that time.
    void setQueryMap(std::nullopt_t) { m_queryMap.reset(); }

    /// How often a value of a query is decoded at most, in all items of the process; 0, the default, is no limit. A
    /// value that is not finished by then keeps its last decodable text ("100%" stays "100%"). Two passes undo what
    /// initWithURLString() and the sender encoded. May be called at any time from any thread; a decoding under way
    /// obeys it, too. Negative numbers count as 0.
    static void setDecodePassLimit(int limit);
    [[nodiscard]] static int decodePassLimit();

private:
    struct Range {
        qsizetype begin = 0;
        qsizetype length = 0;
    };
    explicit KXActionItem(kx::Url &&url);
    [[nodiscard]] QStringView rawQuery() const;

    mutable kx::Url m_url; // its query is encoded at the first call of query() where there is an m_source
    QString m_source; // the text that the item was made from; null when the query is no part of it (any more)
    Range m_rawQuery; // the query in m_source, before it was encoded
    mutable std::optional<QHash<QString, QString>> m_queryMap;
};
