// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/PlainCall.h>

#include <QtCore/QStringList>

#include <algorithm>
#include <iterator>

namespace kx {

namespace {

constexpr int deepestNesting = 100;

// Words that may not stand where a variable is named, and some that mean something else there.
constexpr QStringView notVariables[] = {u"async", u"await", u"break", u"case", u"catch", u"class", u"const",
    u"continue", u"debugger", u"default", u"delete", u"do", u"else", u"enum", u"export", u"extends", u"false",
    u"finally", u"for", u"function", u"if", u"implements", u"import", u"in", u"instanceof", u"interface", u"let",
    u"new", u"null", u"package", u"private", u"protected", u"public", u"return", u"static", u"super", u"switch",
    u"this", u"throw", u"true", u"try", u"typeof", u"var", u"void", u"while", u"with", u"yield"};

bool isSpace(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}
bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}
bool isNameStart(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || c == u'$';
}

/// Reads from the front; every operation takes what it recognises and answers whether it did.
class Reader {
public:
    explicit Reader(QStringView text)
        : m_text(text)
    {
    }

    bool script()
    {
        bool recognised = false;
        if (word(u"if")) {
            recognised = mark(u'(') && path() && mark(u')') && mark(u'{') && call() && mark(u';') && mark(u'}');
        } else {
            recognised = call();
            mark(u';');
        }
        skipSpace();
        return recognised && m_at == m_text.size();
    }

private:
    [[nodiscard]] QChar next() const { return m_at < m_text.size() ? m_text.at(m_at) : QChar(); }
    void skipSpace()
    {
        while (isSpace(next()))
            ++m_at;
    }
    bool mark(QChar c)
    {
        skipSpace();
        if (next() != c || m_at >= m_text.size())
            return false;
        ++m_at;
        return true;
    }
    QStringView name()
    {
        skipSpace();
        const qsizetype begin = m_at;
        if (isNameStart(next()))
            while (isNameStart(next()) || isDigit(next()))
                ++m_at;
        return m_text.mid(begin, m_at - begin);
    }
    bool word(QStringView wanted)
    {
        const qsizetype begin = m_at;
        if (name() == wanted)
            return true;
        m_at = begin;
        return false;
    }
    bool path()
    {
        const QStringView variable = name();
        if (variable.isEmpty()
            || std::find(std::begin(notVariables), std::end(notVariables), variable) != std::end(notVariables))
            return false;
        while (mark(u'.')) {
            if (name().isEmpty())
                return false;
        }
        return true;
    }
    bool call()
    {
        if (!path() || !mark(u'('))
            return false;
        if (mark(u')'))
            return true;
        do {
            if (!value(0))
                return false;
        } while (mark(u','));
        return mark(u')');
    }

    // RFC 8259, except that keys of objects are plain and not "__proto__", which scripts understand differently.
    bool value(int depth)
    {
        skipSpace();
        if (depth > deepestNesting)
            return false;
        if (next() == u'"')
            return string();
        if (next() == u'{')
            return members(u'{', u'}', depth, true);
        if (next() == u'[')
            return members(u'[', u']', depth, false);
        if (next() == u'-' || isDigit(next()))
            return number();
        return word(u"true") || word(u"false") || word(u"null");
    }
    bool members(QChar open, QChar close, int depth, bool keys)
    {
        mark(open);
        if (mark(close))
            return true;
        do {
            if (keys && !(key() && mark(u':')))
                return false;
            if (!value(depth + 1))
                return false;
        } while (mark(u','));
        return mark(close);
    }
    bool key()
    {
        skipSpace();
        const qsizetype begin = m_at;
        if (!string())
            return false;
        const QStringView text = m_text.mid(begin, m_at - begin);
        return text != u"\"__proto__\"" && !text.contains(u'\\');
    }
    bool string()
    {
        if (next() != u'"')
            return false;
        for (++m_at; m_at < m_text.size(); ++m_at) {
            const QChar c = next();
            if (c == u'"') {
                ++m_at;
                return true;
            }
            if (c < u' ' || (c == u'\\' && !escape()))
                return false;
        }
        return false;
    }
    // Leaves the position at the last character of the escape.
    bool escape()
    {
        ++m_at;
        if (next() != u'u')
            return QStringView(u"\"\\/bfnrt").contains(next()) && m_at < m_text.size();
        const QStringView digits = m_text.mid(m_at + 1, 4);
        m_at += 4;
        return digits.size() == 4 && std::all_of(digits.begin(), digits.end(), [](QChar c) {
            return isDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
        });
    }
    bool digits()
    {
        const qsizetype begin = m_at;
        while (isDigit(next()))
            ++m_at;
        return m_at > begin;
    }
    bool number()
    {
        if (next() == u'-')
            ++m_at;
        const bool zero = next() == u'0';
        const qsizetype begin = m_at;
        if (!digits() || (zero && m_at > begin + 1))
            return false;
        if (next() == u'.') {
            ++m_at;
            if (!digits())
                return false;
        }
        if (next() == u'e' || next() == u'E') {
            ++m_at;
            if (next() == u'+' || next() == u'-')
                ++m_at;
            if (!digits())
                return false;
        }
        return true;
    }

    QStringView m_text;
    qsizetype m_at = 0;
};

} // namespace

bool isPlainCall(QStringView script)
{
    return Reader(script).script();
}

} // namespace kx
