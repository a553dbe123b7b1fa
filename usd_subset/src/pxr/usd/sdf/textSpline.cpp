#include "pxr/usd/sdf/textSpline.h"

#include "pxr/usd/sdf/textValues.h"

#include <cmath>
#include <initializer_list>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

class SplineReader
{
public:
    explicit SplineReader(Sdf_TextScanner& scanner) : _s(scanner) {}

    void Read()
    {
        const size_t begin = _s.Offset();
        size_t items = 0;
        _s.List('{', '}', "in a spline", [&] {
            ++items;
            _Item();
        });
        if (items == 0) {
            _s.Fail(begin, "an empty spline", "at least one item");
        }
    }

private:
    bool _AcceptAny(std::initializer_list<const char*> words)
    {
        for (const char* word : words) {
            if (_s.AcceptKeyword(word)) {
                return true;
            }
        }
        return false;
    }

    void _Expect(char c, const char* where)
    {
        _s.SkipBlanks();
        _s.Expect(c, where);
        _s.SkipBlanks();
    }

    void _Item()
    {
        if (_AcceptAny({"bezier", "hermite"})) {
            return;
        }
        if (_AcceptAny({"pre", "post"})) {
            _Expect(':', "behind pre or post");
            _Extrapolation();
        } else if (_s.AcceptKeyword("loop")) {
            _Expect(':', "behind loop");
            _Loop();
        } else {
            _Knot();
        }
    }

    void _Extrapolation()
    {
        if (_AcceptAny({"none", "held", "linear"})) {
            return;
        }
        if (_s.AcceptKeyword("sloped")) {
            _Expect('(', "behind sloped");
            _s.Number("a slope");
            _s.SkipBlanks();
            _s.Expect(')', "behind a slope");
        } else if (_s.AcceptKeyword("loop")) {
            _s.Gap("repeat, reset or oscillate");
            if (!_AcceptAny({"repeat", "reset", "oscillate"})) {
                _s.Fail("repeat, reset or oscillate");
            }
        } else {
            _s.Fail("none, held, linear, sloped or loop");
        }
    }

    // The times between which it loops, the counts of loops before and behind, and the offset of each.
    void _Loop()
    {
        _Expect('(', "behind loop");
        for (int i = 0; i < 5; ++i) {
            if (i > 0) {
                _Expect(',', "between the numbers of a loop");
            }
            const size_t offset = _s.Offset();
            const double number = _s.Number("a number").real;
            if ((i == 2 || i == 3) && std::trunc(number) != number) {
                _s.Fail(offset, "a count of loops with a fraction", "a whole number");
            }
        }
        _s.SkipBlanks();
        _s.Expect(')', "to close a loop");
    }

    void _Knot()
    {
        _s.Number("a time, bezier, hermite, pre, post, loop or '}'");
        _Expect(':', "behind a time");
        _s.Number("a value");
        const size_t end = _s.Offset();
        _s.SkipBlanks();
        if (_s.Accept('&')) {
            _s.SkipBlanks();
            _s.Number("a value");
        } else if (_s.Peek() != ';' && !_AtLineEnd()) {
            _s.GoTo(end);
        }
        if (_s.Accept(';') || _s.Accept('\n') || _s.Accept('\r')) {
            _Parameters();
        }
    }

    bool _AtLineEnd() const { return _s.Peek() == '\n' || _s.Peek() == '\r'; }

    void _Parameters()
    {
        _s.SkipBlanks();
        for (bool more = true; more;) {
            _Parameter();
            const size_t end = _s.Offset();
            if (!_s.EndStatement()) {
                _s.GoTo(end);
                return;
            }
            _s.SkipLines();
            more = _s.Peek() == 'p' || _s.Peek() == '{';
        }
    }

    void _Parameter()
    {
        if (_s.AcceptKeyword("pre")) {
            _s.Gap("a tangent");
            _Tangent();
        } else if (_s.AcceptKeyword("post")) {
            _s.SkipBlanks();
            if (!_AcceptAny({"none", "held", "linear", "curve"})) {
                _s.Fail("none, held, linear or curve");
            }
            const size_t end = _s.Offset();
            _s.SkipBlanks();
            if (_s.Peek() == '(') {
                _Tangent();
            } else {
                _s.GoTo(end);
            }
        } else if (_s.Peek() == '{') {
            Sdf_ReadTextDictionary(_s);
        } else {
            _s.Fail("pre, post or custom data of a knot");
        }
    }

    // A slope, or a width and a slope.
    void _Tangent()
    {
        _Expect('(', "to open a tangent");
        _s.Number("a slope or a width");
        _s.SkipBlanks();
        if (_s.Accept(',')) {
            _s.SkipBlanks();
            _s.Number("a slope");
        }
        _s.SkipBlanks();
        _s.Expect(')', "to close a tangent");
    }

    Sdf_TextScanner& _s;
};

} // namespace

std::string Sdf_ReadTextSpline(Sdf_TextScanner& scanner, const TfToken& typeName)
{
    if (typeName != "double" && typeName != "float" && typeName != "half" && typeName != "timecode") {
        scanner.Fail("no spline, which attributes of type " + typeName.GetString() + " cannot have");
    }
    const size_t begin = scanner.Offset();
    SplineReader(scanner).Read();
    return std::string(scanner.Since(begin));
}

PXR_NAMESPACE_CLOSE_SCOPE
