// SPDX-License-Identifier: MIT
#include "Work.h"

#include "Support/Pointer.h"

#include <KXFoundation/Category/TimerUtil.h>
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PNProgressSlider.h>
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Platform/UI/Image.h>
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/RichTextView/KXLabel.h>
#include <KXFoundation/Task/KXAsyncTask.h>
#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

#include <QtCore/QFile>
#include <QtTest/QTest>

#include <atomic>
#include <csignal>

namespace {

constexpr char page[] = R"(<!DOCTYPE html><meta charset="utf-8"><body>soak<script>
_vexa.registerMethod('double', function (data, answer) { answer({value: 2 * data.value}); });
</script>)";

constexpr int callsOfRound = 20;

QImage knob()
{
    QImage image(28, 28, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

} // namespace

Work::Work()
    : m_window(std::make_unique<PNBaseWindow>(QRectF(100, 100, 640, 400), kx::WindowStyle::Borderless))
    , m_page(new KXWKWebView)
    , m_bar(new PNProgressIndicator(QRectF(0, 0, 600, 32)))
    , m_volume(new PNProgressSlider(QRectF(0, 40, 120, 20)))
    , m_label(new KXLabel)
{
    KXLogger::sharedLogger().setLogBaseDirectory(m_directory.filePath(QStringLiteral("Log")));
    m_cache.setCountLimit(16);
    kx::Image::setNamed(QStringLiteral("indicator"), knob());
    kx::Image::setNamed(QStringLiteral("indicator_hover"), knob());

    auto *content = new kx::View;
    m_window->setCentralWidget(content);
    content->addSubview(*m_bar);
    content->addSubview(*m_volume);
    content->addSubview(*m_label);
    content->addSubview(*m_page);
    m_label->setFrame(QRectF(200, 40, 300, 30));
    m_page->setFrame(QRectF(0, 100, 640, 240));
    m_bar->setMaxValue(100);
    m_volume->setMaxValue(100);
    m_window->setIgnoreDragRect(false);
    m_window->updateMoveIncludeRect({QRectF(0, 350, 640, 50)}); // above the page
    m_window->show();
    expect(QTest::qWaitForWindowExposed(m_window.get()), "the window shows");

    QFile file(m_directory.filePath(QStringLiteral("index.html")));
    expect(file.open(QIODevice::WriteOnly) && file.write(page) > 0, "the page is written");
    file.close();
    m_page->jsBridge()->registerMethod(
        QStringLiteral("echo"), [](const QJsonValue &data, const auto &completion) { completion(data); });
    m_page->setUrl(QUrl::fromLocalFile(file.fileName()));
    rebuildPage();
}

Work::~Work() = default;

void Work::expect(bool happened, const char *what)
{
    if (!happened && m_failures.size() < 20)
        m_failures.append(QString::fromLatin1(what));
}

void Work::round(int number)
{
    log(number);
    runChild(number);
    callPage(number);
    reloadPage();
    if (number % 4 == 0)
        rebuildPage();
    if (number % 12 == 0)
        killRenderer();
    dragWindow();
    dragControls(number);
    changeLabel(number);
    runTimers();
    fillCache(number);
}

void Work::log(int number)
{
    KXLogger &logger = KXLogger::sharedLogger();
    for (int line = 0; line < 120; ++line)
        logger.writeLogFormat(1, "soak", "round %d line %d of %@", number, line, m_directory.path());
    logger.save();
    expect(QFile::exists(logger.logPath()), "the log is on the disk");
}

void Work::runChild(int number)
{
    const auto task = KXAsyncTask::initWithExecutePath(QStringLiteral("/bin/sh"));
    task->setArguments({QStringLiteral("-c"), QStringLiteral("seq 1 2000; exit %1").arg(number % 100)});
    task->setRealTimeLog(true);
    std::atomic<qsizetype> received = 0;
    task->setLogReveiver([&](const QString &text) { received += text.size(); });
    std::atomic<bool> ended = false;
    expect(!task->execute([&](const auto &) { ended = true; }), "a child starts");
    expect(QTest::qWaitFor([&] { return ended.load(); }, 30'000), "a child ends");
    expect(task->terminationStatus() == number % 100, "a child's status arrives");
    expect(received >= 8893, "a child's output arrives"); // 2,000 numbers with their line feeds
}

void Work::callPage(int number)
{
    int right = 0;
    int answered = 0;
    for (int i = 0; i < callsOfRound; ++i) {
        const int value = number + i;
        m_page->invokeH5Once(QStringLiteral("double"), QJsonObject{{QStringLiteral("value"), value}},
            [&answered, &right, value](const QJsonValue &answer) {
                ++answered;
                right += answer[u"value"].toInt() == 2 * value;
            });
    }
    expect(QTest::qWaitFor([&] { return answered == callsOfRound; }, 30'000), "the page answers");
    expect(right == callsOfRound, "the page's answers are right");
}

void Work::reloadPage()
{
    bool loaded = false;
    const auto connection =
        QObject::connect(m_page, &KXWKWebView::navigationCompleted, m_page, [&](KXWebView *) { loaded = true; });
    m_page->reloadCurrentURL();
    expect(QTest::qWaitFor([&] { return loaded && !m_page->wkWebView()->isLoading(); }, 30'000), "the page loads");
    QObject::disconnect(connection);
}

void Work::rebuildPage()
{
    m_page->rebuildWebview();
    reloadPage();
}

void Work::killRenderer()
{
    const auto renderer = pid_t(m_page->wkWebView()->page().rendererProcessId());
    bool died = false;
    const auto connection =
        QObject::connect(m_page, &KXWKWebView::webContentProcessTerminated, m_page, [&] { died = true; });
    expect(renderer > 0 && ::kill(renderer, SIGKILL) == 0, "the page has a process");
    expect(QTest::qWaitFor([&] { return died; }, 30'000), "the process's end is noticed");
    QObject::disconnect(connection);
    rebuildPage();
}

void Work::dragWindow()
{
    const QPoint before = m_window->pos();
    for (const QPointF way : {QPointF(40, 20), QPointF(-40, -20)}) {
        Pointer pointer(*m_window);
        pointer.moveTo(QPointF(320, 20));
        pointer.queue();
        pointer.press();
        for (int i = 0; i < 4; ++i)
            pointer.moveBy(way / 4);
        pointer.release();
        pointer.deliver();
    }
    expect(QTest::qWaitFor([&] { return m_window->pos() == before; }, 10'000), "the window comes back from its drags");
}

void Work::dragControls(int number)
{
    m_bar->setPlayedValue(0);
    m_volume->setCurrentValue(0);
    int seeks = 0;
    m_bar->onDraggedIndicator([&](PNProgressIndicator *, bool, double) { ++seeks; });
    Pointer onBar(*m_bar);
    onBar.drag(QPointF(100, 16), QPointF(300 + number % 100, 16), 6);
    expect(seeks > 0, "the bar is dragged");
    m_bar->onDraggedIndicator({});
    Pointer onVolume(*m_volume);
    onVolume.drag(QPointF(20, 10), QPointF(100, 10), 6);
    expect(m_volume->currentValue() > 0, "the slider is dragged");
    expect(!m_window->grab().isNull(), "the window paints");
}

void Work::changeLabel(int number)
{
    const QString text = QStringLiteral("Round %1").arg(number);
    m_label->setText(text);
    m_label->setTextColor(QColor::fromHsv(number % 360, 200, 200));
    expect(m_label->text() == text, "the label has its text");
}

void Work::runTimers()
{
    int fired = 0;
    const auto once = zq_scheduledTimerWithTimeInterval(
        0.001, [&](const auto &) { ++fired; }, false);
    const auto again = zq_scheduledTimerWithTimeInterval(
        0.001, [&](const auto &) { ++fired; }, true);
    expect(QTest::qWaitFor([&] { return fired > 4 && !once->isValid(); }, 10'000), "timers fire");
    again->invalidate();
}

void Work::fillCache(int number)
{
    for (int i = 0; i < 32; ++i)
        m_cache.setObject(QImage(64, 64, QImage::Format_RGB32), QString::number(number * 32 + i));
    expect(m_cache.cacheQueue().size() == 16, "the cache keeps to its limit");
}
