// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/LoadState.h>

#include <KXFoundation/Platform/Web/QtWebEngine/LoadErrors.h>

#include <utility>

namespace kx {

LoadState::LoadState(Report report)
    : m_report(std::move(report))
{
}

void LoadState::start(const QUrl &url)
{
    m_phase = Phase::Provisional;
    m_url = url;
    m_answer = Answer::Allowed;
}

void LoadState::end(const std::optional<KXError> &error)
{
    const bool committed = m_phase == Phase::Committed;
    m_phase = Phase::Idle;
    m_report({committed, error});
}

void LoadState::begin(const QUrl &url)
{
    if (isLoading())
        end(cancelledError(m_url));
    start(url);
}

void LoadState::stop()
{
    if (!isLoading())
        return;
    if (m_phase == Phase::Committed)
        m_stoppedDocument = m_url;
    end(cancelledError(m_url));
}

void LoadState::navigationAsked(const QUrl &url, bool redirect, Answer answer)
{
    if (m_phase == Phase::Provisional)
        m_url = url; // a redirect, or our own load as the engine writes its URL
    else if (!redirect || m_phase == Phase::Idle)
        begin(url);
    m_answer = answer;
}

void LoadState::dropped(const QUrl &url)
{
    m_stoppedDocument = url;
}

void LoadState::started(const QUrl &url)
{
    if (m_phase != Phase::Provisional && m_stoppedDocument != url)
        begin(url);
}

void LoadState::documentStarted(const QUrl &url)
{
    if (m_phase == Phase::Provisional && url == m_url) {
        m_phase = Phase::Committed;
        m_stoppedDocument.reset();
    }
}

void LoadState::succeeded()
{
    if (!isLoading())
        return;
    m_phase = Phase::Committed;
    m_stoppedDocument.reset();
    end(std::nullopt);
}

void LoadState::stopped(const QUrl &url)
{
    if (std::exchange(m_stoppedDocument, std::nullopt) == url || !isLoading())
        return;
    switch (m_answer) {
    case Answer::Allowed: // a download, or a response without a document
    case Answer::Refused: end(interruptedError(m_url)); break;
    case Answer::Unsupported: end(unsupportedURLError(m_url)); break;
    }
}

void LoadState::failed(int netError, const QUrl &url)
{
    if (std::exchange(m_stoppedDocument, std::nullopt) == url || !isLoading())
        return;
    end(networkError(netError, url));
}

bool LoadState::processTerminated()
{
    m_stoppedDocument.reset();
    if (!isLoading())
        return false;
    end(processDiedError(m_url));
    return true;
}

} // namespace kx
