// SPDX-License-Identifier: MIT
#include "PreviewSheet.h"

#include "FfmpegRun.h"

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int columns = 6;
constexpr int rows = 6;
constexpr QSizeF pixels = PreviewSheet::frameSize * 2;

} // namespace

PreviewSheet::PreviewSheet(QObject *parent)
    : QObject(parent)
{
}

PreviewSheet::~PreviewSheet() = default;

void PreviewSheet::prepare(const Clip &clip)
{
    m_sheet.reset();
    delete m_run;
    if (FfmpegRun::program().isNull() || clip.seconds == 0)
        return;
    const QString file = m_folder.filePath(u"%1.jpg"_s.arg(clip.id));
    const QString filter =
        u"fps=%1/%2,scale=%3:%4:force_original_aspect_ratio=decrease,pad=%3:%4:-1:-1,tile=%5x%6"_s.arg(columns * rows)
            .arg(clip.seconds)
            .arg(pixels.width())
            .arg(pixels.height())
            .arg(columns)
            .arg(rows);
    m_run =
        new FfmpegRun({u"-i"_s, clip.path, u"-vf"_s, filter, u"-frames:v"_s, u"1"_s, u"-q:v"_s, u"3"_s, file}, this);
    // The sheet is decoded where waiting costs nothing, and handed over when that is done.
    const auto sheet = std::make_shared<std::optional<KXBigImageThumb>>();
    connect(m_run, &FfmpegRun::ended, this, [this, sheet] {
        m_sheet = *sheet;
        m_run->deleteLater();
        if (isReady())
            Q_EMIT ready();
    });
    m_run->start([file, sheet] { sheet->emplace(file); });
}

kx::Image PreviewSheet::frameAt(double fraction) const
{
    if (!m_sheet)
        return nullptr;
    const int frame = int(std::clamp(fraction, 0.0, 1.0) * (columns * rows - 1));
    return m_sheet->thumbFromRect({{frame % columns * pixels.width(), frame / columns * pixels.height()}, pixels});
}
