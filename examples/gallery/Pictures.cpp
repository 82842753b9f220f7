// SPDX-License-Identifier: MIT
#include "Pictures.h"

#include "GalleryWindow.h"

#include <QtGui/QPixmap>

#include <cstdio>

namespace {

const QStringList pictureFilter{QStringLiteral("*.png")};

QStringList picturesIn(const QDir &folder)
{
    return folder.entryList(pictureFilter, QDir::Files, QDir::Name);
}

bool isBlank(const QImage &picture)
{
    if (picture.isNull())
        return true;
    QImage plain(picture.size(), picture.format());
    plain.fill(picture.pixelColor(0, 0));
    plain.setDevicePixelRatio(picture.devicePixelRatio());
    return picture == plain;
}

} // namespace

Pictures::Pictures(const QDir &folder)
    : m_folder(folder)
{
    for (const QString &old : picturesIn(m_folder))
        m_folder.remove(old);
}

bool Pictures::takeAll(GalleryWindow &window)
{
    const QList<State> states = window.states();
    bool allGood = true;
    const auto report = [&allGood](const QString &name, const QString &fault) {
        std::printf("FAIL  %s: %s\n", qPrintable(name), qPrintable(fault));
        allGood = false;
    };
    for (const State &state : states) {
        const QImage picture = take(state, window);
        const QString fault = faultOf(state, picture);
        if (!fault.isEmpty())
            report(state.fileName(), fault);
        m_families[state.family].insert(state.name, picture);
        if (!picture.save(m_folder.filePath(state.fileName() + QStringLiteral(".png"))))
            report(state.fileName(), QStringLiteral("not saved"));
    }
    const qsizetype saved = picturesIn(m_folder).size();
    if (saved != states.size())
        report(m_folder.path(), QStringLiteral("%1 pictures of %2 states").arg(saved).arg(states.size()));
    std::printf("%d pictures in %s\n", int(saved), qPrintable(m_folder.path()));
    return allGood;
}

bool Pictures::correspond(const QDir &first, const QDir &second, int factor)
{
    const QStringList names = picturesIn(first);
    bool allGood = !names.isEmpty() && names == picturesIn(second);
    for (const QString &name : names)
        allGood &= QImage(second.filePath(name)).size() == QImage(first.filePath(name)).size() * factor;
    if (!allGood)
        std::printf("FAIL  %s and %s do not correspond\n", qPrintable(first.path()), qPrintable(second.path()));
    return allGood;
}

QImage Pictures::take(const State &state, GalleryWindow &window)
{
    // The window of the state is the active one, unless the state says otherwise.
    GalleryWindow::showAndSettle(*state.picture);
    state.picture->window()->activateWindow();
    GalleryWindow::settle();
    (void)state.picture->grab(); // controls that are out of sight have not painted yet
    if (state.enter)
        state.enter();
    GalleryWindow::settle();
    (void)state.picture->grab(); // a view's painting brings its shadow
    GalleryWindow::settle();
    const QImage picture = state.picture->grab().toImage();
    if (state.picture->isWindow())
        state.picture->close();
    window.activateWindow();
    return picture;
}

QString Pictures::faultOf(const State &state, const QImage &picture) const
{
    if (isBlank(picture))
        return QStringLiteral("blank");
    const QHash<QString, QImage> others = m_families.value(state.family);
    if (!state.looksLike.isEmpty())
        return others.value(state.looksLike) == picture ? QString() : QStringLiteral("unlike ") + state.looksLike;
    for (auto other = others.begin(); other != others.end(); ++other) {
        if (other.value() == picture)
            return QStringLiteral("like ") + other.key();
    }
    return {};
}
