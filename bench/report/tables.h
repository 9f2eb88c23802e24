// The tables of the page.
#pragma once

#include <string>
#include <vector>

#include "bench/report/results.h"

namespace zrp_report {

/// A Markdown table; the first column is text, the others are numbers.
class Table {
  public:
    explicit Table(const std::vector<std::string>& headings);
    void add(const std::vector<std::string>& cells);
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

std::string machineList(const Results& results);
/// Nanoseconds of every codec and main message.
std::string overviewTable(const Results& results, const std::string& direction);
/// Encoded bytes of every codec and main message.
std::string bytesTable(const Results& results);
/// Where another codec takes less time than this one's varint flavour.
std::string winsOfOthers(const Results& results);
/// All that is known of one message after the other.
std::string messageTables(const Results& results);
std::string instructionTable(const Results& results);
std::string bodyTable(const Results& results);
std::string threadTable(const Results& results);
std::string hardInputTable(const Results& results);
std::string growthTable(const Results& results);
std::string dumpTable(const Results& results);
std::string sizeTable(const Results& results);

/// The body sizes that were measured, ascending.
std::vector<size_t> bodySizes(const Results& results);
/// The kinds of growing input that were measured.
std::vector<std::string> growthKinds(const Results& results);

}  // namespace zrp_report
