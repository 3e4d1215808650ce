#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace minihost {

/// What words a command takes: flags with their arguments, and objects.
class Syntax {
  public:
    enum class Argument { Boolean, Int, Unsigned, Float, String };

    struct Flag {
        /// Without the '-'.
        std::string shortName, longName;
        std::vector<Argument> arguments;
        /// Whether it may be given several times.
        bool multiUse = false;
        /// Whether a query takes the arguments too; elsewhere a query takes the flag alone. When
        /// optional, it takes as many as there are.
        bool queryTakesArguments = false, queryArgumentsOptional = false;
    };

    /// Names with or without their '-'. Either name may be empty. False when there is such a flag.
    bool AddFlag(std::string_view shortName, std::string_view longName,
                 std::vector<Argument> arguments = {});
    /// The flag by either name; null when there is none.
    Flag* Find(std::string_view name);
    const Flag* Find(std::string_view name) const;

    /// `-query` (`-q`) and `-edit` (`-e`) are understood unless the syntax has flags of their
    /// names.
    void EnableQuery(bool on) { query_ = on; }
    void EnableEdit(bool on) { edit_ = on; }
    bool CanQuery() const { return query_; }
    bool CanEdit() const { return edit_; }

    /// How many words may follow that belong to no flag; `most` -1: any number.
    void SetObjects(int least, int most) {
        least_ = least;
        most_ = most;
    }
    int LeastObjects() const { return least_; }
    int MostObjects() const { return most_; }

    /// One line for each flag, for `help`, behind the name of the command.
    std::string Usage(std::string_view command) const;

  private:
    std::vector<Flag> flags_;
    bool query_ = false, edit_ = false;
    int least_ = 0, most_ = 0;
};

/// "int", "bool" and so on.
std::string_view ArgumentName(Syntax::Argument argument);

}  // namespace minihost
