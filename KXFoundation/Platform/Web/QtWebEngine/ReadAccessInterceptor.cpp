// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/ReadAccessInterceptor.h>

#include <KXFoundation/Platform/Web/QtWebEngine/ReadAccess.h>

#include <QtWebEngineCore/QWebEngineLoadingInfo>
#include <QtWebEngineCore/QWebEnginePage>

#include <algorithm>

namespace kx {

namespace {

/// The latest of the directories that the file lies in; null when there is none.
QString directoryOf(const QUrl &url, const QStringList &directories)
{
    const auto found = std::find_if(directories.crbegin(), directories.crend(),
        [&url](const QString &directory) { return isFileBelow(url, directory); });
    return found == directories.crend() ? QString() : *found;
}

} // namespace

ReadAccessInterceptor::ReadAccessInterceptor(QWebEnginePage &page)
    : QWebEngineUrlRequestInterceptor(&page)
{
    connect(&page, &QWebEnginePage::loadingChanged, this, &ReadAccessInterceptor::loadingChanged);
}

void ReadAccessInterceptor::grant(const QUrl &document, const QString &directory)
{
    m_expected = document.adjusted(QUrl::RemoveFragment);
    m_granted.removeAll(directory);
    m_granted.append(directory);
}

void ReadAccessInterceptor::interceptRequest(QWebEngineUrlRequestInfo &info)
{
    using Info = QWebEngineUrlRequestInfo;
    const QUrl url = info.requestUrl();
    if (url.scheme() != QLatin1StringView("file"))
        return;
    const bool mainFrame = info.resourceType() == Info::ResourceTypeMainFrame;
    const bool readable =
        mainFrame ? allowsDocument(url, info.navigationType()) : !directoryOf(url, m_current).isNull();
    if (readable)
        return;
    info.block(true);
    Q_EMIT blocked(url, mainFrame);
}

QString ReadAccessInterceptor::directoryOfDocument(const QUrl &url, QWebEngineUrlRequestInfo::NavigationType type) const
{
    using Info = QWebEngineUrlRequestInfo;
    const QStringList latest = m_granted.mid(m_granted.size() - 1);
    switch (type) {
    case Info::NavigationTypeTyped: return directoryOf(url, latest);
    // The application's load of the URL that is shown already looks like a reload.
    case Info::NavigationTypeReload:
        return directoryOf(url, url.adjusted(QUrl::RemoveFragment) == m_expected ? latest : m_current);
    case Info::NavigationTypeBackForward: return directoryOf(url, m_granted);
    // What the page navigates to itself stays where the page may read.
    default: return directoryOf(url, m_current);
    }
}

bool ReadAccessInterceptor::allowsDocument(const QUrl &url, QWebEngineUrlRequestInfo::NavigationType type)
{
    const QString entered = directoryOfDocument(url, type);
    if (type == QWebEngineUrlRequestInfo::NavigationTypeTyped || type == QWebEngineUrlRequestInfo::NavigationTypeReload)
        m_expected.clear();
    if (entered.isNull())
        return false;
    m_current.removeAll(entered);
    m_current.append(entered);
    m_loading = url;
    return true;
}

void ReadAccessInterceptor::loadingChanged(const QWebEngineLoadingInfo &info)
{
    // After a failure the former document may still be there: it keeps what it could read.
    if (info.status() == QWebEngineLoadingInfo::LoadSucceededStatus && info.url() == m_loading)
        m_current = {m_current.constLast()};
}

} // namespace kx
