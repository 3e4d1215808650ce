#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "minihost/command/CommandTable.h"
#include "minihost/command/Context.h"
#include "minihost/command/Operators.h"

namespace minihost {

class PlaceExpression;
struct Procedure;

/// A part of a script that has a value. Errors are thrown as ScriptFailure.
class Expression {
  public:
    explicit Expression(Position position) : position_(position) {}
    virtual ~Expression() = default;

    Value Evaluate(Context& context) const;
    /// The value as a condition; fails for arrays and for nothing.
    bool Holds(Context& context) const;
    const Position& GetPosition() const { return position_; }
    /// Null unless it is a variable, or a part of one.
    virtual const PlaceExpression* AsPlace() const { return nullptr; }
    /// Whether its value is a result that a reader of the script waits for.
    virtual bool ShowsResult() const { return true; }

  protected:
    [[noreturn]] void Fail(Context& context, std::string message) const {
        context.Fail(position_, std::move(message));
    }
    /// The value, or the failure of what made it.
    Value Checked(Context& context, Answer answer) const;
    /// Fails for a text or array beyond the limits of scripts.
    void CheckSize(Context& context, const Value& value) const;

  private:
    virtual Value Do(Context& context) const = 0;

    Position position_;
};

using ExpressionPtr = std::unique_ptr<Expression>;

class LiteralExpression : public Expression {
  public:
    LiteralExpression(Position position, Value value)
        : Expression(position), value_(std::move(value)) {}

  private:
    Value Do(Context&) const override { return value_; }

    Value value_;
};

/// `{1, 2}` or, of three numbers, `<<1, 2, 3>>`.
class ListExpression : public Expression {
  public:
    ListExpression(Position position, std::vector<ExpressionPtr> items, bool vector)
        : Expression(position), items_(std::move(items)), vector_(vector) {}

  private:
    Value Do(Context& context) const override;

    std::vector<ExpressionPtr> items_;
    bool vector_;
};

/// A variable as the parser found it: a global one, or the number of a local one.
struct VariableReference {
    Variable* global = nullptr;
    size_t local = 0;
    std::string name;

    Variable& Find(Context& context) const {
        return global ? *global : context.locals[local].Get();
    }
};

/// What can stand on the left of '=': `$a`, `$a[i]`, `$v.x`, `$a[i].x`.
class PlaceExpression : public Expression {
  public:
    PlaceExpression(Position position, VariableReference variable)
        : Expression(position), variable_(std::move(variable)) {}
    void SetIndex(ExpressionPtr index) { index_ = std::move(index); }
    void SetComponent(int component) { component_ = component; }

    const PlaceExpression* AsPlace() const override { return this; }
    bool IsWholeVariable() const { return !index_ && component_ < 0; }
    /// The variable, declared or not.
    Variable& GetVariable(Context& context) const { return variable_.Find(context); }
    /// Sets it; gives the value that it then has.
    Value Assign(Context& context, Value value) const;
    /// Reads it, changes it, writes it, with one look at the index; gives the value before and
    /// after.
    std::pair<Value, Value> Update(Context& context, Operator op, const Value& operand) const;

  private:
    Value Do(Context& context) const override;
    /// The variable, which must be declared.
    Variable& Declared(Context& context) const;
    /// The index, checked to be none below 0 and within the limit of arrays.
    size_t Index(Context& context) const;
    Value Read(Context& context, Variable& variable, size_t index) const;
    Value Write(Context& context, Variable& variable, size_t index, Value value) const;
    void CheckKind(Context& context, const Variable& variable) const;

    VariableReference variable_;
    ExpressionPtr index_;
    int component_ = -1;
};

/// `$a = value`, and with an operator `$a += value`.
class AssignExpression : public Expression {
  public:
    AssignExpression(Position position, std::unique_ptr<PlaceExpression> place,
                     std::optional<Operator> op, ExpressionPtr value)
        : Expression(position), place_(std::move(place)), op_(op), value_(std::move(value)) {}

  private:
    Value Do(Context& context) const override;

    std::unique_ptr<PlaceExpression> place_;
    std::optional<Operator> op_;
    ExpressionPtr value_;
};

/// `++$a`, `$a--`.
class StepExpression : public Expression {
  public:
    StepExpression(Position position, std::unique_ptr<PlaceExpression> place, Operator op,
                   bool givesOld)
        : Expression(position), place_(std::move(place)), op_(op), givesOld_(givesOld) {}

  private:
    Value Do(Context& context) const override;

    std::unique_ptr<PlaceExpression> place_;
    Operator op_;
    bool givesOld_;
};

/// `-a` and `!a`.
class UnaryExpression : public Expression {
  public:
    UnaryExpression(Position position, bool negates, ExpressionPtr operand)
        : Expression(position), negates_(negates), operand_(std::move(operand)) {}

  private:
    Value Do(Context& context) const override;

    bool negates_;
    ExpressionPtr operand_;
};

/// Operands with operators of one precedence between, taken from the left: a list and not a tree,
/// so that a long sum nests no deeper than a short one.
class ChainExpression : public Expression {
  public:
    struct Link {
        Operator op;
        Position position;
        ExpressionPtr operand;
    };
    ChainExpression(ExpressionPtr first, std::vector<Link> links)
        : Expression(first->GetPosition()), first_(std::move(first)), links_(std::move(links)) {}

  private:
    Value Do(Context& context) const override;

    ExpressionPtr first_;
    std::vector<Link> links_;
};

/// Operands with `&&` (or all `||`) between; stops at the first that decides.
class LogicExpression : public Expression {
  public:
    LogicExpression(bool all, std::vector<ExpressionPtr> operands)
        : Expression(operands.front()->GetPosition()), all_(all), operands_(std::move(operands)) {}

  private:
    Value Do(Context& context) const override;

    bool all_;
    std::vector<ExpressionPtr> operands_;
};

/// `a ? b : c`.
class ChoiceExpression : public Expression {
  public:
    ChoiceExpression(ExpressionPtr condition, ExpressionPtr yes, ExpressionPtr no)
        : Expression(condition->GetPosition()),
          condition_(std::move(condition)),
          yes_(std::move(yes)),
          no_(std::move(no)) {}

  private:
    Value Do(Context& context) const override {
        return (condition_->Holds(context) ? yes_ : no_)->Evaluate(context);
    }

    ExpressionPtr condition_, yes_, no_;
};

/// A vector's part of a value that is no variable: `(cross($a, $b)).x`.
class ComponentExpression : public Expression {
  public:
    ComponentExpression(ExpressionPtr base, int component)
        : Expression(base->GetPosition()), base_(std::move(base)), component_(component) {}

  private:
    Value Do(Context& context) const override;

    ExpressionPtr base_;
    int component_;
};

/// An element of a value that is no variable: `size(...)[0]`.
class ElementExpression : public Expression {
  public:
    ElementExpression(ExpressionPtr base, ExpressionPtr index)
        : Expression(base->GetPosition()), base_(std::move(base)), index_(std::move(index)) {}

  private:
    Value Do(Context& context) const override;

    ExpressionPtr base_, index_;
};

/// A call of a command or procedure, by words or with brackets.
class CallExpression : public Expression {
  public:
    CallExpression(Position position, std::string name, std::vector<ExpressionPtr> arguments)
        : Expression(position), name_(std::move(name)), arguments_(std::move(arguments)) {}

  private:
    Value Do(Context& context) const override;
    void Resolve(Context& context) const;
    Value CallEntry(Context& context, const CommandEntry& entry) const;
    Value CallProcedure(Context& context, const Procedure& procedure) const;
    /// Sets the parameters from the arguments.
    void Bind(Context& context, const Procedure& procedure, Context& inner) const;
    void RunBody(Context& context, const Procedure& procedure, Context& inner) const;

    std::string name_;
    std::vector<ExpressionPtr> arguments_;
    /// What the name meant when the set of names was last seen. It owns neither: a script may hold
    /// the procedure itself, and the code of a command goes with its module.
    mutable uint64_t seen_ = ~uint64_t{0};
    mutable const Procedure* procedure_ = nullptr;
    mutable std::weak_ptr<const CommandEntry> entry_;
};

/// `catch(...)`: 1 where the expression fails, and what it did is taken back; else 0. `catchQuiet`
/// doesn't tell the message.
class CatchExpression : public Expression {
  public:
    CatchExpression(Position position, ExpressionPtr guarded, bool quiet)
        : Expression(position), guarded_(std::move(guarded)), quiet_(quiet) {}

  private:
    Value Do(Context& context) const override;

    ExpressionPtr guarded_;
    bool quiet_;
};

}  // namespace minihost
