#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace kelmo {

struct Desk;

/// Asks for a file: folders to walk through, files with certain endings, and a name to type.
class FileDialog {
  public:
    struct Request {
        std::string title, button;
        /// Those that are listed (".obj"), in lower case.
        std::vector<std::string> endings;
        /// The file is to be written: it need not exist, and one that does is asked about.
        bool writes = false;
        std::string name;
        std::function<void(const std::string&)> chosen;
    };

    /// Begins to ask, in a folder.
    void Ask(Request request, const std::string& folder);
    /// False when it is answered or given up.
    bool Draw(Desk& desk);

  private:
    void Read();
    void GoTo(const std::filesystem::path& folder);
    bool Choose(Desk& desk);
    void DrawList(bool& picked);

    struct Entry {
        std::string name;
        bool isFolder;
        std::uintmax_t size;
    };

    Request request_;
    std::filesystem::path folder_;
    std::vector<Entry> entries_;
    std::string name_, problem_, place_;
    bool overwrites_ = false;
};

}  // namespace kelmo
