#include "minihost/command/Expressions.h"

#include <fmt/core.h>

#include "minihost/command/Interpreter.h"
#include "minihost/command/Statements.h"

namespace minihost {

Value Expression::Evaluate(Context& context) const {
    const Interpreter::Deeper deeper(context, position_);
    return Do(context);
}

bool Expression::Holds(Context& context) const {
    const Value value = Evaluate(context);
    if (value.IsNone() || value.IsArray())
        Fail(context, fmt::format("a condition is a number, not {}", TypeName(value.GetType())));
    return value.AsBool();
}

Value Expression::Checked(Context& context, Answer answer) const {
    if (!answer.Good()) Fail(context, answer.Message());
    return answer.Take();
}

void Expression::CheckSize(Context& context, const Value& value) const {
    const ScriptLimits& limits = context.interpreter.Limits();
    if (value.IsString() && value.String().size() > limits.text)
        Fail(context, fmt::format("the text has more than {} bytes", limits.text));
    if (value.IsArray() && value.Size() > limits.elements)
        Fail(context, fmt::format("the array has more than {} elements", limits.elements));
}

Value ListExpression::Do(Context& context) const {
    std::vector<Value> values;
    Value::Type type = Value::Type::Nothing;
    for (const ExpressionPtr& item : items_) {
        values.push_back(item->Evaluate(context));
        const Value::Type next = values.back().GetType();
        if (next == Value::Type::Nothing || values.back().IsArray())
            context.Fail(item->GetPosition(),
                         fmt::format("{} can't stand in a list", TypeName(next)));
        type = std::max(type, next == Value::Type::Vector && type == Value::Type::String
                                  ? Value::Type::String
                                  : next);
    }
    if (vector_) return Vector3{values[0].AsFloat(), values[1].AsFloat(), values[2].AsFloat()};
    if (values.empty()) return std::vector<std::string>();
    Value array = Value::Default(ArrayType(type));
    array.Resize(values.size());
    for (size_t i = 0; i < values.size(); ++i) array.SetElement(i, values[i]);
    return array;
}

// Variables and their parts

Variable& PlaceExpression::Declared(Context& context) const {
    Variable& variable = variable_.Find(context);
    if (!variable.IsDeclared())
        Fail(context, fmt::format("${} is an undeclared variable", variable_.name));
    return variable;
}

size_t PlaceExpression::Index(Context& context) const {
    if (!index_) return 0;
    const Value index = index_->Evaluate(context);
    const size_t most = context.interpreter.Limits().elements;
    if (!index.IsNumber() || index.AsInt() < 0 || static_cast<size_t>(index.AsInt()) >= most)
        context.Fail(index_->GetPosition(), fmt::format("'{}' is not an index of an array, 0 to {}",
                                                        index.AsString(), most - 1));
    return static_cast<size_t>(index.AsInt());
}

void PlaceExpression::CheckKind(Context& context, const Variable& variable) const {
    if (index_ && !variable.value.IsArray())
        Fail(context,
             fmt::format("${} is {}, not an array", variable_.name, TypeName(variable.type)));
    const Value::Type type = index_ ? ElementType(variable.type) : variable.type;
    if (component_ >= 0 && type != Value::Type::Vector)
        Fail(context,
             fmt::format("${} is {}, not a vector", variable_.name, TypeName(variable.type)));
}

Value PlaceExpression::Read(Context& context, Variable& variable, size_t index) const {
    if (IsWholeVariable()) return variable.value;
    CheckKind(context, variable);
    Value value = variable.value;
    if (index_) {
        // Beyond the end an array reads as 0 or an empty string.
        value = index < variable.value.Size() ? variable.value.Element(index)
                                              : Value::Default(ElementType(variable.type));
    }
    return component_ < 0 ? value : Value(value.AsVector()[static_cast<size_t>(component_)]);
}

Value PlaceExpression::Do(Context& context) const {
    Variable& variable = Declared(context);
    return Read(context, variable, Index(context));
}

Value PlaceExpression::Write(Context& context, Variable& variable, size_t index,
                             Value value) const {
    const auto refuse = [&](Value::Type type) {
        Fail(context, fmt::format("${} is {} and can't be set to {}", variable_.name,
                                  TypeName(variable.type), TypeName(type)));
    };
    const Value::Type from = value.GetType();
    if (IsWholeVariable()) {
        if (!variable.Assign(std::move(value))) refuse(from);
        return variable.value;
    }
    if (value.IsNone() || value.IsArray()) refuse(from);
    if (!variable.IsDeclared() && index_) variable.Declare(ArrayType(from));
    if (!variable.IsDeclared())
        Fail(context, fmt::format("${} is an undeclared variable", variable_.name));
    CheckKind(context, variable);
    if (component_ >= 0) {
        Vector3 vector{};
        if (index < variable.value.Size()) vector = variable.value.Element(index).AsVector();
        vector[static_cast<size_t>(component_)] = value.AsFloat();
        value = vector;
    }
    if (index_)
        variable.value.SetElement(index, value);
    else
        variable.value = std::move(value);
    return Read(context, variable, index);
}

Value PlaceExpression::Assign(Context& context, Value value) const {
    return Write(context, variable_.Find(context), Index(context), std::move(value));
}

std::pair<Value, Value> PlaceExpression::Update(Context& context, Operator op,
                                                const Value& operand) const {
    Variable& variable = Declared(context);
    const size_t index = Index(context);
    Value old = Read(context, variable, index);
    Value made = Checked(context, ApplyOperator(op, old, operand));
    CheckSize(context, made);
    Value now = Write(context, variable, index, std::move(made));
    return {std::move(old), std::move(now)};
}

Value AssignExpression::Do(Context& context) const {
    Value value = value_->Evaluate(context);
    if (op_) return place_->Update(context, *op_, value).second;
    if (value.IsNone()) context.Fail(value_->GetPosition(), "there is no value to assign");
    return place_->Assign(context, std::move(value));
}

Value StepExpression::Do(Context& context) const {
    const auto [old, now] = place_->Update(context, op_, 1);
    return givesOld_ ? old : now;
}

// Operators

Value UnaryExpression::Do(Context& context) const {
    const Value value = operand_->Evaluate(context);
    if (value.IsNone() || value.IsArray() || (negates_ && value.IsString()))
        Fail(context, fmt::format("'{}' can't be applied to {}", negates_ ? '-' : '!',
                                  TypeName(value.GetType())));
    if (!negates_) return !value.AsBool();
    if (value.GetType() == Value::Type::Float) return -value.AsFloat();
    return Checked(context, ApplyOperator(Operator::Multiply, value, -1));
}

Value ChainExpression::Do(Context& context) const {
    Value value = first_->Evaluate(context);
    for (const Link& link : links_) {
        Answer answer = ApplyOperator(link.op, value, link.operand->Evaluate(context));
        if (!answer.Good()) context.Fail(link.position, answer.Message());
        value = answer.Take();
        CheckSize(context, value);
    }
    return value;
}

Value LogicExpression::Do(Context& context) const {
    for (const ExpressionPtr& operand : operands_)
        if (operand->Holds(context) != all_) return !all_;
    return all_;
}

Value ComponentExpression::Do(Context& context) const {
    const Value base = base_->Evaluate(context);
    if (base.GetType() != Value::Type::Vector)
        Fail(context, fmt::format("{} has no x, y, z; a vector has", TypeName(base.GetType())));
    return base.AsVector()[static_cast<size_t>(component_)];
}

Value ElementExpression::Do(Context& context) const {
    const Value base = base_->Evaluate(context), index = index_->Evaluate(context);
    if (!base.IsArray()) Fail(context, fmt::format("{} is not an array", TypeName(base.GetType())));
    if (!index.IsNumber() || index.AsInt() < 0)
        context.Fail(index_->GetPosition(),
                     fmt::format("'{}' is not an index of an array", index.AsString()));
    const auto at = static_cast<size_t>(index.AsInt());
    return at < base.Size() ? base.Element(at) : Value::Default(ElementType(base.GetType()));
}

// Calls

void CallExpression::Resolve(Context& context) const {
    const uint64_t version = context.interpreter.NamesVersion();
    if (seen_ == version) return;
    procedure_ = context.interpreter.FindProcedure(context.script, name_);
    entry_ = context.interpreter.Commands().Find(name_);
    seen_ = version;
}

Value CallExpression::Do(Context& context) const {
    context.interpreter.Step(context, GetPosition());
    Resolve(context);
    if (procedure_) {
        // The call may define the procedure anew.
        const auto keep = procedure_->script->shared_from_this();
        return CallProcedure(context, *procedure_);
    }
    const auto entry = entry_.lock();
    if (!entry) Fail(context, fmt::format("'{}' is an unknown command or procedure", name_));
    return CallEntry(context, *entry);
}

Value CallExpression::CallEntry(Context& context, const CommandEntry& entry) const {
    std::vector<Value> values;
    std::vector<Variable*> places;
    values.reserve(arguments_.size());
    for (const ExpressionPtr& argument : arguments_) {
        const PlaceExpression* place = entry.byReference ? argument->AsPlace() : nullptr;
        const bool whole = place && place->IsWholeVariable();
        if (entry.byReference) places.push_back(whole ? &place->GetVariable(context) : nullptr);
        // What a command fills in need not be declared.
        values.push_back(whole && !places.back()->IsDeclared() ? Value()
                                                               : argument->Evaluate(context));
    }
    CommandCall call{context.interpreter, name_, values, places};
    Value value = Checked(context, entry.function(call));
    CheckSize(context, value);
    return value;
}

void CallExpression::Bind(Context& context, const Procedure& procedure, Context& inner) const {
    const auto& parameters = procedure.parameters;
    if (arguments_.size() != parameters.size())
        Fail(context, fmt::format("{} takes {} arguments, not {}", procedure.Signature(),
                                  parameters.size(), arguments_.size()));
    for (size_t i = 0; i < parameters.size(); ++i) {
        const Expression& argument = *arguments_[i];
        inner.locals[i].Declare(parameters[i].type);
        const PlaceExpression* place = argument.AsPlace();
        Value value = argument.Evaluate(context);
        const Value::Type from = value.GetType();
        // An array is handed over as it is, so that the procedure can change it.
        if (place && place->IsWholeVariable() && value.IsArray() && from == parameters[i].type) {
            inner.locals[i].alias = &place->GetVariable(context);
        } else if (!inner.locals[i].Assign(std::move(value))) {
            context.Fail(
                argument.GetPosition(),
                fmt::format("{}: argument {} is {}", procedure.Signature(), i + 1, TypeName(from)));
        }
    }
}

/// What fails in the body is told with the way there.
void CallExpression::RunBody(Context& context, const Procedure& procedure, Context& inner) const {
    constexpr size_t kCallsTold = 10;
    try {
        if (procedure.body->Run(inner) != Flow::Return) inner.result = {};
    } catch (ScriptFailure& failure) {
        const Position& at = GetPosition();
        if (failure.error.calls.size() < kCallsTold)
            failure.error.calls.push_back(
                fmt::format("called by {}:{}:{}", context.script.source, at.line, at.column));
        throw;
    }
}

Value CallExpression::CallProcedure(Context& context, const Procedure& procedure) const {
    Context inner{
        context.interpreter, *procedure.script, std::vector<Variable>(procedure.locals), {}};
    Bind(context, procedure, inner);
    RunBody(context, procedure, inner);
    if (procedure.returns == Value::Type::Nothing) return {};
    // A procedure that ends without `return` gives what its variables would start with.
    if (inner.result.IsNone()) return Value::Default(procedure.returns);
    auto result = inner.result.To(procedure.returns);
    if (!result)
        Fail(context, fmt::format("{} returned {}", procedure.Signature(),
                                  TypeName(inner.result.GetType())));
    return std::move(*result);
}

Value CatchExpression::Do(Context& context) const {
    StatementScope* const scope = context.interpreter.Scope();
    if (scope) scope->Begin();
    try {
        guarded_->Evaluate(context);
    } catch (const ScriptFailure& failure) {
        if (scope) scope->Rollback();
        if (failure.final) throw;
        if (!quiet_) context.interpreter.Output().Error(failure.error.Text());
        return 1;
    } catch (...) {
        if (scope) scope->Rollback();
        throw;
    }
    if (scope) scope->Commit();
    return 0;
}

}  // namespace minihost
