#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "minihost/command/Expressions.h"

namespace minihost {

/// How a statement ended.
enum class Flow { Next, Break, Continue, Return };

class Statement {
  public:
    explicit Statement(Position position) : position_(position) {}
    virtual ~Statement() = default;

    Flow Run(Context& context) const;
    const Position& GetPosition() const { return position_; }

  private:
    virtual Flow Do(Context& context) const = 0;

    Position position_;
};

using StatementPtr = std::unique_ptr<Statement>;

class ExpressionStatement : public Statement {
  public:
    explicit ExpressionStatement(ExpressionPtr expression)
        : Statement(expression->GetPosition()), expression_(std::move(expression)) {}

  private:
    Flow Do(Context& context) const override;

    ExpressionPtr expression_;
};

/// `global int $a = 1, $b[];`
class DeclareStatement : public Statement {
  public:
    struct Item {
        Position position;
        VariableReference variable;
        Value::Type type;
        /// Null where it is not given.
        ExpressionPtr size, value;
    };
    DeclareStatement(Position position, bool global, std::vector<Item> items)
        : Statement(position), global_(global), items_(std::move(items)) {}

  private:
    Flow Do(Context& context) const override;
    void Declare(Context& context, const Item& item) const;

    bool global_;
    std::vector<Item> items_;
};

class BlockStatement : public Statement {
  public:
    BlockStatement(Position position, std::vector<StatementPtr> statements)
        : Statement(position), statements_(std::move(statements)) {}

  private:
    Flow Do(Context& context) const override;

    std::vector<StatementPtr> statements_;
};

/// `if`, any number of `else if`, `else`.
class IfStatement : public Statement {
  public:
    struct Branch {
        /// Null for `else`.
        ExpressionPtr condition;
        StatementPtr body;
    };
    IfStatement(Position position, std::vector<Branch> branches)
        : Statement(position), branches_(std::move(branches)) {}

  private:
    Flow Do(Context& context) const override;

    std::vector<Branch> branches_;
};

/// `while`, `do` and `for` with a condition.
class LoopStatement : public Statement {
  public:
    struct Parts {
        /// Any may be missing.
        std::vector<StatementPtr> before;
        ExpressionPtr condition;
        std::vector<ExpressionPtr> steps;
        StatementPtr body;
        /// `do`: the condition is looked at behind the body.
        bool bodyFirst = false;
    };
    LoopStatement(Position position, Parts parts) : Statement(position), parts_(std::move(parts)) {}

  private:
    Flow Do(Context& context) const override;

    Parts parts_;
};

/// `for ($item in $array)`.
class ForInStatement : public Statement {
  public:
    ForInStatement(Position position, std::unique_ptr<PlaceExpression> item, Value::Type type,
                   ExpressionPtr array, StatementPtr body)
        : Statement(position),
          item_(std::move(item)),
          type_(type),
          array_(std::move(array)),
          body_(std::move(body)) {}

  private:
    Flow Do(Context& context) const override;

    std::unique_ptr<PlaceExpression> item_;
    /// Nothing where the item is not declared in the loop.
    Value::Type type_;
    ExpressionPtr array_;
    StatementPtr body_;
};

class SwitchStatement : public Statement {
  public:
    struct Case {
        /// Null for `default`.
        ExpressionPtr value;
        std::vector<StatementPtr> statements;
    };
    SwitchStatement(Position position, ExpressionPtr value, std::vector<Case> cases)
        : Statement(position), value_(std::move(value)), cases_(std::move(cases)) {}

  private:
    Flow Do(Context& context) const override;
    /// The number of the case to begin with; that of cases when none fits.
    size_t Find(Context& context) const;

    ExpressionPtr value_;
    std::vector<Case> cases_;
};

/// `break`, `continue`, `return`.
class JumpStatement : public Statement {
  public:
    JumpStatement(Position position, Flow flow, ExpressionPtr value = nullptr)
        : Statement(position), flow_(flow), value_(std::move(value)) {}

  private:
    Flow Do(Context& context) const override;

    Flow flow_;
    ExpressionPtr value_;
};

/// A procedure of a script.
struct Procedure {
    struct Parameter {
        std::string name;
        Value::Type type;
    };
    std::string name;
    Position position;
    /// Nothing when it gives nothing.
    Value::Type returns = Value::Type::Nothing;
    /// They are the first of the local variables.
    std::vector<Parameter> parameters;
    size_t locals = 0;
    StatementPtr body;
    /// Whether other scripts see it.
    bool global = false;
    const Script* script = nullptr;

    /// "string[] f(int $a, float $b[])".
    std::string Signature() const;
};

/// A procedure's definition; the procedure exists from when it is reached.
class ProcedureStatement : public Statement {
  public:
    explicit ProcedureStatement(std::shared_ptr<Procedure> procedure)
        : Statement(procedure->position), procedure_(std::move(procedure)) {}

  private:
    Flow Do(Context& context) const override;

    std::shared_ptr<Procedure> procedure_;
};

/// A script that was read. Its procedures keep it alive.
class Script : public std::enable_shared_from_this<Script> {
  public:
    /// What errors call it.
    std::string source;
    std::vector<StatementPtr> statements;
    size_t locals = 0;
    /// Procedures that are not global and were reached.
    mutable std::map<std::string, std::shared_ptr<const Procedure>, std::less<>> procedures;
};

}  // namespace minihost
