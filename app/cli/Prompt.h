#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kelmo {

/// Asks for lines: on a terminal with editing, a history that is kept from one run to the next,
/// and completion of names by the tabulator; else it reads standard input as it comes, silently.
class Prompt {
  public:
    /// `names` is asked for all names, sorted, at each completion.
    explicit Prompt(std::function<std::vector<std::string>()> names);
    ~Prompt();
    Prompt(const Prompt&) = delete;
    Prompt& operator=(const Prompt&) = delete;

    /// The next line without its end; false at the end of the input.
    bool ReadLine(const std::string& prompt, std::string& line);

  private:
    class Editor;

    /// Null where there is no terminal.
    std::unique_ptr<Editor> editor_;
};

}  // namespace kelmo
