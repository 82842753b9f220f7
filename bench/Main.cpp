// SPDX-License-Identifier: MIT
#include "Row.h"

#include <QtCore/QCommandLineParser>
#include <QtWidgets/QApplication>

int main(int argc, char *argv[])
{
    // One flag more than the host gives: rows of one family run shuffled together, so that drift hits both sides alike.
    char program[] = "kx_bench";
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    char *flags[] = {program, interleave, nullptr};
    int flagCount = 2;
    benchmark::Initialize(&flagCount, flags);

    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Measures the budget rows against their peers."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("json"), QStringLiteral("Write the rows to <file> as JSON."), QStringLiteral("file")},
        {QStringLiteral("page"), QStringLiteral("Write the table into the Markdown page <file>."),
            QStringLiteral("file")},
        {QStringLiteral("repetitions"), QStringLiteral("Repeat each side <n> times."), QStringLiteral("n"),
            QStringLiteral("7")},
    });
    parser.addPositionalArgument(
        QStringLiteral("pattern"), QStringLiteral("Regular expression that chooses rows by name."));
    parser.process(application);
    const QString pattern = parser.positionalArguments().value(0, QStringLiteral("."));
    const bool complete = kx::bench::runAll(pattern.toStdString(), parser.value(QStringLiteral("repetitions")).toInt(),
        parser.value(QStringLiteral("json")).toStdString(), parser.value(QStringLiteral("page")).toStdString());
    return complete ? 0 : 1;
}
