// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/MediaDuration.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLibrary>

#include <chrono>
#include <memory>

extern "C" {
#include <libavformat/avformat.h>
}

namespace kx {

namespace {

// The functions that are called. Only their declarations are known to the build: linking the library would cost every
// program the time to load it and all that it needs.
struct AvFormat {
    decltype(&::avformat_alloc_context) allocContext = nullptr;
    decltype(&::avformat_open_input) openInput = nullptr;
    decltype(&::avformat_find_stream_info) findStreamInfo = nullptr;
    decltype(&::avformat_close_input) closeInput = nullptr;
    decltype(&::av_dict_set) dictSet = nullptr;
    decltype(&::av_dict_free) dictFree = nullptr;

    AvFormat()
    {
        // By its version, which tells how its structures are laid out. Stays loaded: nothing unloads it.
        QLibrary format(QStringLiteral("avformat"), LIBAVFORMAT_VERSION_MAJOR);
        QLibrary util(QStringLiteral("avutil"), LIBAVUTIL_VERSION_MAJOR);
        const auto resolve = [](QLibrary &library, auto &function, const char *name) {
            function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(library.resolve(name));
            return function != nullptr;
        };
        m_isComplete = resolve(format, allocContext, "avformat_alloc_context")
            && resolve(format, openInput, "avformat_open_input")
            && resolve(format, findStreamInfo, "avformat_find_stream_info")
            && resolve(format, closeInput, "avformat_close_input") && resolve(util, dictSet, "av_dict_set")
            && resolve(util, dictFree, "av_dict_free");
    }

    static const AvFormat *loaded()
    {
        static const AvFormat functions;
        return functions.m_isComplete ? &functions : nullptr;
    }

private:
    bool m_isComplete = false;
};

// The formats that count as media. All are single files that know how long they play. What libavformat reads beyond
// them is none of that: playlists and descriptions lead to other files and streams, which may never end; pictures,
// subtitles and bare samples get a length of the reader's own making, the samples by nothing but the file's name.
constexpr char formats[] = "mov,matroska,webm,avi,flv,asf,mpeg,mpegts,ogg,rm,mxf,gxf,dv,ivf,nut,nsv,wtv,swf,gif,apng,"
                           "yuv4mpegpipe,mp3,aac,ac3,eac3,dts,truehd,flac,wav,w64,aiff,caf,ape,wv,tta,tak,amr,au,voc,"
                           "mpc,mpc8,dsf";

using Clock = std::chrono::steady_clock;

// libavformat asks this before each access to the file.
int isPast(void *deadline)
{
    return Clock::now() >= *static_cast<const Clock::time_point *>(deadline) ? 1 : 0;
}

// Nothing plays for no time or for less: what says so does not know.
bool isKnown(const AVFormatContext &media)
{
    return media.duration != AV_NOPTS_VALUE && media.duration > 0;
}

} // namespace

std::optional<double> mediaDurationInSeconds(const QString &path, std::chrono::milliseconds limit)
{
    const AvFormat *const av = AvFormat::loaded();
    AVFormatContext *opened = av ? av->allocContext() : nullptr;
    if (!opened)
        return std::nullopt;
    Clock::time_point deadline = Clock::now() + limit;
    opened->interrupt_callback = {isPast, &deadline};

    AVDictionary *options = nullptr;
    av->dictSet(&options, "format_whitelist", formats, 0);
    av->dictSet(&options, "protocol_whitelist", "file", 0);
    // With the protocol before it, no path can be taken for another protocol's address.
    const QByteArray address = QByteArray("file:" + QFile::encodeName(QFileInfo(path).absoluteFilePath()));
    const int failure = av->openInput(&opened, address.constData(), nullptr, &options);
    av->dictFree(&options);
    if (failure < 0)
        return std::nullopt; // and the context is freed
    const auto close = [av](AVFormatContext *context) { av->closeInput(&context); };
    const std::unique_ptr<AVFormatContext, decltype(close)> media(opened, close);

    // Most files say it in their header. To find it otherwise, packets are read and decoders tried: far slower.
    if (!isKnown(*media)) {
        const bool isComplete = av->findStreamInfo(media.get(), nullptr) >= 0 && !isPast(&deadline);
        if (!isComplete || !isKnown(*media))
            return std::nullopt;
    }
    return double(media->duration) / AV_TIME_BASE;
}

} // namespace kx
