// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/MediaDuration.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLibrary>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

extern "C" {
#include <libavformat/avformat.h>
}

namespace kx {

namespace {

// The functions that are called. Only their declarations are known to the build: linking the library would cost every
// program the time to load it and all that it needs.
struct AvFormat {
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
        m_isComplete = resolve(format, openInput, "avformat_open_input")
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

// Readers that give a single picture, or any text as an animation, a length of their own making.
bool inventsDurations(const AVInputFormat *format)
{
    constexpr std::array<std::string_view, 2> names{"image2", "tty"};
    return std::find(names.begin(), names.end(), format->name) != names.end();
}

// Nothing plays for no time or for less: what says so does not know.
bool isKnown(const AVFormatContext &media)
{
    return media.duration != AV_NOPTS_VALUE && media.duration > 0;
}

} // namespace

std::optional<double> mediaDurationInSeconds(const QString &path)
{
    const AvFormat *const av = AvFormat::loaded();
    if (!av)
        return std::nullopt;

    AVFormatContext *opened = nullptr;
    AVDictionary *options = nullptr;
    // A playlist may name other files, but nothing beyond this machine.
    av->dictSet(&options, "protocol_whitelist", "file", 0);
    // With the protocol before it, no path can be taken for another protocol's address.
    const QByteArray address = QByteArray("file:" + QFile::encodeName(QFileInfo(path).absoluteFilePath()));
    const int failure = av->openInput(&opened, address.constData(), nullptr, &options);
    av->dictFree(&options);
    if (failure < 0)
        return std::nullopt;
    const auto close = [av](AVFormatContext *context) { av->closeInput(&context); };
    const std::unique_ptr<AVFormatContext, decltype(close)> media(opened, close);

    if (inventsDurations(media->iformat))
        return std::nullopt;
    // Most files say it in their header. To find it otherwise, packets are read and decoders tried: far slower.
    if (!isKnown(*media) && av->findStreamInfo(media.get(), nullptr) < 0)
        return std::nullopt;
    return isKnown(*media) ? std::optional(double(media->duration) / AV_TIME_BASE) : std::nullopt;
}

} // namespace kx
