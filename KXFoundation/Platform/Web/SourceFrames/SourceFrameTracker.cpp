// SPDX-License-Identifier: MIT
#include "SourceFrameTracker.h"

#include <QtCore/QResource>
#include <QtCore/QStringList>

#include <utility>

namespace kx {
namespace {

QString resource(const QString &name)
{
    return QString::fromUtf8(QResource(QLatin1String(":/KXFoundation/Web/") + name).uncompressedData());
}

// The same way as the engine makes its URLs, so that equal addresses compare equal.
QUrl urlFrom(const QString &text)
{
    return QUrl::fromEncoded(text.toUtf8());
}

QUrl withoutQuery(const QUrl &url)
{
    return url.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment);
}

} // namespace

SourceFrameTracker::SourceFrameTracker(Clock clock)
    : m_clock(std::move(clock))
{
}

QString SourceFrameTracker::isolatedWorldScript()
{
    return resource(QStringLiteral("source_frames.js"));
}

QString SourceFrameTracker::pageWorldScript()
{
    return resource(QStringLiteral("source_frames_page.js"));
}

void SourceFrameTracker::signal(const QString &text)
{
    const QString what = text.section(u' ', 0, 0);
    const QString frame = text.section(u' ', 1, 1);
    const QString detail = text.section(u' ', 2, 2);
    if (frame != QLatin1String("main") && frame != QLatin1String("sub"))
        return;

    if (what == QLatin1String("document")) {
        startDocument(frame == QLatin1String("main") ? Role::Main : Role::Sub, detail == QLatin1String("events"));
        return;
    }
    Signal signal;
    signal.frame = frame == QLatin1String("main") ? Role::Main : Role::Sub;
    signal.user = detail == QLatin1String("user");
    signal.url = urlFrom(text.section(u' ', 3));
    signal.time = m_clock();
    if (what == QLatin1String("navigate")) {
        signal.kind = SignalKind::Navigate;
    } else if (what == QLatin1String("caller")) {
        signal.kind = SignalKind::Caller;
        signal.caller = detail == QLatin1String("main") ? Caller::Main
            : detail == QLatin1String("sub")            ? Caller::Sub
            : detail == QLatin1String("unknown")        ? Caller::Unknown
                                                        : Caller::None;
    } else if (what == QLatin1String("click")) {
        signal.kind = SignalKind::Click;
    } else if (what == QLatin1String("form")) {
        signal.kind = SignalKind::Form;
        signal.url = withoutQuery(signal.url);
    } else {
        return;
    }
    forgetExpired(signal.time); // nobody may ever ask
    m_signals.append(signal);
}

void SourceFrameTracker::startDocument(Role frame, bool announces)
{
    if (frame == Role::Sub) {
        m_subFrames = true;
        m_silentSubFrames = m_silentSubFrames || !announces;
        return;
    }
    m_signals.clear();
    m_mainDocument = announces ? MainDocument::Announces : MainDocument::Silent;
    m_subFrames = false;
    m_silentSubFrames = false;
    m_mainInFlight.reset();
    m_subInFlight.reset();
}

void SourceFrameTracker::mainFrameLoadEnded()
{
    m_mainInFlight.reset();
}

NavigationSource SourceFrameTracker::source(const NavigationRequest &request)
{
    forgetExpired(m_clock());

    NavigationSource result;
    if (request.target == NavigationRequest::Target::NewWindow) {
        result.frame.mainFrame = sourceFor(request) == Role::Main;
        return result;
    }
    std::optional<Role> &inFlight =
        request.target == NavigationRequest::Target::MainFrame ? m_mainInFlight : m_subInFlight;
    // A script's replacement is called a redirect too. The main frame has no load in flight then; of sub frames
    // there are several, and the replacement is the one that is announced.
    result.serverRedirect = request.kind == NavigationRequest::Kind::Redirect && inFlight
        && (request.target == NavigationRequest::Target::MainFrame
            || find(SignalKind::Navigate, Role::Sub, request.url) < 0);
    if (!result.serverRedirect)
        inFlight = sourceFor(request);
    result.frame.mainFrame = *inFlight == Role::Main;
    return result;
}

SourceFrameTracker::Role SourceFrameTracker::sourceFor(const NavigationRequest &request)
{
    using Kind = NavigationRequest::Kind;
    const bool toMain = request.target == NavigationRequest::Target::MainFrame;
    if (request.target == NavigationRequest::Target::NewWindow) {
        // A script that opens a window runs in the frame that the user has just touched.
        if (const std::optional<Role> source = gestureSource(request))
            return *source;
        const qsizetype at = lastUserGesture(m_signals.size());
        return at >= 0 ? m_signals.at(at).frame : Role::Main;
    }

    // The application's own. History has no frame of its own either: each of its entries was decided when it was made.
    if (request.kind == Kind::Typed || request.kind == Kind::Reload || request.kind == Kind::BackForward)
        return toMain ? Role::Main : Role::Sub;
    // A frame element's first document, asked for by the document that holds the element.
    if (!toMain && request.kind == Kind::Other)
        return Role::Main;

    if (const qsizetype at = find(SignalKind::Navigate, toMain ? Role::Main : Role::Sub, request.url); at >= 0)
        return announcedSource(request, at);
    // A document that announces would have announced what it starts itself.
    if (toMain && m_mainDocument == MainDocument::Announces)
        return Role::Sub;
    if (const std::optional<Role> source = gestureSource(request))
        return *source;
    if (toMain)
        return m_subFrames ? Role::Sub : Role::Main;
    return m_silentSubFrames ? Role::Sub : Role::Main;
}

SourceFrameTracker::Role SourceFrameTracker::announcedSource(const NavigationRequest &request, qsizetype navigate)
{
    const Signal announcement = m_signals.at(navigate);
    const qsizetype callerAt = find(SignalKind::Caller, announcement.frame, announcement.url);
    const Caller caller = callerAt >= 0 ? m_signals.at(callerAt).caller : Caller::None;
    const qsizetype gestureAt = announcement.user ? lastUserGesture(navigate) : lastGestureFor(request, navigate);
    // Of the scripts that cannot be told apart, the one runs more likely that the user has just set off.
    const qsizetype decisive = gestureAt < 0 && caller == Caller::Unknown ? lastUserGesture(navigate) : gestureAt;
    const Role gestureFrame = decisive >= 0 ? m_signals.at(decisive).frame : Role::Main;
    useUp(std::max(navigate, callerAt));

    if (decisive >= 0)
        return gestureFrame;
    // Only a frame whose scripts are off, or that never loaded a document, keeps its gestures to itself.
    if (announcement.user || request.kind == NavigationRequest::Kind::Form)
        return Role::Sub;
    // Neither a hand nor a script that can be seen, and no refresh, which the engine calls a redirect: the script of a
    // frame that is kept apart although it shares the address, as under a file page without file access.
    if (callerAt >= 0 && caller == Caller::None && request.kind == NavigationRequest::Kind::Link)
        return Role::Sub;
    if (caller == Caller::Main || caller == Caller::Sub)
        return caller == Caller::Main ? Role::Main : Role::Sub;
    return announcement.frame;
}

std::optional<SourceFrameTracker::Role> SourceFrameTracker::gestureSource(const NavigationRequest &request)
{
    const qsizetype at = lastGestureFor(request, m_signals.size());
    if (at < 0)
        return std::nullopt;
    const Role frame = m_signals.at(at).frame;
    useUp(at);
    return frame;
}

qsizetype SourceFrameTracker::find(SignalKind kind, Role frame, const QUrl &url) const
{
    for (qsizetype i = 0; i < m_signals.size(); ++i) {
        const Signal &signal = m_signals.at(i);
        if (signal.kind == kind && signal.frame == frame && signal.url == url)
            return i;
    }
    return -1;
}

qsizetype SourceFrameTracker::lastGestureFor(const NavigationRequest &request, qsizetype end) const
{
    const bool form = request.kind == NavigationRequest::Kind::Form;
    const QUrl base = form ? withoutQuery(request.url) : request.url;
    for (qsizetype i = end - 1; i >= 0; --i) {
        const Signal &signal = m_signals.at(i);
        if (signal.kind == (form ? SignalKind::Form : SignalKind::Click) && signal.url == base)
            return i;
    }
    return -1;
}

qsizetype SourceFrameTracker::lastUserGesture(qsizetype end) const
{
    for (qsizetype i = end - 1; i >= 0; --i) {
        const Signal &signal = m_signals.at(i);
        if (signal.kind == SignalKind::Form || (signal.kind == SignalKind::Click && signal.user))
            return i;
    }
    return -1;
}

void SourceFrameTracker::useUp(qsizetype last)
{
    m_signals.remove(0, last + 1);
}

void SourceFrameTracker::forgetExpired(std::chrono::steady_clock::time_point now)
{
    m_signals.removeIf([now](const Signal &signal) { return now - signal.time > SignalLifetime; });
}

} // namespace kx
