#pragma once

#include <string>
#include <vector>

/// Looks into the pages of the documentation.
namespace kelmo_tests {

/// The text of the code blocks with this tag, in order.
inline std::vector<std::string> CodeBlocks(const std::string& page, const std::string& tag) {
    std::vector<std::string> blocks;
    const std::string open = "\n```" + tag + "\n";
    for (size_t at = page.find(open); at != page.npos; at = page.find(open, at)) {
        at += open.size();
        blocks.push_back(page.substr(at, page.find("```", at) - at));
    }
    return blocks;
}

/// The cells of the table row that begins with this one, without the blanks around them; none when
/// there is no such row.
inline std::vector<std::string> TableRow(const std::string& page, const std::string& first) {
    std::vector<std::string> cells;
    size_t at = page.find("\n| " + first + " |");
    if (at == page.npos) return cells;
    const size_t end = page.find('\n', at + 1);
    for (at += 2; at < end;) {
        const size_t bar = page.find('|', at);
        if (bar >= end) break;
        const std::string cell = page.substr(at, bar - at);
        const size_t from = cell.find_first_not_of(' '), to = cell.find_last_not_of(' ');
        cells.push_back(from == cell.npos ? "" : cell.substr(from, to - from + 1));
        at = bar + 1;
    }
    return cells;
}

/// Where the links and pictures of a page lead, those to the web left out, without the part
/// behind '#'.
inline std::vector<std::string> LocalLinks(const std::string& page) {
    std::vector<std::string> links;
    for (size_t at = page.find("]("); at != page.npos; at = page.find("](", at)) {
        at += 2;
        const std::string link = page.substr(at, page.find_first_of("#)", at) - at);
        if (!link.empty() && link.find("://") == link.npos) links.push_back(link);
    }
    return links;
}

}  // namespace kelmo_tests
