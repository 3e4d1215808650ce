#include "minihost/command/Parser.h"

#include <fmt/core.h>

namespace minihost {

Value::Type TypeOfKeyword(std::string_view word) {
    for (const auto type :
         {Value::Type::Int, Value::Type::Float, Value::Type::String, Value::Type::Vector})
        if (TypeName(type) == word) return type;
    return Value::Type::Nothing;
}

std::string Shown(const Token& token) {
    switch (token.kind) {
        case Token::Kind::End:
            return "the end of the script";
        case Token::Kind::Variable:
            return fmt::format("'${}'", token.text);
        case Token::Kind::Literal:
            return token.value.IsString() ? "a string" : fmt::format("'{}'", token.text);
        default:
            return fmt::format("'{}'", token.text);
    }
}

Parser::Parser(std::string_view text, const ScriptSource& source, GlobalVariables& globals)
    : lexer_(text, source.name),
      interactive_(source.interactive),
      globals_(globals),
      script_(std::make_shared<Script>()) {
    script_->source = source.name;
}

std::shared_ptr<const Script> Parser::ReadScript() {
    while (lexer_.Peek().kind != Token::Kind::End) {
        StatementPtr statement = ReadStatement();
        if (statement) script_->statements.push_back(std::move(statement));
    }
    script_->locals = routine_.locals;
    return script_;
}

bool Parser::Takes(std::string_view sign) {
    if (!lexer_.Peek().Is(sign)) return false;
    lexer_.Next();
    return true;
}

void Parser::Expect(std::string_view sign, std::string_view where) {
    if (!Takes(sign))
        FailAt(lexer_.Peek(),
               fmt::format("'{}' is expected {}, not {}", sign, where, Shown(lexer_.Peek())));
}

/// The last statement of a script needs no ';'.
void Parser::ExpectEnd(std::string_view what) {
    if (lexer_.Peek().kind != Token::Kind::End) Expect(";", fmt::format("behind {}", what));
}

Token Parser::ExpectVariable(std::string_view where) {
    if (lexer_.Peek().kind != Token::Kind::Variable)
        FailAt(lexer_.Peek(), fmt::format("a variable like $name is expected {}, not {}", where,
                                          Shown(lexer_.Peek())));
    return lexer_.Next();
}

VariableReference Parser::DeclareVariable(const Token& variable, bool global) {
    const std::string name(variable.text);
    VariableReference reference{nullptr, 0, name};
    if (global || AtTopLevel()) {
        reference.global = &globals_[name];
        if (AtTopLevel()) assigned_.insert(name);
    } else {
        reference.local = routine_.locals++;
    }
    if (!AtTopLevel()) routine_.blocks.back()[name] = reference;
    return reference;
}

VariableReference Parser::FindVariable(const Token& variable, bool assigned) {
    for (auto block = routine_.blocks.rbegin(); block != routine_.blocks.rend(); ++block)
        if (const auto found = block->find(variable.text); found != block->end())
            return found->second;
    if (routine_.procedure) {
        if (assigned) return DeclareVariable(variable, false);
        FailAt(variable, fmt::format("${} is an undeclared variable; a global one is declared in "
                                     "the procedure too",
                                     variable.text));
    }
    if (assigned && !AtTopLevel() && !assigned_.count(variable.text)) {
        const auto known = globals_.find(variable.text);
        if (known == globals_.end() || !known->second.IsDeclared())
            return DeclareVariable(variable, false);
    }
    if (assigned && AtTopLevel()) assigned_.emplace(variable.text);
    return {&globals_[std::string(variable.text)], 0, std::string(variable.text)};
}

StatementPtr Parser::ReadStatement() {
    const Nested nested(*this);
    const Token& next = lexer_.Peek();
    if (next.Is("{")) return ReadBlock();
    if (next.Is(";")) {
        const Position position = lexer_.Next().position;
        return std::make_unique<BlockStatement>(position, std::vector<StatementPtr>());
    }
    if (next.kind != Token::Kind::Name) {
        StatementPtr statement = ReadExpressionStatement();
        ExpectEnd("the expression");
        return statement;
    }
    const Token name = lexer_.Next();
    if (StatementPtr statement = ReadKeyword(name)) return statement;
    bool words = false;
    ExpressionPtr call = ReadInvocation(name, At::Statement, words);
    if (!words) call = ReadRest(ReadPostfix(std::move(call)));
    ExpectEnd(words ? "the command" : "the expression");
    return std::make_unique<ExpressionStatement>(std::move(call));
}

StatementPtr Parser::ReadKeyword(const Token& name) {
    const Position at = name.position;
    if (name.text == "if") return ReadIf(at);
    if (name.text == "while") return ReadWhile(at);
    if (name.text == "do") return ReadDo(at);
    if (name.text == "for") return ReadFor(at);
    if (name.text == "switch") return ReadSwitch(at);
    if (name.text == "break" || name.text == "continue") return ReadJump(name);
    if (name.text == "return") return ReadReturn(at);
    if (name.text == "global") return ReadGlobal(at);
    if (name.text == "proc") return ReadProcedure(at, interactive_);
    const Value::Type type = TypeOfKeyword(name.text);
    if (type != Value::Type::Nothing && lexer_.Peek().kind == Token::Kind::Variable)
        return ReadDeclaration(at, type, false);
    for (const std::string_view stray : {"else", "case", "default"})
        if (name.text == stray)
            FailAt(name, fmt::format("'{}' has no {} before it", stray,
                                     stray == "else" ? "'if'" : "'switch'"));
    return nullptr;
}

StatementPtr Parser::ReadExpressionStatement() {
    return std::make_unique<ExpressionStatement>(ReadExpression());
}

StatementPtr Parser::ReadBlock() {
    const Position position = lexer_.Next().position;
    routine_.blocks.emplace_back();
    std::vector<StatementPtr> statements;
    while (!Takes("}")) {
        if (lexer_.Peek().kind == Token::Kind::End)
            FailAt(lexer_.Peek(),
                   fmt::format("the block that begins in line {} has no '}}'", position.line));
        statements.push_back(ReadStatement());
    }
    routine_.blocks.pop_back();
    return std::make_unique<BlockStatement>(position, std::move(statements));
}

/// The body of a loop or a branch.
StatementPtr Parser::ReadBody() {
    if (lexer_.Peek().kind == Token::Kind::End)
        FailAt(lexer_.Peek(), "a statement is expected, not the end of the script");
    return ReadStatement();
}

StatementPtr Parser::ReadIf(const Position& position) {
    std::vector<IfStatement::Branch> branches;
    bool open = true;
    while (open) {
        Expect("(", "behind 'if'");
        ExpressionPtr condition = ReadExpression();
        Expect(")", "behind the condition");
        branches.push_back({std::move(condition), ReadBody()});
        open = false;
        if (!lexer_.Peek().IsName("else")) break;
        lexer_.Next();
        open = lexer_.Peek().IsName("if");
        if (open)
            lexer_.Next();
        else
            branches.push_back({nullptr, ReadBody()});
    }
    return std::make_unique<IfStatement>(position, std::move(branches));
}

StatementPtr Parser::ReadWhile(const Position& position) {
    LoopStatement::Parts parts;
    Expect("(", "behind 'while'");
    parts.condition = ReadExpression();
    Expect(")", "behind the condition");
    ++routine_.loops;
    parts.body = ReadBody();
    --routine_.loops;
    return std::make_unique<LoopStatement>(position, std::move(parts));
}

StatementPtr Parser::ReadDo(const Position& position) {
    LoopStatement::Parts parts;
    parts.bodyFirst = true;
    ++routine_.loops;
    parts.body = ReadBody();
    --routine_.loops;
    if (!lexer_.Peek().IsName("while"))
        FailAt(lexer_.Peek(), fmt::format("'while' is expected behind the body of 'do', not {}",
                                          Shown(lexer_.Peek())));
    lexer_.Next();
    Expect("(", "behind 'while'");
    parts.condition = ReadExpression();
    Expect(")", "behind the condition");
    ExpectEnd("'do'");
    return std::make_unique<LoopStatement>(position, std::move(parts));
}

StatementPtr Parser::ReadFor(const Position& position) {
    Expect("(", "behind 'for'");
    std::vector<StatementPtr> before;
    const Token first = lexer_.Peek();
    const Value::Type type =
        first.kind == Token::Kind::Name ? TypeOfKeyword(first.text) : Value::Type::Nothing;
    if (type != Value::Type::Nothing) {
        lexer_.Next();
        const Token variable = ExpectVariable("behind the type");
        if (lexer_.Peek().IsName("in")) return ReadForIn(position, type, variable);
        Expect("=", "behind the variable");
        DeclareStatement::Item item{variable.position, DeclareVariable(variable, false), type,
                                    nullptr, ReadExpression()};
        std::vector<DeclareStatement::Item> items;
        items.push_back(std::move(item));
        while (Takes(",")) items.push_back(ReadDeclared(type, false));
        before.push_back(
            std::make_unique<DeclareStatement>(first.position, false, std::move(items)));
    } else if (first.kind == Token::Kind::Variable) {
        const Token variable = lexer_.Next();
        if (lexer_.Peek().IsName("in")) return ReadForIn(position, type, variable);
        ExpressionPtr rest = ReadRest(ReadAssignment(ReadPlace(variable, false)));
        before.push_back(std::make_unique<ExpressionStatement>(std::move(rest)));
        if (Takes(","))
            for (ExpressionPtr& step : ReadSteps(";"))
                before.push_back(std::make_unique<ExpressionStatement>(std::move(step)));
    } else {
        for (ExpressionPtr& step : ReadSteps(";"))
            before.push_back(std::make_unique<ExpressionStatement>(std::move(step)));
    }
    return ReadForSteps(position, std::move(before));
}

StatementPtr Parser::ReadForSteps(const Position& position, std::vector<StatementPtr> before) {
    LoopStatement::Parts parts;
    parts.before = std::move(before);
    Expect(";", "behind the start of 'for'");
    if (!lexer_.Peek().Is(";")) parts.condition = ReadExpression();
    Expect(";", "behind the condition of 'for'");
    parts.steps = ReadSteps(")");
    Expect(")", "behind the steps of 'for'");
    ++routine_.loops;
    parts.body = ReadBody();
    --routine_.loops;
    return std::make_unique<LoopStatement>(position, std::move(parts));
}

StatementPtr Parser::ReadForIn(const Position& position, Value::Type type, const Token& variable) {
    lexer_.Next();
    ExpressionPtr array = ReadExpression();
    Expect(")", "behind the array of 'for'");
    auto item = std::make_unique<PlaceExpression>(
        variable.position, type == Value::Type::Nothing ? FindVariable(variable, true)
                                                        : DeclareVariable(variable, false));
    ++routine_.loops;
    StatementPtr body = ReadBody();
    --routine_.loops;
    return std::make_unique<ForInStatement>(position, std::move(item), type, std::move(array),
                                            std::move(body));
}

std::vector<ExpressionPtr> Parser::ReadSteps(std::string_view end) {
    std::vector<ExpressionPtr> steps;
    if (lexer_.Peek().Is(end)) return steps;
    do steps.push_back(ReadExpression());
    while (Takes(","));
    return steps;
}

StatementPtr Parser::ReadSwitch(const Position& position) {
    Expect("(", "behind 'switch'");
    ExpressionPtr value = ReadExpression();
    Expect(")", "behind the value of 'switch'");
    Expect("{", "behind 'switch (...)'");
    routine_.blocks.emplace_back();
    ++routine_.switches;
    std::vector<SwitchStatement::Case> cases;
    while (!Takes("}")) {
        const bool otherwise = lexer_.Peek().IsName("default");
        if (otherwise || lexer_.Peek().IsName("case")) {
            lexer_.Next();
            cases.push_back({otherwise ? nullptr : ReadExpression(), {}});
            Expect(":", otherwise ? "behind 'default'" : "behind the value of 'case'");
        } else if (cases.empty() || lexer_.Peek().kind == Token::Kind::End) {
            FailAt(lexer_.Peek(), fmt::format("'case', 'default' or '}}' is expected, not {}",
                                              Shown(lexer_.Peek())));
        } else {
            cases.back().statements.push_back(ReadStatement());
        }
    }
    --routine_.switches;
    routine_.blocks.pop_back();
    return std::make_unique<SwitchStatement>(position, std::move(value), std::move(cases));
}

StatementPtr Parser::ReadJump(const Token& keyword) {
    const bool leaves = keyword.text == "break";
    if (routine_.loops == 0 && !(leaves && routine_.switches > 0))
        FailAt(keyword, fmt::format("'{}' stands in no loop", keyword.text));
    ExpectEnd(fmt::format("'{}'", keyword.text));
    return std::make_unique<JumpStatement>(keyword.position, leaves ? Flow::Break : Flow::Continue);
}

StatementPtr Parser::ReadReturn(const Position& position) {
    if (!routine_.procedure) lexer_.Fail(position, "'return' stands in no procedure");
    const bool gives = routine_.procedure->returns != Value::Type::Nothing;
    ExpressionPtr value;
    if (gives) {
        value = ReadExpression();
    } else if (!lexer_.Peek().Is(";")) {
        FailAt(lexer_.Peek(), fmt::format("{} has no return type, so 'return' takes no value",
                                          routine_.procedure->name));
    }
    ExpectEnd("'return'");
    return std::make_unique<JumpStatement>(position, Flow::Return, std::move(value));
}

StatementPtr Parser::ReadGlobal(const Position& position) {
    const Token what = lexer_.Next();
    if (what.IsName("proc")) return ReadProcedure(position, true);
    const Value::Type type =
        what.kind == Token::Kind::Name ? TypeOfKeyword(what.text) : Value::Type::Nothing;
    if (type == Value::Type::Nothing)
        FailAt(what,
               fmt::format("'proc' or a type is expected behind 'global', not {}", Shown(what)));
    return ReadDeclaration(position, type, true);
}

DeclareStatement::Item Parser::ReadDeclared(Value::Type type, bool global) {
    const Token variable = ExpectVariable("in a declaration");
    DeclareStatement::Item item{variable.position, {}, type, nullptr, nullptr};
    if (Takes("[")) {
        item.type = ArrayType(type);
        if (!lexer_.Peek().Is("]")) item.size = ReadExpression();
        Expect("]", "behind the size");
    }
    if (Takes("=")) item.value = ReadExpression();
    // Only now, so that the value can use an outer variable of the same name.
    item.variable = DeclareVariable(variable, global);
    return item;
}

StatementPtr Parser::ReadDeclaration(const Position& position, Value::Type type, bool global) {
    std::vector<DeclareStatement::Item> items;
    do items.push_back(ReadDeclared(type, global));
    while (Takes(","));
    ExpectEnd("the declaration");
    return std::make_unique<DeclareStatement>(position, global, std::move(items));
}

StatementPtr Parser::ReadProcedure(const Position& position, bool global) {
    if (!AtTopLevel())
        lexer_.Fail(position, "a procedure can't be defined inside a block or a procedure");
    auto procedure = std::make_shared<Procedure>();
    procedure->position = position;
    procedure->global = global;
    procedure->script = script_.get();
    Token name = lexer_.Next();
    if (name.kind == Token::Kind::Name) procedure->returns = TypeOfKeyword(name.text);
    if (procedure->returns != Value::Type::Nothing) {
        if (Takes("[")) {
            Expect("]", "in the type");
            procedure->returns = ArrayType(procedure->returns);
        }
        name = lexer_.Next();
    }
    if (name.kind != Token::Kind::Name)
        FailAt(name, fmt::format("the name of a procedure is expected, not {}", Shown(name)));
    procedure->name = name.text;
    Routine outer = std::move(routine_);
    routine_ = {procedure.get(), {{}}, 0, 0, 0};
    ReadParameters(*procedure);
    if (!lexer_.Peek().Is("{"))
        FailAt(lexer_.Peek(),
               fmt::format("'{{' is expected behind the parameters, not {}", Shown(lexer_.Peek())));
    procedure->body = ReadBlock();
    procedure->locals = routine_.locals;
    routine_ = std::move(outer);
    return std::make_unique<ProcedureStatement>(std::move(procedure));
}

void Parser::ReadParameters(Procedure& procedure) {
    Expect("(", "behind the name of the procedure");
    while (!Takes(")")) {
        if (!procedure.parameters.empty()) Expect(",", "between parameters");
        const Token word = lexer_.Next();
        Value::Type type =
            word.kind == Token::Kind::Name ? TypeOfKeyword(word.text) : Value::Type::Nothing;
        if (type == Value::Type::Nothing)
            FailAt(word, fmt::format("the type of a parameter is expected, not {}", Shown(word)));
        const Token variable = ExpectVariable("behind the type");
        if (Takes("[")) {
            Expect("]", "behind '['");
            type = ArrayType(type);
        }
        DeclareVariable(variable, false);
        procedure.parameters.push_back({std::string(variable.text), type});
    }
}

}  // namespace minihost
