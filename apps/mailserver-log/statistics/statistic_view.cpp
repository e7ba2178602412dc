#include "statistics/statistic_view.h"

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <iterator>
#include <utility>

#include "output/csv_writer.h"
#include "output/json_writer.h"

namespace serverlog::program {

namespace {

constexpr std::int64_t kBarWidth = 20;
constexpr char kBlock[] = "\xe2\x96\x88";       // U+2588, full block
constexpr char kSmallBlock[] = "\xe2\x96\x8f";  // U+258F, an eighth of it

struct Line {
    std::vector<std::string> cells;
    std::int64_t number;  // what the bar shows
};

// A table of one kind of rows.
struct Section {
    const char* kind;
    std::vector<std::string> headings;
    bool newest_only;
};

const Section kSections[] = {
    {"count", {"TIME", "SENT", "RECEIVED", "BOUNCED", "RESENT", "REJECTED"}, false},
    {"top", {"TIME", "STATUS", "NAME", "COUNT"}, true},
    {"threat", {"TIME", "MAIL", "THREAT", "COUNT"}, false},
    {"address", {"TIME", "MAIL", "ADDRESS", "COUNT"}, true},
    {"origin", {"TIME", "COUNTRY", "PLACE", "COUNT"}, true},
};

std::string LocalTime(std::int64_t seconds, const char* format) {
    const auto time = static_cast<std::time_t>(seconds);
    std::tm local = {};
    char text[64];
    if (localtime_r(&time, &local) == nullptr ||
        std::strftime(text, sizeof text, format, &local) == 0) {
        return std::to_string(seconds);
    }
    return text;
}

std::string Bar(std::int64_t number, std::int64_t greatest) {
    const std::int64_t width = number * kBarWidth / std::max<std::int64_t>(greatest, 1);
    std::string bar = width == 0 && number > 0 ? kSmallBlock : "";
    for (std::int64_t i = 0; i < width; ++i) {
        bar += kBlock;
    }
    return bar;
}

// One line a period, with the counts of all statuses side by side as they come.
std::vector<Line> CountLines(const std::vector<StatisticRow>& rows, const char* time_format) {
    std::vector<Line> lines;
    std::int64_t time = -1;
    for (const StatisticRow& row : rows) {
        if (lines.empty() || row.time != time) {
            time = row.time;
            lines.push_back({{LocalTime(time, time_format)}, 0});
        }
        lines.back().cells.push_back(std::to_string(row.count));
        lines.back().number += row.count;
    }
    return lines;
}

std::vector<Line> NameLines(const std::vector<StatisticRow>& rows, const char* time_format) {
    std::vector<Line> lines;
    lines.reserve(rows.size());
    for (const StatisticRow& row : rows) {
        lines.push_back(
            {{LocalTime(row.time, time_format), row.group, row.name, std::to_string(row.count)},
             row.count});
    }
    return lines;
}

void WriteTable(std::ostream& out, std::vector<std::string> headings,
                const std::vector<Line>& lines, TableWriter::Style style) {
    std::int64_t greatest = 0;
    for (const Line& line : lines) {
        greatest = std::max(greatest, line.number);
    }
    if (style.with_colours) {
        headings.emplace_back();
    }
    TableWriter table(out, std::move(headings), style);
    for (const Line& line : lines) {
        std::vector<std::string> cells = line.cells;
        if (style.with_colours) {
            cells.push_back(Bar(line.number, greatest));
        }
        table.Write(cells);
    }
    table.Finish();
}

}  // namespace

void WriteStatisticTables(std::ostream& out, const std::vector<StatisticRow>& rows,
                          const std::string& scale, TableWriter::Style style) {
    const char* const time_format = scale == "hour" ? "%Y-%m-%d %H:%M" : "%Y-%m-%d";
    const char* gap = "";
    for (const Section& section : kSections) {
        std::vector<StatisticRow> shown;
        std::copy_if(rows.begin(), rows.end(), std::back_inserter(shown),
                     [&](const StatisticRow& row) { return row.kind == section.kind; });
        if (shown.empty()) {
            continue;
        }
        if (section.newest_only) {
            const std::int64_t newest = shown.back().time;
            shown.erase(std::remove_if(shown.begin(), shown.end(),
                                       [&](const StatisticRow& row) { return row.time != newest; }),
                        shown.end());
        }
        const bool counts = section.kind == std::string("count");
        out << std::exchange(gap, "\n");
        WriteTable(out, section.headings,
                   counts ? CountLines(shown, time_format) : NameLines(shown, time_format), style);
    }
}

void WriteStatisticCsv(std::ostream& out, const std::vector<StatisticRow>& rows) {
    CsvWriter csv(out);
    csv.Write({"kind", "time", "group", "name", "count"});
    for (const StatisticRow& row : rows) {
        csv.Write({row.kind, LocalTime(row.time, "%Y-%m-%d %H:%M:%S"), row.group, row.name,
                   std::to_string(row.count)});
    }
}

void WriteStatisticJson(std::ostream& out, const std::vector<StatisticRow>& rows) {
    JsonWriter json(out, JsonWriter::Form::kArray);
    for (const StatisticRow& row : rows) {
        Json::Value value;
        value["kind"] = row.kind;
        value["time"] = Json::Int64(row.time);
        value["group"] = row.group;
        value["name"] = row.name;
        value["count"] = Json::Int64(row.count);
        json.Write(value);
    }
    json.Finish();
}

}  // namespace serverlog::program
