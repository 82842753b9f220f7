// SPDX-License-Identifier: MIT
#include "Footprint.h"
#include "Work.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QElapsedTimer>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace {

constexpr int warmUpRounds = 24; // thread pools, caches and the engine's processes have come to their size
constexpr int wantedSamples = 24;

void print(const QString &text)
{
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

// Rounds until the time is over, with samples at equal distances.
QList<Footprint> soak(Work &work, double minutes)
{
    QElapsedTimer clock;
    clock.start();
    const auto elapsed = [&] { return double(clock.elapsed()) / 60'000; };
    QList<Footprint> samples;
    for (int rounds = 0; elapsed() < minutes && work.failures().isEmpty();) {
        work.round(rounds++);
        // Always after the same steps: a renderer that was replaced takes a moment to go.
        if (rounds % 12 == 0 && elapsed() >= double(samples.size() + 1) * minutes / wantedSamples) {
            samples.append(Footprint::now());
            samples.last().minutes = elapsed();
            samples.last().rounds = rounds;
        }
    }
    return samples;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Uses the whole library for a while and tells what the process holds afterwards."));
    parser.addHelpOption();
    parser.addPositionalArgument(
        QStringLiteral("minutes"), QStringLiteral("How long; 0 does each step once and measures nothing."));
    parser.process(application);
    const double minutes = parser.positionalArguments().value(0, QStringLiteral("30")).toDouble();

    Work work;
    for (int round = 0; round < (minutes > 0 ? warmUpRounds : 1); ++round)
        work.round(round);
    const QList<Footprint> samples = soak(work, minutes);
    if (minutes > 0)
        print(table(samples));

    QStringList complaints = work.failures();
    if (complaints.isEmpty() && minutes > 0)
        complaints = growth(samples);
    for (const QString &complaint : complaints)
        print(QStringLiteral("FAILED: %1").arg(complaint));
    if (complaints.isEmpty())
        print(minutes > 0 ? QStringLiteral("flat") : QStringLiteral("every step works"));
    return complaints.isEmpty() ? 0 : 1;
}
