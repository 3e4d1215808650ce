#include <fmt/core.h>

#include "minihost/command/Parser.h"

namespace minihost {

ExpressionPtr Parser::ReadExpression() {
    const Nested nested(*this);
    return ReadRest(nullptr);
}

ExpressionPtr Parser::ReadRest(ExpressionPtr left) {
    ExpressionPtr condition = ReadLogic(false, std::move(left));
    if (!Takes("?")) return condition;
    ExpressionPtr yes = ReadExpression();
    Expect(":", "behind the first choice of '?'");
    ExpressionPtr no = ReadExpression();
    return std::make_unique<ChoiceExpression>(std::move(condition), std::move(yes), std::move(no));
}

/// `||` (all: `&&`), which binds more loosely than what it stands between.
ExpressionPtr Parser::ReadLogic(bool all, ExpressionPtr left) {
    const auto operand = [&](ExpressionPtr first) {
        return all ? ReadChain(1, std::move(first)) : ReadLogic(true, std::move(first));
    };
    std::vector<ExpressionPtr> operands;
    operands.push_back(operand(std::move(left)));
    while (Takes(all ? "&&" : "||")) operands.push_back(operand(nullptr));
    if (operands.size() == 1) return std::move(operands.front());
    return std::make_unique<LogicExpression>(all, std::move(operands));
}

ExpressionPtr Parser::ReadChain(int precedence, ExpressionPtr left) {
    const int tightest = Precedence(Operator::Multiply);
    if (precedence > tightest) return left ? std::move(left) : ReadUnary();
    ExpressionPtr first = ReadChain(precedence + 1, std::move(left));
    std::vector<ChainExpression::Link> links;
    for (;;) {
        const Token& next = lexer_.Peek();
        const auto op =
            next.kind == Token::Kind::Sign ? FindOperator(next.text, false) : std::nullopt;
        if (!op || Precedence(*op) != precedence) break;
        const Position position = lexer_.Next().position;
        links.push_back({*op, position, ReadChain(precedence + 1, nullptr)});
    }
    if (links.empty()) return first;
    return std::make_unique<ChainExpression>(std::move(first), std::move(links));
}

ExpressionPtr Parser::ReadUnary() {
    const Nested nested(*this);
    const Token& next = lexer_.Peek();
    if (next.Is("-") || next.Is("!") || next.Is("+")) {
        const Token sign = lexer_.Next();
        ExpressionPtr operand = ReadUnary();
        if (sign.Is("+")) return operand;
        return std::make_unique<UnaryExpression>(sign.position, sign.Is("-"), std::move(operand));
    }
    if (next.Is("++") || next.Is("--")) {
        const Token sign = lexer_.Next();
        const Token variable = ExpectVariable(fmt::format("behind '{}'", sign.text));
        return std::make_unique<StepExpression>(sign.position, ReadPlace(variable, false),
                                                sign.Is("++") ? Operator::Add : Operator::Subtract,
                                                false);
    }
    return ReadPrimary();
}

ExpressionPtr Parser::ReadPrimary() {
    Token token = lexer_.Next();
    switch (token.kind) {
        case Token::Kind::Literal:
            return std::make_unique<LiteralExpression>(token.position, std::move(token.value));
        case Token::Kind::Variable:
            return ReadAssignment(ReadPlace(token, false));
        case Token::Kind::Name:
            return ReadPostfix(ReadNamed(token));
        default:
            break;
    }
    if (token.Is("(")) {
        ExpressionPtr inner = ReadExpression();
        Expect(")", "behind the expression");
        return ReadPostfix(std::move(inner));
    }
    if (token.Is("`")) return ReadPostfix(ReadBackquoted(token.position));
    if (token.Is("{")) return ReadList(token.position, "}", false);
    if (token.Is("<<")) return ReadList(token.position, ">>", true);
    FailAt(token, fmt::format("an expression is expected, not {}", Shown(token)));
}

int Parser::ReadComponent() {
    const Token name = lexer_.Next();
    for (int i = 0; i < 3; ++i)
        if (name.kind == Token::Kind::Name && name.text == std::string_view("xyz").substr(i, 1))
            return i;
    FailAt(name, fmt::format("x, y or z is expected behind '.', not {}; a name is joined to a "
                             "text with (... + \".name\")",
                             Shown(name)));
}

ExpressionPtr Parser::ReadPostfix(ExpressionPtr base) {
    if (Takes("[")) {
        ExpressionPtr index = ReadExpression();
        Expect("]", "behind the index");
        base = std::make_unique<ElementExpression>(std::move(base), std::move(index));
    }
    if (Takes(".")) base = std::make_unique<ComponentExpression>(std::move(base), ReadComponent());
    return base;
}

/// A name in the middle of an expression: a constant or a call with brackets.
ExpressionPtr Parser::ReadNamed(const Token& name) {
    if (lexer_.NextChar() == '(') {
        bool words = false;
        return ReadInvocation(name, At::Expression, words);
    }
    for (const std::string_view yes : {"true", "on", "yes"})
        if (name.text == yes) return std::make_unique<LiteralExpression>(name.position, 1);
    for (const std::string_view no : {"false", "off", "no"})
        if (name.text == no) return std::make_unique<LiteralExpression>(name.position, 0);
    FailAt(name, fmt::format("'{}' is no value; a variable is ${}, the answer of a command "
                             "`{}`, a text \"{}\"",
                             name.text, name.text, name.text, name.text));
}

ExpressionPtr Parser::ReadList(const Position& position, std::string_view end, bool vector) {
    std::vector<ExpressionPtr> items;
    if (!Takes(end)) {
        do items.push_back(ReadExpression());
        while (Takes(","));
        Expect(end, "behind the list");
    }
    if (vector && items.size() != 3)
        lexer_.Fail(position, fmt::format("a vector has 3 numbers, not {}", items.size()));
    return std::make_unique<ListExpression>(position, std::move(items), vector);
}

ExpressionPtr Parser::ReadBackquoted(const Position& position) {
    const Nested nested(*this);
    const Token name = lexer_.Next();
    if (name.kind != Token::Kind::Name)
        FailAt(name, fmt::format("a command is expected behind '`', not {}", Shown(name)));
    bool words = false;
    ExpressionPtr call = ReadInvocation(name, At::Backquotes, words);
    if (!Takes("`"))
        lexer_.Fail(position,
                    fmt::format("the command in '`' does not end with one but with {}",
                                Shown(lexer_.Peek())),
                    lexer_.Peek().kind == Token::Kind::End);
    return call;
}

std::unique_ptr<PlaceExpression> Parser::ReadPlace(const Token& variable, bool word) {
    ExpressionPtr index;
    int component = -1;
    const auto follows = [&](std::string_view sign) {
        if (word) return lexer_.NextChar() == sign[0] && !lexer_.Spaced() && Takes(sign);
        return Takes(sign);
    };
    if (follows("[")) {
        index = ReadExpression();
        Expect("]", "behind the index");
    }
    if (follows(".")) component = ReadComponent();
    const bool assigned = !word && lexer_.Peek().Is("=");
    auto place =
        std::make_unique<PlaceExpression>(variable.position, FindVariable(variable, assigned));
    if (index) place->SetIndex(std::move(index));
    place->SetComponent(component);
    return place;
}

ExpressionPtr Parser::ReadAssignment(std::unique_ptr<PlaceExpression> place) {
    const Token& next = lexer_.Peek();
    if (next.Is("++") || next.Is("--")) {
        const Token sign = lexer_.Next();
        return std::make_unique<StepExpression>(sign.position, std::move(place),
                                                sign.Is("++") ? Operator::Add : Operator::Subtract,
                                                true);
    }
    if (next.kind != Token::Kind::Sign) return place;
    const auto op = FindOperator(next.text, true);
    if (!op && !next.Is("=")) return place;
    const Position position = lexer_.Next().position;
    return std::make_unique<AssignExpression>(position, std::move(place), op, ReadExpression());
}

std::vector<ExpressionPtr> Parser::ReadArguments() {
    std::vector<ExpressionPtr> arguments;
    Expect("(", "before the arguments");
    if (Takes(")")) return arguments;
    do arguments.push_back(ReadExpression());
    while (Takes(","));
    Expect(")", "behind the arguments");
    return arguments;
}

ExpressionPtr Parser::ReadInvocation(const Token& name, At at, bool& words) {
    std::vector<ExpressionPtr> arguments;
    const bool guards = name.text == "catch" || name.text == "catchQuiet";
    const bool brackets = lexer_.NextChar() == '(';
    if (brackets) arguments = ReadArguments();
    // `setAttr ($name + ".tx") 5`: the brackets were the first word.
    words = !brackets ||
            (at != At::Expression && arguments.size() == 1 && !guards && lexer_.AtFurtherWord());
    if (guards && (words || arguments.size() != 1))
        FailAt(name, fmt::format("{} takes one expression in brackets", name.text));
    if (guards)
        return std::make_unique<CatchExpression>(name.position, std::move(arguments.front()),
                                                 name.text == "catchQuiet");
    if (words) ReadWords(arguments, at == At::Backquotes);
    return std::make_unique<CallExpression>(name.position, std::string(name.text),
                                            std::move(arguments));
}

void Parser::ReadWords(std::vector<ExpressionPtr>& words, bool quoted) {
    for (;;) {
        const char c = lexer_.NextChar();
        if (c == '\0' || c == ';' || (c == '`' && quoted)) return;
        words.push_back(ReadWord());
    }
}

ExpressionPtr Parser::ReadWord() {
    const char c = lexer_.NextChar();
    if (c == '$') return ReadPlace(ExpectVariable("as a word"), true);
    if (c == '(') {
        lexer_.Next();
        ExpressionPtr value = ReadExpression();
        Expect(")", "behind the expression");
        return value;
    }
    if (c == '`') return ReadBackquoted(lexer_.Next().position);
    if (c == '"' || c == '{' || c == '<') return ReadPrimary();
    if (!lexer_.AtWord())
        FailAt(lexer_.Peek(), fmt::format("{} can't begin a word of a command; end the command "
                                          "with ';', or put the text in quotes",
                                          Shown(lexer_.Peek())));
    Token word = lexer_.Word();
    const char behind = lexer_.NextChar();
    if (!lexer_.Spaced() && behind != ';' && behind != '`' && behind != '\0' && behind != ')')
        FailAt(word, fmt::format("blanks are expected behind '{}', or brackets around the "
                                 "expression that it belongs to",
                                 word.text));
    return std::make_unique<LiteralExpression>(word.position, std::move(word.value));
}

}  // namespace minihost
