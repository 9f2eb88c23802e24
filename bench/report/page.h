// The page: text by hand around parts that are generated. A generated part lies between the lines
//
//     <!-- generated: NAME -->
//     <!-- end of generated: NAME -->
#pragma once

#include <string>

namespace zrp_report {

class Page {
  public:
    /// Reads the page; throws when it cannot.
    explicit Page(std::string path);

    /// Puts `content` into the part of this name; throws when the page has none.
    void replace(const std::string& name, const std::string& content);
    void write() const;

  private:
    std::string path_;
    std::string text_;
};

/// Writes a file; throws when it cannot.
void writeFile(const std::string& path, const std::string& content);

}  // namespace zrp_report
