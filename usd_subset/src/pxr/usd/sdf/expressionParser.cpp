#include "pxr/usd/sdf/expressionNodes.h"

#include "pxr/usd/sdf/textUnicode.h"

#include <pxr/base/tf/stringUtils.h>

#include <stdexcept>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using Node = Sdf_ExpressionNode;

// Deeper expressions are a mistake or an attack.
constexpr int kMaxDepth = 100;

std::string unescape(const std::string& text)
{
    std::string result;
    for (size_t at = 0; at < text.size();) {
        if (text[at] != '\\') {
            result += text[at++];
        } else {
            at = at + 1 < text.size() ? Sdf_Unescape(text, at + 1, &result) : text.size();
        }
    }
    return result;
}

Node makeConstant(const VtValue& value)
{
    Node node;
    node.value = value;
    return node;
}

class Parser
{
public:
    explicit Parser(const std::string& text) : _text(text) {}

    Node Parse()
    {
        _Expect('`', "it must begin with a backquote");
        Node node = _ParseExpression();
        _Expect('`', "its closing backquote is missing");
        return node;
    }

private:
    [[noreturn]] void _Fail(const std::string& what) const
    {
        throw std::invalid_argument(
            TfStringPrintf("The expression is wrong at character %zu: %s.", _at, what.c_str()));
    }
    char _Peek() const { return _at < _text.size() ? _text[_at] : '\0'; }
    bool _Take(char c)
    {
        const bool isThere = _at < _text.size() && _text[_at] == c;
        _at += isThere ? 1 : 0;
        return isThere;
    }
    void _Expect(char c, const char* what)
    {
        if (!_Take(c)) {
            _Fail(what);
        }
    }
    void _SkipBlanks()
    {
        while (_Peek() == ' ') {
            ++_at;
        }
    }
    static bool _IsDigit(char c) { return c >= '0' && c <= '9'; }
    static bool _IsLetter(char c) { return c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

    std::string _TakeName()
    {
        const size_t first = _at;
        while (_IsLetter(_Peek()) || (_at > first && _IsDigit(_Peek()))) {
            ++_at;
        }
        return _text.substr(first, _at - first);
    }

    Node _ParseExpression() { return _Peek() == '[' ? _ParseList() : _ParseScalar(); }

    Node _ParseScalar()
    {
        const char c = _Peek();
        if (c == '"' || c == '\'') {
            return _ParseText();
        }
        if (c == '$') {
            return _ParseVariable();
        }
        if (c == '-' || _IsDigit(c)) {
            return _ParseNumber();
        }
        const std::string name = _TakeName();
        if (name == "True" || name == "true") {
            return makeConstant(VtValue(true));
        }
        if (name == "False" || name == "false") {
            return makeConstant(VtValue(false));
        }
        if (name == "None" || name == "none") {
            return makeConstant(VtValue());
        }
        return _ParseCall(name);
    }

    Node _ParseVariable()
    {
        if (!_Take('$') || !_Take('{')) {
            _Fail("a variable is written as ${NAME}");
        }
        Node node;
        node.kind = Node::Kind::Variable;
        node.text = _TakeName();
        if (node.text.empty()) {
            _Fail("a variable's name has letters, digits and underscores, and no digit in front");
        }
        _Expect('}', "the closing } of the variable is missing");
        return node;
    }

    Node _ParseNumber()
    {
        const size_t first = _at;
        _Take('-');
        const size_t digits = _at;
        while (_IsDigit(_Peek())) {
            ++_at;
        }
        bool isOutOfRange = false;
        const int64_t value = TfStringToInt64(_text.substr(first, _at - first), &isOutOfRange);
        if (digits == _at || isOutOfRange) {
            _Fail(digits == _at ? "a minus must have a number" : "the number does not fit into 64 bits");
        }
        return makeConstant(VtValue(value));
    }

    Node _ParseText()
    {
        const char quote = _text[_at++];
        Node node;
        node.kind = Node::Kind::Text;
        std::string piece;
        const auto flush = [&] {
            if (!piece.empty()) {
                node.parts.push_back(makeConstant(VtValue(unescape(piece))));
                piece.clear();
            }
        };
        while (_at < _text.size() && _text[_at] != quote) {
            const char next = _at + 1 < _text.size() ? _text[_at + 1] : '\0';
            const bool isEscape =
                _text[_at] == '\\' && (next == '`' || next == '$' || next == '\\' || next == quote);
            if (_text[_at] == '$' && next == '{') {
                flush();
                node.parts.push_back(_ParseVariable());
            } else {
                piece.append(_text, _at, isEscape ? 2 : 1);
                _at += isEscape ? 2 : 1;
            }
        }
        flush();
        _Expect(quote, "the closing quote is missing");
        return node;
    }

    // Items between commas, with blanks around the commas alone.
    template <class ParseItem>
    void _ParseItems(char end, std::vector<Node>* items, const ParseItem& parseItem)
    {
        if (_Peek() == ' ' || _Peek() == end) {
            _SkipBlanks();
            return;
        }
        items->push_back(parseItem());
        while (true) {
            const size_t before = _at;
            _SkipBlanks();
            if (!_Take(',')) {
                _at = before;
                return;
            }
            _SkipBlanks();
            items->push_back(parseItem());
        }
    }

    Node _ParseList()
    {
        ++_at;
        Node node;
        node.kind = Node::Kind::List;
        _ParseItems(']', &node.parts, [this] { return _ParseScalar(); });
        _Expect(']', "the closing ] of the list is missing");
        return node;
    }

    Node _ParseCall(const std::string& function)
    {
        _SkipBlanks();
        if (function.empty() || !_Take('(')) {
            _Fail("there is no value, variable, list or function");
        }
        if (++_depth > kMaxDepth) {
            _Fail(TfStringPrintf("functions are nested deeper than %d levels", kMaxDepth));
        }
        _SkipBlanks();
        Node node;
        node.kind = Node::Kind::Call;
        node.text = function;
        _ParseItems(')', &node.parts, [this] { return _ParseExpression(); });
        _SkipBlanks();
        _Expect(')', "the closing ) of the function is missing");
        _SkipBlanks();
        --_depth;
        std::string error;
        if (!Sdf_CheckCall(function, node.parts.size(), &error)) {
            _Fail(error);
        }
        return node;
    }

    const std::string& _text;
    size_t _at = 0;
    int _depth = 0;
};

} // namespace

std::shared_ptr<const Sdf_ExpressionNode> Sdf_ParseExpression(const std::string& text, std::string* error)
{
    try {
        return std::make_shared<const Sdf_ExpressionNode>(Parser(text).Parse());
    } catch (const std::invalid_argument& fault) {
        *error = fault.what();
        return nullptr;
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
