// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Url.h>

#include <KXFoundation/Platform/Core/PercentEncoding.h>
#include <KXFoundation/Platform/Core/Strings.h>

#include <QtCore/QUrl>

#include <array>
#include <limits>
#include <string_view>

namespace kx {

namespace {

// The roles that a character may play; names as in the grammar.
enum Role : quint8 {
    Alpha = 1,
    Digit = 2,
    SchemeChar = 4,
    Hex = 8,
    RegNameChar = 16, // unreserved / sub-delims
    PathChar = 32, // RegNameChar / ":" / "@" / "/"
    QueryChar = 64, // PathChar / "?"
};

constexpr std::array<quint8, 0x80> roles = [] {
    std::array<quint8, 0x80> table{};
    const auto add = [&table](std::string_view characters, unsigned role) {
        for (const char c : characters)
            table[std::size_t(c)] |= quint8(role);
    };
    constexpr unsigned unreserved = RegNameChar | PathChar | QueryChar;
    add("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", Alpha | SchemeChar | unreserved);
    add("0123456789", Digit | Hex | SchemeChar | unreserved);
    add("ABCDEFabcdef", Hex);
    add("+-.", SchemeChar);
    add("-._~!$&'()*+,;=", unreserved);
    add(":@/", PathChar | QueryChar);
    add("?", QueryChar);
    return table;
}();

bool is(char16_t c, Role role)
{
    return c < 0x80 && (roles[c] & role);
}

bool allAre(QStringView text, Role role)
{
    for (const QChar c : text) {
        if (!is(c.unicode(), role))
            return false;
    }
    return true;
}

// IPv4address: four numbers of 0 to 255 without leading zeros.
bool isIPv4(QStringView text)
{
    int fields = 0;
    for (const QStringView field : text.tokenize(u'.')) {
        if (++fields > 4 || field.isEmpty() || field.size() > 3 || !allAre(field, Digit) || field.toInt() > 255
            || (field.size() > 1 && field.front() == u'0'))
            return false;
    }
    return fields == 4;
}

// One side of the "::" of an IPv6address, or the whole of one without it: groups of 16 bits in hex, an IPv4 address for
// the last two where `mayEndInIPv4`. The number of 16-bit groups, or -1.
int countIPv6Groups(QStringView text, bool mayEndInIPv4)
{
    if (text.isEmpty())
        return 0;
    int groups = 0;
    while (true) {
        const qsizetype colon = text.indexOf(u':');
        const QStringView group = colon < 0 ? text : text.first(colon);
        if (colon < 0 && mayEndInIPv4 && isIPv4(group))
            return groups + 2;
        if (group.isEmpty() || group.size() > 4 || !allAre(group, Hex))
            return -1;
        ++groups;
        if (colon < 0)
            return groups;
        text = text.sliced(colon + 1);
    }
}

// What may stand between "[" and "]": IPv6address or IPvFuture.
bool isIPLiteral(QStringView text)
{
    if (text.startsWith(u'v') || text.startsWith(u'V')) {
        const qsizetype dot = text.indexOf(u'.');
        if (dot < 2 || !allAre(text.sliced(1, dot - 1), Hex) || dot + 1 == text.size())
            return false;
        for (const QChar c : text.sliced(dot + 1)) {
            if (c != u':' && !is(c.unicode(), RegNameChar))
                return false;
        }
        return true;
    }
    const qsizetype gap = text.indexOf(u"::");
    if (gap < 0)
        return countIPv6Groups(text, true) == 8;
    const int before = countIPv6Groups(text.first(gap), false);
    const int after = countIPv6Groups(text.sliced(gap + 2), true);
    return before >= 0 && after >= 0 && before + after <= 7;
}

QString decodedPath(QStringView encoded)
{
    if (encoded.size() > 1 && encoded.endsWith(u'/'))
        encoded.chop(1);
    if (encoded.isEmpty())
        return QStringLiteral(""); // never absent
    return removePercentEncoding(encoded).value_or(QString());
}

// Reads one text from front to back into a Url.
class Parser {
public:
    Parser(QStringView text, Url &url)
        : m_at(text.utf16())
        , m_end(m_at + text.size())
        , m_url(url)
    {
    }

    bool run()
    {
        if (!readScheme())
            return false;
        if (m_end - m_at >= 2 && m_at[0] == u'/' && m_at[1] == u'/') {
            m_at += 2;
            if (!readAuthority())
                return false;
        }
        if (!readPath())
            return false;
        if (next(u'?')) {
            const char16_t *const begin = ++m_at;
            if (!skip(QueryChar))
                return false;
            m_url.query = text(begin, m_at).toString();
        }
        if (next(u'#')) {
            ++m_at;
            if (!skip(QueryChar)) // a fragment is made of the same characters
                return false;
        }
        return m_at == m_end;
    }

private:
    static QStringView text(const char16_t *begin, const char16_t *end) { return {begin, end - begin}; }

    [[nodiscard]] bool next(char16_t c) const { return m_at < m_end && *m_at == c; }

    // Passes characters of the role and escapes; false at a "%" that is no escape.
    bool skip(Role role)
    {
        for (; m_at < m_end; ++m_at) {
            if (is(*m_at, role))
                continue;
            if (*m_at != u'%')
                break;
            if (!skipEscape())
                return false;
        }
        return true;
    }

    // From the "%" of an escape to its last digit.
    bool skipEscape()
    {
        if (m_end - m_at < 3 || !is(m_at[1], Hex) || !is(m_at[2], Hex))
            return false;
        m_at += 2;
        return true;
    }

    // A text without a scheme is a relative reference; then nothing is read.
    bool readScheme()
    {
        const char16_t *c = m_at;
        while (c < m_end && is(*c, SchemeChar))
            ++c;
        if (c == m_end || *c != u':')
            return true;
        if (!is(*m_at, Alpha)) // a ":" at once, too
            return false;
        m_url.scheme = text(m_at, c).toString();
        m_at = c + 1;
        return true;
    }

    // From behind "//": [userinfo "@"] host [":" port]
    bool readAuthority()
    {
        const char16_t *host = m_at;
        const char16_t *colon = nullptr; // the last one in the host part
        int colons = 0;
        bool userInfo = false;
        bool literal = false;
        for (; m_at < m_end; ++m_at) {
            const char16_t c = *m_at;
            if (is(c, RegNameChar))
                continue;
            if (c == u'/' || c == u'?' || c == u'#')
                break;
            if (c == u':') {
                colon = m_at;
                ++colons;
            } else if (c == u'@' && !userInfo && !literal) {
                userInfo = true;
                host = m_at + 1;
                colon = nullptr;
                colons = 0;
            } else if (c == u'[' && m_at == host) {
                literal = true;
                while (m_at < m_end && *m_at != u']')
                    ++m_at;
                if (m_at == m_end)
                    return false;
                const char16_t *const after = m_at + 1;
                if (after < m_end && *after != u':' && *after != u'/' && *after != u'?' && *after != u'#')
                    return false;
            } else if (c != u'%' || !skipEscape()) {
                return false;
            }
        }
        if (colons > 1)
            return false;
        const char16_t *hostEnd = m_at;
        if (colon) {
            hostEnd = colon;
            if (!readPort(text(colon + 1, m_at)))
                return false;
        }
        QStringView name = text(host, hostEnd);
        if (literal) {
            name = name.sliced(1, name.size() - 2);
            if (!isIPLiteral(name))
                return false;
        }
        m_url.host = name.toString();
        return true;
    }

    bool readPort(QStringView digits)
    {
        constexpr int most = std::numeric_limits<int>::max();
        if (!allAre(digits, Digit))
            return false;
        if (digits.isEmpty())
            return true;
        qint64 number = 0;
        for (const QChar digit : digits)
            number = qMin<qint64>(number * 10 + (digit.unicode() - u'0'), most);
        m_url.port = int(number);
        return true;
    }

    bool readPath()
    {
        const char16_t *const begin = m_at;
        if (!skip(PathChar))
            return false;
        const QStringView path = text(begin, m_at);
        const bool bare = m_url.scheme.isNull() && m_url.host.isNull();
        if (bare) { // the first segment of a relative path has no ":", else it would be a scheme
            const qsizetype colon = path.indexOf(u':');
            const qsizetype slash = path.indexOf(u'/');
            if (colon >= 0 && (slash < 0 || colon < slash))
                return false;
        }
        m_url.path = decodedPath(path);
        return true;
    }

    const char16_t *m_at;
    const char16_t *const m_end;
    Url &m_url;
};

} // namespace

Url::Url(const QUrl &url)
{
    if (!url.isValid())
        return;
    if (!url.scheme().isEmpty())
        scheme = url.scheme();
    host = url.host(QUrl::FullyEncoded);
    if (host.isEmpty()) { // absent or blank: only the text tells
        const QString text = url.toString(QUrl::FullyEncoded);
        if (QStringView(text).sliced(scheme.isNull() ? 0 : scheme.size() + 1).startsWith(u"//"))
            host = QStringLiteral("");
    }
    if (url.port() >= 0)
        port = url.port();
    path = decodedPath(url.path(QUrl::FullyEncoded));
    if (url.hasQuery())
        query = url.query(QUrl::FullyEncoded);
}

std::optional<Url> Url::parse(QStringView text)
{
    std::optional<Url> url(std::in_place);
    if (!Parser(text, *url).run())
        url.reset();
    return url;
}

bool Url::operator==(const Url &other) const
{
    return same(scheme, other.scheme) && same(host, other.host) && port == other.port && same(path, other.path)
        && same(query, other.query);
}

} // namespace kx
