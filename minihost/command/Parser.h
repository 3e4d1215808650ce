#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "minihost/command/Interpreter.h"
#include "minihost/command/Lexer.h"
#include "minihost/command/Statements.h"

namespace minihost {

/// Reads a script into statements, by recursive descent. Local variables get their places here;
/// global ones are looked up by name here, and whether they are declared is seen when they are
/// used.
class Parser {
  public:
    /// The text must outlive the parser, the globals the script. A global variable that the script
    /// names is there afterwards, undeclared.
    Parser(std::string_view text, const ScriptSource& source, GlobalVariables& globals);

    /// Reads all of it, once. Throws ScriptFailure.
    std::shared_ptr<const Script> ReadScript();

  private:
    /// One level of nesting deeper, as long as it lives.
    class Nested {
      public:
        explicit Nested(Parser& parser) : parser_(parser) {
            if (++parser_.depth_ > kMost)
                parser_.lexer_.Fail(parser_.lexer_.Peek().position,
                                    "brackets and blocks are nested too deeply");
        }
        ~Nested() { --parser_.depth_; }
        Nested(const Nested&) = delete;
        Nested& operator=(const Nested&) = delete;

      private:
        static constexpr int kMost = 200;

        Parser& parser_;
    };
    /// The names of a block: local variables, or global ones that a procedure declared.
    using Block = std::map<std::string, VariableReference, std::less<>>;
    /// What is being read: the top level, or a procedure.
    struct Routine {
        /// None on the top level.
        Procedure* procedure = nullptr;
        std::vector<Block> blocks;
        size_t locals = 0;
        int loops = 0, switches = 0;
    };

    // Statements (Parser.cpp)
    StatementPtr ReadStatement();
    /// Null when the name is no keyword.
    StatementPtr ReadKeyword(const Token& name);
    StatementPtr ReadBlock();
    StatementPtr ReadIf(const Position& position);
    StatementPtr ReadWhile(const Position& position);
    StatementPtr ReadDo(const Position& position);
    StatementPtr ReadFor(const Position& position);
    StatementPtr ReadForIn(const Position& position, Value::Type type, const Token& variable);
    StatementPtr ReadForSteps(const Position& position, std::vector<StatementPtr> before);
    StatementPtr ReadSwitch(const Position& position);
    StatementPtr ReadJump(const Token& keyword);
    StatementPtr ReadReturn(const Position& position);
    StatementPtr ReadGlobal(const Position& position);
    StatementPtr ReadDeclaration(const Position& position, Value::Type type, bool global);
    DeclareStatement::Item ReadDeclared(Value::Type type, bool global);
    StatementPtr ReadProcedure(const Position& position, bool global);
    void ReadParameters(Procedure& procedure);
    StatementPtr ReadBody();
    StatementPtr ReadExpressionStatement();
    /// A comma-separated list of expressions, up to a sign that it does not take.
    std::vector<ExpressionPtr> ReadSteps(std::string_view end);

    // Expressions (ParserExpressions.cpp)
    ExpressionPtr ReadExpression();
    /// The rest of an expression that begins with `left`; null: all of it.
    ExpressionPtr ReadRest(ExpressionPtr left);
    ExpressionPtr ReadLogic(bool all, ExpressionPtr left);
    ExpressionPtr ReadChain(int precedence, ExpressionPtr left);
    ExpressionPtr ReadUnary();
    ExpressionPtr ReadPrimary();
    ExpressionPtr ReadPostfix(ExpressionPtr base);
    ExpressionPtr ReadNamed(const Token& name);
    ExpressionPtr ReadList(const Position& position, std::string_view end, bool vector);
    ExpressionPtr ReadBackquoted(const Position& position);
    /// The variable and what is behind it: `[i]`, `.x`; in a word without blanks between.
    std::unique_ptr<PlaceExpression> ReadPlace(const Token& variable, bool word);
    ExpressionPtr ReadAssignment(std::unique_ptr<PlaceExpression> place);
    /// Where the name of a command or procedure stands. In an expression brackets must follow.
    enum class At { Statement, Backquotes, Expression };
    /// Reads what is behind the name. `words`: set to whether it was words, so that no operator can
    /// follow.
    ExpressionPtr ReadInvocation(const Token& name, At at, bool& words);
    std::vector<ExpressionPtr> ReadArguments();
    void ReadWords(std::vector<ExpressionPtr>& words, bool quoted);
    ExpressionPtr ReadWord();
    /// The number of `x`, `y` or `z`, which comes next.
    int ReadComponent();

    // Names
    /// Finds a variable; one that is `assigned` and not there yet is made.
    VariableReference FindVariable(const Token& variable, bool assigned);
    VariableReference DeclareVariable(const Token& variable, bool global);
    bool AtTopLevel() const { return !routine_.procedure && routine_.blocks.empty(); }

    // Tokens
    bool Takes(std::string_view sign);
    void Expect(std::string_view sign, std::string_view where);
    void ExpectEnd(std::string_view what);
    Token ExpectVariable(std::string_view where);
    [[noreturn]] void FailAt(const Token& token, std::string message) const {
        lexer_.Fail(token.position, std::move(message), token.kind == Token::Kind::End);
    }

    Lexer lexer_;
    bool interactive_;
    GlobalVariables& globals_;
    std::shared_ptr<Script> script_;
    Routine routine_;
    /// Global variables that the script declares or assigns, up to here.
    std::set<std::string, std::less<>> assigned_;
    int depth_ = 0;
};

/// The type that a keyword names; Nothing for other words.
Value::Type TypeOfKeyword(std::string_view word);

/// What errors call a token.
std::string Shown(const Token& token);

}  // namespace minihost
