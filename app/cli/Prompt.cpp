#include "app/cli/Prompt.h"

#include <fmt/core.h>
#include <histedit.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace kelmo {

namespace {

namespace fs = std::filesystem;
constexpr int kHistoryLines = 1000;

/// Where the history is kept; empty where there is no home.
std::string HistoryFile() {
    const char *const state = std::getenv("XDG_STATE_HOME"), *const home = std::getenv("HOME");
    if (!state && !home) return {};
    const fs::path folder = (state ? fs::path(state) : fs::path(home) / ".local/state") / "kelmo";
    std::error_code failed;
    fs::create_directories(folder, failed);
    return failed ? std::string() : (folder / "history").string();
}

bool IsNamePart(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

std::vector<std::string> Beginning(const std::vector<std::string>& names,
                                   const std::string& begun) {
    std::vector<std::string> found;
    for (auto name = std::lower_bound(names.begin(), names.end(), begun);
         name != names.end() && name->starts_with(begun); ++name)
        found.push_back(*name);
    return found;
}

/// What all of these names have in common behind what they begin with; they are sorted, and some.
std::string CommonRest(const std::vector<std::string>& found, const std::string& begun) {
    // What the first and the last share, all do.
    const std::string &first = found.front(), &last = found.back();
    const auto end = std::mismatch(first.begin(), first.end(), last.begin(), last.end()).first;
    return {first.begin() + static_cast<std::ptrdiff_t>(begun.size()), end};
}

}  // namespace

class Prompt::Editor {
  public:
    explicit Editor(std::function<std::vector<std::string>()> names)
        : names_(std::move(names)),
          edit_(el_init("kelmo", stdin, stdout, stderr)),
          history_(history_init()),
          file_(HistoryFile()) {
        HistEvent event;
        history(history_, &event, H_SETSIZE, kHistoryLines);
        history(history_, &event, H_SETUNIQUE, 1);
        if (!file_.empty()) history(history_, &event, H_LOAD, file_.c_str());
        el_set(edit_, EL_CLIENTDATA, this);
        el_set(edit_, EL_EDITOR, "emacs");
        el_set(edit_, EL_HIST, history, history_);
        el_set(edit_, EL_PROMPT, &ShownPrompt);
        el_set(edit_, EL_ADDFN, "complete-name", "Complete the name", &Complete);
        el_set(edit_, EL_BIND, "^I", "complete-name", nullptr);
    }
    ~Editor() {
        HistEvent event;
        if (!file_.empty()) history(history_, &event, H_SAVE, file_.c_str());
        history_end(history_);
        el_end(edit_);
    }

    bool ReadLine(const std::string& prompt, std::string& line) {
        prompt_ = prompt;
        // Before the prompt is there, or a key that is typed at once is the terminal's.
        el_set(edit_, EL_PREP_TERM, 1);
        int length = 0;
        const char* const text = el_gets(edit_, &length);
        if (!text || length <= 0) {
            fmt::print("\n");  // what asks next begins its line
            return false;
        }
        line.assign(text, static_cast<size_t>(length));
        if (line.find_first_not_of(" \t\n") != line.npos) {
            HistEvent event;
            history(history_, &event, H_ENTER, line.c_str());
        }
        if (line.ends_with('\n')) line.pop_back();
        return true;
    }

  private:
    static Editor* Of(EditLine* edit) {
        void* self = nullptr;
        el_get(edit, EL_CLIENTDATA, &self);
        return static_cast<Editor*>(self);
    }
    static char* ShownPrompt(EditLine* edit) { return Of(edit)->prompt_.data(); }
    /// Adds what all names that fit share; where that is nothing, lists them.
    static unsigned char Complete(EditLine* edit, int) {
        const LineInfo* const info = el_line(edit);
        const char* start = info->cursor;
        while (start > info->buffer && IsNamePart(start[-1])) --start;
        const std::string begun(start, info->cursor);
        const auto found = Beginning(Of(edit)->names_(), begun);
        if (found.empty()) return CC_ERROR;
        std::string rest = CommonRest(found, begun);
        if (found.size() == 1) rest += ' ';
        if (!rest.empty()) return el_insertstr(edit, rest.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
        fmt::print("\n");
        for (const std::string& name : found) fmt::print("{}  ", name);
        fmt::print("\n");
        return CC_REDISPLAY;
    }

    std::function<std::vector<std::string>()> names_;
    EditLine* edit_;
    History* history_;
    std::string file_, prompt_;
};

Prompt::Prompt(std::function<std::vector<std::string>()> names) {
    if (isatty(STDIN_FILENO) != 0) editor_ = std::make_unique<Editor>(std::move(names));
}

Prompt::~Prompt() = default;

bool Prompt::ReadLine(const std::string& prompt, std::string& line) {
    if (editor_) return editor_->ReadLine(prompt, line);
    return static_cast<bool>(std::getline(std::cin, line));
}

}  // namespace kelmo
