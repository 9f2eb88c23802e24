// Writes the generated parts of the performance page, and its charts into the folder beside it.
//
//     report RESULTS_DIR PAGE
#include <stdio.h>

#include <exception>
#include <filesystem>

#include "bench/report/charts.h"
#include "bench/report/page.h"
#include "bench/report/results.h"
#include "bench/report/subjects.h"
#include "bench/report/tables.h"
#include "bench/report/targets.h"

namespace zrp_report {

namespace {

void writePage(const Results& results, const std::string& path) {
    Page page(path);
    page.replace("machine", machineList(results));
    page.replace("targets", targetTable(results));
    page.replace("encode", overviewTable(results, "encode"));
    page.replace("decode", overviewTable(results, "decode"));
    page.replace("wins", winsOfOthers(results));
    page.replace("bytes", bytesTable(results));
    page.replace("instructions", instructionTable(results));
    page.replace("messages", messageTables(results));
    page.replace("bodies", bodyTable(results));
    page.replace("hard inputs", hardInputTable(results));
    page.replace("growth", growthTable(results));
    page.replace("threads", threadTable(results));
    page.replace("sizes", sizeTable(results));
    page.replace("dump", dumpTable(results));
    page.write();
}

void writeCharts(const Results& results, const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    for (const std::string& direction : directions()) {
        writeFile(folder / (direction + ".svg"), codecChart(results, direction));
        writeFile(folder / (direction + "-by-size.svg"), bodyChart(results, direction));
    }
}

}  // namespace

}  // namespace zrp_report

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: report RESULTS_DIR PAGE\n");
        return 2;
    }
    try {
        const zrp_report::Results results(argv[1]);
        const std::filesystem::path page(argv[2]);
        zrp_report::writePage(results, page);
        zrp_report::writeCharts(results, page.parent_path() / page.stem());
    } catch (const std::exception& failure) {
        fprintf(stderr, "report: %s\n", failure.what());
        return 1;
    }
    return 0;
}
