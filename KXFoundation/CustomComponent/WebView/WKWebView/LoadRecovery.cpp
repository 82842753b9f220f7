// SPDX-License-Identifier: MIT
#include "LoadRecovery.h"

#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtCore/QDir>

namespace kx {

namespace {

QString withoutLastComponent(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash > 0 ? path.first(slash) : QStringLiteral("/");
}

} // namespace

LoadFailure classifyLoadFailure(const KXError &error, const std::function<bool(const QString &)> &fileExists)
{
    using Kind = LoadFailure::Kind;
    const QString url = error.userInfo.value(FailingURLStringKey).toString();
    if (error.code == ProcessDiedDuringLoad && error.domain == CFNetworkErrorDomain)
        return {Kind::ProcessDied, url, {}};
    if (error.code != URLErrorFileDoesNotExist || !url.startsWith(u"file://"))
        return {Kind::Other, url, {}};
    QString path = url;
    path.remove(QStringLiteral("file://"));
    if (const qsizetype query = path.indexOf(u'?'); query >= 0)
        path.truncate(query);
    if (path.endsWith(u"about:blank"))
        return {Kind::BlankLocalPage, url, path};
    return {fileExists(path) ? Kind::LocalPageExists : Kind::LocalPageMissing, url, path};
}

QString readAccessDirectory(const QUrl &fileUrl)
{
    return withoutLastComponent(withoutLastComponent(QDir::cleanPath(fileUrl.path(QUrl::FullyDecoded))));
}

} // namespace kx
