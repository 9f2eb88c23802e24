#include "bench/report/page.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace zrp_report {

Page::Page(std::string path) : path_(std::move(path)) {
    std::ifstream file(path_);
    if (!file) {
        throw std::runtime_error("cannot read " + path_);
    }
    text_.assign(std::istreambuf_iterator<char>(file), {});
}

void Page::replace(const std::string& name, const std::string& content) {
    const std::string begin = "<!-- generated: " + name + " -->\n";
    const std::string end = "<!-- end of generated: " + name + " -->";
    const size_t from = text_.find(begin);
    const size_t to = text_.find(end);
    if (from == text_.npos || to == text_.npos || to < from) {
        throw std::runtime_error(path_ + " has no generated part " + name);
    }
    const size_t start = from + begin.size();
    text_.replace(start, to - start, content);
}

void Page::write() const {
    writeFile(path_, text_);
}

void writeFile(const std::string& path, const std::string& content) {
    std::ofstream file(path);
    file << content;
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path);
    }
}

}  // namespace zrp_report
