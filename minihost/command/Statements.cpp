#include "minihost/command/Statements.h"

#include <fmt/core.h>

#include "minihost/command/Interpreter.h"

namespace minihost {

namespace {

Flow RunAll(const std::vector<StatementPtr>& statements, Context& context) {
    for (const StatementPtr& statement : statements)
        if (const Flow flow = statement->Run(context); flow != Flow::Next) return flow;
    return Flow::Next;
}

}  // namespace

Flow Statement::Run(Context& context) const {
    context.interpreter.Step(context, position_);
    const Interpreter::Deeper deeper(context, position_);
    return Do(context);
}

Flow ExpressionStatement::Do(Context& context) const {
    Value value = expression_->Evaluate(context);
    if (expression_->ShowsResult()) context.result = std::move(value);
    return Flow::Next;
}

Flow DeclareStatement::Do(Context& context) const {
    for (const Item& item : items_) Declare(context, item);
    return Flow::Next;
}

void DeclareStatement::Declare(Context& context, const Item& item) const {
    Variable& variable = item.variable.Find(context);
    // A global variable is set up once, by the first declaration that is reached.
    const bool fresh = !item.variable.global || !variable.IsDeclared();
    if (!fresh && variable.type != item.type)
        context.Fail(item.position,
                     fmt::format("${} is {} already and can't be {}", item.variable.name,
                                 TypeName(variable.type), TypeName(item.type)));
    if (fresh) variable.Declare(item.type);
    if (fresh && item.size) {
        const int size = item.size->Evaluate(context).AsInt();
        if (size < 0 || static_cast<size_t>(size) > context.interpreter.Limits().elements)
            context.Fail(item.position, fmt::format("{} is not the size of an array", size));
        variable.value.Resize(static_cast<size_t>(size));
    }
    if (!item.value || (global_ && !fresh)) return;
    Value value = item.value->Evaluate(context);
    const Value::Type from = value.GetType();
    if (!variable.Assign(std::move(value)))
        context.Fail(item.value->GetPosition(),
                     fmt::format("${} is {} and can't be set to {}", item.variable.name,
                                 TypeName(item.type), TypeName(from)));
    context.result = variable.value;
}

Flow BlockStatement::Do(Context& context) const {
    const Flow flow = RunAll(statements_, context);
    if (flow != Flow::Return) context.result = {};
    return flow;
}

Flow IfStatement::Do(Context& context) const {
    for (const Branch& branch : branches_) {
        if (branch.condition && !branch.condition->Holds(context)) continue;
        const Flow flow = branch.body->Run(context);
        if (flow != Flow::Return) context.result = {};
        return flow;
    }
    return Flow::Next;
}

Flow LoopStatement::Do(Context& context) const {
    RunAll(parts_.before, context);
    for (bool first = parts_.bodyFirst;; first = false) {
        context.interpreter.Step(context, GetPosition());
        if (!first && parts_.condition && !parts_.condition->Holds(context)) break;
        const Flow flow = parts_.body->Run(context);
        if (flow == Flow::Return) return flow;
        if (flow == Flow::Break) break;
        for (const ExpressionPtr& step : parts_.steps) step->Evaluate(context);
    }
    context.result = {};
    return Flow::Next;
}

Flow ForInStatement::Do(Context& context) const {
    const Value array = array_->Evaluate(context);
    if (!array.IsArray())
        context.Fail(array_->GetPosition(),
                     fmt::format("'in' goes through an array, not {}", TypeName(array.GetType())));
    if (type_ != Value::Type::Nothing) item_->GetVariable(context).Declare(type_);
    for (size_t i = 0; i < array.Size(); ++i) {
        context.interpreter.Step(context, GetPosition());
        item_->Assign(context, array.Element(i));
        const Flow flow = body_->Run(context);
        if (flow == Flow::Return) return flow;
        if (flow == Flow::Break) break;
    }
    context.result = {};
    return Flow::Next;
}

size_t SwitchStatement::Find(Context& context) const {
    const Value value = value_->Evaluate(context);
    size_t otherwise = cases_.size();
    for (size_t i = 0; i < cases_.size(); ++i) {
        if (!cases_[i].value) {
            otherwise = i;
            continue;
        }
        Answer equal = ApplyOperator(Operator::Equal, value, cases_[i].value->Evaluate(context));
        if (!equal.Good()) context.Fail(cases_[i].value->GetPosition(), equal.Message());
        if (equal.GetValue().AsBool()) return i;
    }
    return otherwise;
}

Flow SwitchStatement::Do(Context& context) const {
    for (size_t i = Find(context); i < cases_.size(); ++i) {
        const Flow flow = RunAll(cases_[i].statements, context);
        if (flow == Flow::Break) break;
        if (flow != Flow::Next) return flow;
    }
    context.result = {};
    return Flow::Next;
}

Flow JumpStatement::Do(Context& context) const {
    if (flow_ == Flow::Return) context.result = value_ ? value_->Evaluate(context) : Value();
    return flow_;
}

std::string Procedure::Signature() const {
    std::string text = returns == Value::Type::Nothing ? "" : std::string(TypeName(returns)) + " ";
    text += name + "(";
    for (const Parameter& parameter : parameters) {
        if (&parameter != &parameters.front()) text += ", ";
        text += fmt::format("{} ${}{}", TypeName(ElementType(parameter.type)), parameter.name,
                            parameter.type >= Value::Type::IntArray ? "[]" : "");
    }
    return text + ")";
}

Flow ProcedureStatement::Do(Context& context) const {
    context.interpreter.Define(context.script.shared_from_this(), procedure_);
    return Flow::Next;
}

}  // namespace minihost
