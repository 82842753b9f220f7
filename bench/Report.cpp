// SPDX-License-Identifier: MIT
#include "Report.h"

#include <QtCore/QDate>
#include <QtCore/QSysInfo>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <thread>

namespace kx::bench {

namespace {

std::string numberText(std::optional<double> value)
{
    if (!value)
        return "-";
    char text[64];
    const double size = std::fabs(*value);
    std::snprintf(text, sizeof text, size >= 100 ? "%.0f" : size >= 10 ? "%.1f" : size >= 1 ? "%.2f" : "%.3f", *value);
    return text;
}

std::string jsonNumber(std::optional<double> value)
{
    if (!value)
        return "null";
    char text[64];
    std::snprintf(text, sizeof text, "%.6g", *value);
    return text;
}

std::string floorText(const Result &result)
{
    return result.floor || result.row.floorText.empty() ? numberText(result.floor) : result.row.floorText;
}

std::string processor()
{
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);) {
        const auto colon = line.find(": ");
        if (line.rfind("model name", 0) == 0 && colon != std::string::npos)
            return line.substr(colon + 2);
    }
    return "an unknown processor";
}

std::string pageTable(const std::vector<Result> &results)
{
    const std::string day = QDate::currentDate().toString(Qt::ISODate).toStdString();
    std::string text = "\nMeasured on " + day + " with Qt " + qVersion() + " and GCC " + __VERSION__ + ", on "
        + std::to_string(std::thread::hardware_concurrency()) + " cores of " + processor() + ".\n\n"
        + "| row | unit | ours | peer | ratio | budget | floor |\n|---|---|---|---|---|---|---|\n";
    for (const Result &result : results) {
        const std::string ratio = numberText(result.ratio());
        text += "| `" + result.row.name + "` | " + result.row.unit + " | " + numberText(result.ours) + " | "
            + numberText(result.peer) + " | " + (result.isOverBudget() ? "**" + ratio + "**" : ratio) + " | "
            + numberText(result.row.budget) + " | " + floorText(result) + " |\n";
    }
    return text + "\n";
}

} // namespace

std::optional<double> Result::ratio() const
{
    return ours && peer && *peer > 0 ? std::optional(*ours / *peer) : std::nullopt;
}

bool Result::isOverBudget() const
{
    return ratio().value_or(0) > row.budget;
}

void printTable(const std::vector<Result> &results)
{
    std::printf("%-24s %6s %10s %10s %7s %10s %7s\n", "name", "unit", "ours", "peer", "ratio", "floor", "budget");
    for (const Result &result : results) {
        std::printf("%-24s %6s %10s %10s %7s %10s %6sx%s\n", result.row.name.c_str(), result.row.unit.c_str(),
            numberText(result.ours).c_str(), numberText(result.peer).c_str(), numberText(result.ratio()).c_str(),
            floorText(result).c_str(), numberText(result.row.budget).c_str(),
            result.isOverBudget() ? "  over budget" : "");
    }
}

bool writeJson(const std::vector<Result> &results, const std::string &path)
{
    std::string json;
    for (const Result &result : results) {
        json += (json.empty() ? "  " : ",\n  ") + (R"({"name": ")" + result.row.name) + R"(", "ours": )"
            + jsonNumber(result.ours) + R"(, "peer": )" + jsonNumber(result.peer) + R"(, "unit": ")" + result.row.unit
            + R"(", "ratio": )" + jsonNumber(result.ratio()) + R"(, "floor": )" + jsonNumber(result.floor) + "}";
    }
    std::ofstream out(path);
    out << "[\n" << json << "\n]\n";
    return out.good();
}

bool writePage(const std::vector<Result> &results, const std::string &path)
{
    std::ifstream in(path);
    std::string text{std::istreambuf_iterator<char>(in), {}};
    const std::string begin = "<!-- measured -->\n";
    const auto first = text.find(begin);
    const auto last = text.find("<!-- /measured -->\n");
    if (first == std::string::npos || last == std::string::npos || last < first) {
        std::fprintf(stderr, "%s has no place for the table\n", path.c_str());
        return false;
    }
    text.replace(first + begin.size(), last - first - begin.size(), pageTable(results));
    std::ofstream out(path);
    out << text;
    return out.good();
}

} // namespace kx::bench
