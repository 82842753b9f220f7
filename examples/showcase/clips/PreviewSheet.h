// SPDX-License-Identifier: MIT
#pragma once

#include "Clip.h"

#include <KXFoundation/BigImageThumb/KXBigImageThumb.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QSizeF>
#include <QtCore/QTemporaryDir>

#include <optional>

class FfmpegRun;

/// Frames of one clip at equal distances, for a preview: ffmpeg puts them on one sheet in the background, and parts of
/// that are cut out on demand.
class PreviewSheet : public QObject {
    Q_OBJECT
public:
    /// Logical pixels; the frames have twice as many, for sharp screens.
    static constexpr QSizeF frameSize{160, 90};

    explicit PreviewSheet(QObject *parent = nullptr);
    ~PreviewSheet() override;

    /// Begins with another clip; frames of the former one are forgotten.
    void prepare(const Clip &clip);
    [[nodiscard]] bool isReady() const { return m_sheet.has_value(); }
    /// The frame that is shown after this part of the clip, 0 to 1; none until the sheet is ready.
    [[nodiscard]] kx::Image frameAt(double fraction) const;

Q_SIGNALS:
    void ready();

private:
    QTemporaryDir m_folder;
    QPointer<FfmpegRun> m_run;
    std::optional<KXBigImageThumb> m_sheet;
};
