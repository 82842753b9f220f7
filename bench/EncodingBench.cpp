// SPDX-License-Identifier: MIT
#include "Row.h"

#include <KXFoundation/Category/Base64.h>
#include <KXFoundation/Category/DataUtil.h>

#include <QtCore/QByteArray>
#include <QtCore/QCryptographicHash>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>

namespace {

using kx::bench::timed;

QByteArray randomData(qsizetype size)
{
    std::mt19937 random(64);
    QByteArray data(size, Qt::Uninitialized);
    for (char &byte : data)
        byte = static_cast<char>(random());
    return data;
}

QByteArray inLines(const QByteArray &text)
{
    QByteArray lines;
    lines.reserve(text.size() + text.size() / 64 * 2);
    for (qsizetype at = 0; at < text.size(); at += 64) {
        if (at > 0)
            lines.append("\r\n", 2);
        lines.append(text.constData() + at, std::min<qsizetype>(64, text.size() - at));
    }
    return lines;
}

void encode(benchmark::State &state)
{
    const QByteArray data = randomData(4096);
    std::size_t length = 0;
    while (state.KeepRunning()) {
        char *text = NewBase64Encode(data.constData(), std::size_t(data.size()), true, &length);
        benchmark::DoNotOptimize(text);
        std::free(text);
    }
    if (length != std::size_t(inLines(data.toBase64()).size()))
        state.SkipWithError("not the same text");
}

void encodePeer(benchmark::State &state)
{
    const QByteArray data = randomData(4096);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(inLines(data.toBase64()));
}

void decode(benchmark::State &state)
{
    const QByteArray data = randomData(4096);
    const QByteArray text = inLines(data.toBase64());
    std::size_t length = 0;
    while (state.KeepRunning()) {
        void *bytes = NewBase64Decode(text.constData(), std::size_t(text.size()), &length);
        benchmark::DoNotOptimize(bytes);
        std::free(bytes);
    }
    if (length != std::size_t(data.size()))
        state.SkipWithError("not the same data");
}

void decodePeer(benchmark::State &state)
{
    const QByteArray text = inLines(randomData(4096).toBase64());
    while (state.KeepRunning())
        benchmark::DoNotOptimize(QByteArray::fromBase64(text));
}

// What moving the bytes alone takes.
void copy(benchmark::State &state)
{
    const QByteArray data = randomData(4096);
    while (state.KeepRunning()) {
        void *bytes = std::malloc(std::size_t(data.size()));
        std::memcpy(bytes, data.constData(), std::size_t(data.size()));
        benchmark::DoNotOptimize(bytes);
        std::free(bytes);
    }
}

constexpr qsizetype digested = 64 * 1024 * 1024;

void digest(benchmark::State &state)
{
    const QByteArray data = randomData(digested);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(kx::md5Hash(data));
}

void digestPeer(benchmark::State &state)
{
    const QByteArray data = randomData(digested);
    while (state.KeepRunning()) {
        QCryptographicHash hash(QCryptographicHash::Md5);
        hash.addData(data);
        benchmark::DoNotOptimize(hash.result());
    }
}

const bool registered = timed({"base64.encode.4kB", "ns", 0.1}, encode, encodePeer, copy)
    && timed({"base64.decode.4kB", "ns", 0.05}, decode, decodePeer, copy)
    && timed({"md5.64MB", "ms", 1.05, "chain"}, digest, digestPeer);

} // namespace
