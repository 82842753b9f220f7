// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/ReadAccessInterceptor.h>

#include <KXFoundation/Platform/Web/QtWebEngine/ReadAccess.h>

#include <QtWebEngineCore/QWebEngineLoadingInfo>
#include <QtWebEngineCore/QWebEnginePage>

#include <algorithm>

namespace kx {

ReadAccessInterceptor::ReadAccessInterceptor(QWebEnginePage &page)
    : QWebEngineUrlRequestInterceptor(&page)
{
    connect(&page, &QWebEnginePage::loadingChanged, this, &ReadAccessInterceptor::loadingChanged);
}

void ReadAccessInterceptor::grant(const QString &directory)
{
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
    const auto type = info.navigationType();
    const bool readable = mainFrame ? allowsDocument(url,
                              type == Info::NavigationTypeTyped || type == Info::NavigationTypeBackForward
                                  || type == Info::NavigationTypeReload)
                                    : std::any_of(m_current.cbegin(), m_current.cend(),
                                        [&url](const QString &directory) { return isFileBelow(url, directory); });
    if (readable)
        return;
    info.block(true);
    Q_EMIT blocked(url, mainFrame);
}

bool ReadAccessInterceptor::allowsDocument(const QUrl &url, bool fromApplication)
{
    // What the application loads, or went to before, may lie in any directory that it granted, the latest first; what
    // the page navigates to itself stays where the page may read.
    const QStringList &directories = fromApplication ? m_granted : m_current;
    const auto directory = std::find_if(
        directories.crbegin(), directories.crend(), [&url](const QString &known) { return isFileBelow(url, known); });
    if (directory == directories.crend())
        return false;
    const QString entered = *directory;
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
