#include "pxr/usd/sdf/values/pathParser.h"

#include "pxr/usd/sdf/values/pathNode.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/tf/unicodeUtils.h>

#include <string_view>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using Node = Sdf_PathNode;
using Kind = Node::Kind;

bool IsDigitOrLetter(char c)
{
    return ('a' <= c && c <= 'z') || ('A' <= c && c <= 'Z') || ('0' <= c && c <= '9') || c == '_';
}

/// A parser by descent. Only targets recurse, and they count their depth.
class Parser
{
public:
    explicit Parser(const std::string& text)
        : m_begin(text.data()), m_at(m_begin), m_end(m_begin + text.size())
    {}

    bool parse(SdfPath* path)
    {
        if (!_path(path)) {
            return false;
        }
        // A line's end is an end, too.
        return m_at == m_end || *m_at == '\n' || _startsWith("\r\n") || _fail("end of the path expected");
    }

    std::string error() const
    {
        return TfStringPrintf("%s at byte %zu", m_error, static_cast<size_t>(m_at - m_begin));
    }

private:
    static constexpr int kMaxTargetDepth = 256;

    bool _fail(const char* expected)
    {
        // The innermost report is the one that tells most.
        if (!m_error) {
            m_error = expected;
        }
        return false;
    }

    bool _startsWith(std::string_view text) const
    {
        return std::string_view(m_at, m_end - m_at).substr(0, text.size()) == text;
    }
    bool _at(char c) const { return m_at != m_end && *m_at == c; }
    bool _take(char c)
    {
        const bool found = _at(c);
        m_at += found;
        return found;
    }
    void _skipBlanks()
    {
        while (_at(' ') || _at('\t')) {
            ++m_at;
        }
    }
    /// Takes a word that no letter, digit or '_' follows.
    bool _takeKeyword(std::string_view word)
    {
        const char* after = m_at + word.size();
        if (!_startsWith(word) || (after != m_end && IsDigitOrLetter(*after))) {
            return false;
        }
        m_at = after;
        return true;
    }

    /// Takes one code point that may go on an identifier, or one of the extra characters.
    bool _takeContinue(std::string_view extra)
    {
        if (m_at == m_end) {
            return false;
        }
        const char* next = m_at;
        const uint32_t codePoint = Tf_NextCodePoint(&next, m_end);
        const bool isExtra = codePoint < 0x80 && extra.find(char(codePoint)) != std::string_view::npos;
        if (!isExtra && !TfIsUtf8CodePointXidContinue(codePoint)) {
            return false;
        }
        m_at = next;
        return true;
    }
    bool _takeStart()
    {
        if (m_at == m_end) {
            return false;
        }
        const char* next = m_at;
        const uint32_t codePoint = Tf_NextCodePoint(&next, m_end);
        if (codePoint != '_' && !TfIsUtf8CodePointXidStart(codePoint)) {
            return false;
        }
        m_at = next;
        return true;
    }
    bool _takeIdentifier(std::string_view extra = "")
    {
        if (!_takeStart()) {
            return false;
        }
        while (_takeContinue(extra)) {
        }
        return true;
    }
    TfToken _tokenSince(const char* first) const { return TfToken(std::string(first, m_at)); }

    static void _append(SdfPath* path, Node::Element element)
    {
        *path = Sdf_PathAccess::Make(Node::FindOrCreate(Sdf_PathAccess::NodeOf(*path), element));
    }

    bool _path(SdfPath* path)
    {
        if (_take('/')) {
            *path = SdfPath::AbsoluteRootPath();
            return !_primElements(path) ? !m_error : _propertyElements(path);
        }
        *path = SdfPath::ReflexiveRelativePath();
        if (_startsWith("..")) {
            return _parents(path);
        }
        const char* first = m_at;
        if (_pathElements(path)) {
            return true;
        }
        // What is no property may still be the "." alone.
        return !m_error && m_at == first && _take('.') ? true : _fail("a name, '/', '.' or '..' expected");
    }

    /// "..", "../..", and what may follow behind one more slash.
    bool _parents(SdfPath* path)
    {
        do {
            m_at += 2;
            *path = path->GetParentPath();
        } while (_startsWith("/..") && ++m_at);
        if (!_at('/')) {
            return true;
        }
        ++m_at;
        if (_pathElements(path)) {
            return true;
        }
        --m_at;
        return _fail("a name or '..' expected after '/'");
    }

    /// Prims with or without a property, or a property alone; takes nothing when there is neither.
    bool _pathElements(SdfPath* path)
    {
        if (_primElements(path)) {
            return _propertyElements(path);
        }
        const char* first = m_at;
        return !m_error && _propertyElements(path) && m_at != first;
    }

    /// One or more prims with their variant selections; false, with nothing taken, when there is none.
    bool _primElements(SdfPath* path)
    {
        if (!_primName(path)) {
            return false;
        }
        for (;;) {
            if (_at('/')) {
                ++m_at;
                if (!_primName(path)) {
                    --m_at;
                    return true;
                }
                continue;
            }
            bool selected = false;
            while (_opensSelection()) {
                if (!_variantSelection(path)) {
                    return false;
                }
                selected = true;
            }
            if (!selected || !_primName(path)) {
                return true;
            }
        }
    }

    bool _primName(SdfPath* path)
    {
        const char* first = m_at;
        if (!_takeIdentifier()) {
            return false;
        }
        _append(path, {Kind::Prim, _tokenSince(first), {}, {}});
        return true;
    }

    /// Returns whether a '{' comes next, and takes it and the blanks around it if so.
    bool _opensSelection()
    {
        const char* first = m_at;
        _skipBlanks();
        if (!_take('{')) {
            m_at = first;
            return false;
        }
        _skipBlanks();
        return true;
    }

    bool _variantSelection(SdfPath* path)
    {
        const char* first = m_at;
        if (!_takeIdentifier("-")) {
            return _fail("a variant set's name expected after '{'");
        }
        const TfToken set = _tokenSince(first);
        _skipBlanks();
        if (!_take('=')) {
            return _fail("'=' expected after the variant set's name");
        }
        _skipBlanks();
        first = m_at;
        _take('.');
        while (_takeContinue("|-")) {
        }
        const TfToken variant = _tokenSince(first);
        _skipBlanks();
        if (!_take('}')) {
            return _fail("'}' expected after the variant");
        }
        _skipBlanks();
        _append(path, {Kind::VariantSelection, set, variant, {}});
        return true;
    }

    /// A property and what may follow it. True with nothing taken when there is none.
    bool _propertyElements(SdfPath* path)
    {
        if (!_at('.')) {
            return true;
        }
        const char* first = ++m_at;
        if (!_propertyName()) {
            m_at = first - 1;
            return path->IsAbsolutePath() || path->GetPathElementCount()
                       ? _fail("a property's name expected after '.'")
                       : false;
        }
        _append(path, {Kind::PrimProperty, _tokenSince(first), {}, {}});
        if (!_at('[')) {
            return _mapperOrExpression(path);
        }
        if (!_target(path, Kind::Target)) {
            return false;
        }
        if (!_take('.')) {
            return true;
        }
        first = m_at;
        if (!_propertyName()) {
            return _fail("a relational attribute's name expected after '.'");
        }
        _append(path, {Kind::RelationalAttribute, _tokenSince(first), {}, {}});
        return _at('[') ? _target(path, Kind::Target) : _mapperOrExpression(path);
    }

    bool _propertyName()
    {
        if (!_takeIdentifier()) {
            return false;
        }
        while (_at(':')) {
            ++m_at;
            if (!_takeIdentifier()) {
                --m_at;
                break;
            }
        }
        return true;
    }

    bool _mapperOrExpression(SdfPath* path)
    {
        if (!_take('.')) {
            return true;
        }
        if (_takeKeyword("expression")) {
            _append(path, {Kind::Expression, {}, {}, {}});
            return true;
        }
        if (!_takeKeyword("mapper")) {
            return _fail("'mapper' or 'expression' expected after a property's '.'");
        }
        if (!_at('[')) {
            return _fail("'[' expected after 'mapper'");
        }
        return _target(path, Kind::Mapper) && _mapperArgument(path);
    }

    bool _mapperArgument(SdfPath* path)
    {
        const char* dot = m_at;
        if (!_take('.')) {
            return true;
        }
        const char* first = m_at;
        while (m_at != m_end && IsDigitOrLetter(*m_at)) {
            ++m_at;
        }
        if (m_at == first || ('0' <= *first && *first <= '9')) {
            m_at = dot;
            return true;
        }
        _append(path, {Kind::MapperArg, _tokenSince(first), {}, {}});
        return true;
    }

    /// "[path]"
    bool _target(SdfPath* path, Kind kind)
    {
        if (++m_targetDepth > kMaxTargetDepth) {
            return _fail("fewer targets inside targets expected");
        }
        ++m_at;
        SdfPath target;
        if (!_path(&target)) {
            return false;
        }
        if (!_take(']')) {
            return _fail("']' expected after the target");
        }
        --m_targetDepth;
        _append(path, {kind, {}, {}, target});
        return true;
    }

    const char* const m_begin;
    const char* m_at;
    const char* const m_end;
    const char* m_error = nullptr;
    int m_targetDepth = 0;
};

/// Returns the text for a message: a long one is cut, at a whole character.
std::string Quoted(const std::string& text)
{
    constexpr size_t kLongest = 120;
    if (text.size() <= kLongest) {
        return text;
    }
    size_t end = kLongest;
    while (end > 0 && (text[end] & 0xc0) == 0x80) {
        --end;
    }
    return text.substr(0, end) + "...";
}

} // namespace

bool Sdf_ParsePath(const std::string& text, SdfPath* path, std::string* error)
{
    Parser parser(text);
    SdfPath parsed;
    const bool valid = parser.parse(&parsed);
    if (!valid && error) {
        *error = TfStringPrintf("Ill-formed SdfPath <%s>: %s", Quoted(text).c_str(), parser.error().c_str());
    }
    if (path) {
        *path = valid ? std::move(parsed) : SdfPath();
    }
    return valid;
}

PXR_NAMESPACE_CLOSE_SCOPE
