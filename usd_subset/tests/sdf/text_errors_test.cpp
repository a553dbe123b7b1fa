#include "support.h"

#include <chrono>

using namespace sdf_tests;

namespace {

struct Case
{
    const char* name;
    std::string text;
    const char* error;
};

std::string inPrim(const std::string& statement) { return "#usda 1.0\ndef \"P\"\n{\n" + statement + "\n}\n"; }

std::string repeat(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

const std::vector<Case>& cases()
{
    static const std::vector<Case> table = {
        {"empty", "", "<string>:1: found an empty file, expected a line such as #usda 1.0"},
        {"header", "#USD 1.0\n", "<string>:1: found '#USD 1.0', expected a first line such as #usda 1.0"},
        {"version", "#usda 2.0\n", "<string>:1: found '#usda 2.0', expected a first line such as #usda 1.0"},
        {"nul", std::string("#usda 1.0\n\0", 11), "<string>:2: found a NUL byte, expected UTF-8 text"},
        {"utf8", "#usda 1.0\n\n# \xC3(", "<string>:3: found bytes that are not UTF-8, expected UTF-8 text"},
        {"statement", "#usda 1.0\nfoo \"A\" {}\n",
         "<string>:2: found 'foo', expected def, over, class or reorder rootPrims"},
        {"unclosed prim", "#usda 1.0\ndef \"A\" {\n",
         "<string>:3: found the end of the file, expected a property, a prim, a variant set or '}'"},
        {"no name", "#usda 1.0\ndef Mesh {\n}\n",
         "<string>:2: found '{', expected a prim's name between quotes"},
        {"bad name", "#usda 1.0\ndef \"a b\" {\n}\n",
         "<string>:2: found \"a b\", expected a prim's name: letters, digits and '_', not beginning with a "
         "digit"},
        {"second prim", "#usda 1.0\ndef \"A\" {}\nover \"A\" {}\n",
         "<string>:3: found a second prim </A>, expected each prim once"},
        {"string", "#usda 1.0\ndef \"A\n",
         "<string>:2: found a string that does not end on its line, expected the closing \""},
        {"long string", "#usda 1.0\n(\n\"\"\"text\n\n",
         "<string>:3: found a string without an end, expected the closing \"\"\""},
        {"sneaky quote", "#usda 1.0\ndef \"A\" (\n    doc = \"\"\"\"\n",
         "<string>:3: found a string without an end, expected the closing \"\"\""},
        {"asset", inPrim("asset x = @a.png"),
         "<string>:4: found an asset path that does not end on its line, expected the closing @"},
        {"asset character", "#usda 1.0\n(\n    subLayers = [@a\x1F@]\n)\n",
         "<string>:3: found a control character in an asset path, expected printable characters"},
        {"asset control", "#usda 1.0\n(\n    subLayers = [@a\xC2\x80@]\n)\n",
         "<string>:3: found a control character in an asset path, expected printable characters"},
        {"comment", "#usda 1.0\n/* never ends\n",
         "<string>:2: found a comment without an end, expected '*/'"},
        {"path", inPrim("rel x = </A"),
         "<string>:4: found a path that does not end on its line, expected the closing >"},
        {"bad path", inPrim("rel x = </A//B>"),
         "<string>:4: found </A//B>, expected the path of a target that is well-formed"},
        {"number", inPrim("int x = 12abc"), "<string>:4: found '12abc', expected an integer"},
        {"fraction", inPrim("int x = 1.5"),
         "<string>:4: found a number that is not an integer of 64 bits, expected an integer from -2147483648 "
         "to 2147483647"},
        {"range", inPrim("uchar x = 256"),
         "<string>:4: found an integer that is too large, expected an integer from 0 to 255"},
        {"tuple", inPrim("float3 x = (1, 2)"),
         "<string>:4: found ')', expected ',' between the numbers of a tuple"},
        {"array", inPrim("int[] x = [1 2]"), "<string>:4: found '2', expected ',' or ']' in an array"},
        {"type of value", inPrim("int x = \"s\""), "<string>:4: found '\"', expected an integer"},
        {"dictionary type", "#usda 1.0\n(\n    customLayerData = {\n        foo a = 1\n    }\n)\n",
         "<string>:4: found 'foo', expected the name of a value type, or dictionary"},
        {"rate", "#usda 1.0\n(\n    framesPerSecond = 0\n)\n",
         "<string>:3: found an invalid value for framesPerSecond, expected another: Value must be greater "
         "than 0"},
        {"no metadata", "#usda 1.0\n(\n    primChildren = 1\n)\n",
         "<string>:3: found '=', expected a metadata field, which primChildren is not"},
        {"retyped", inPrim("int x = 1\nfloat x = 2"),
         "<string>:5: found type 'float' for </P.x>, expected 'int' as before"},
        {"two kinds", inPrim("int x = 1\nrel x = </A>"),
         "<string>:5: found a second property </P.x> of another kind, expected each name once"},
        {"empty edit", "#usda 1.0\ndef \"A\" (\n    prepend references = []\n)\n{\n}\n",
         "<string>:3: found an empty list, expected at least one item, as only a plain list may be empty"},
        {"twice", "#usda 1.0\ndef \"A\" (\n    references = [@a@, @a@]\n)\n{\n}\n",
         "<string>:3: found a list that names an item twice, expected each item once"},
        {"second variant", inPrim("variantSet \"s\" = {\n\"a\" {\n}\n\"a\" {\n}\n}"),
         "<string>:7: found a second variant \"a\", expected each variant once"},
        {"one line", "#usda 1.0\ndef \"A\" {} def \"B\" {}\n",
         "<string>:2: found 'def', expected a new line or ';' behind a prim"},
        {"deep prims", "#usda 1.0\n" + repeat("def \"A\" {", 100000),
         "<string>:2: found prims nested deeper than 1000 levels, expected fewer levels"},
        {"deep dictionaries", "#usda 1.0\n(customLayerData = {" + repeat("dictionary a = {", 100000),
         "<string>:2: found values nested deeper than 64, expected fewer levels"},
        {"deep tuples", "#usda 1.0\n(unknown = " + repeat("(", 1000000),
         "<string>:2: found values nested deeper than 64, expected fewer levels"},
        {"deep lists", "#usda 1.0\n(unknown = " + repeat("[", 1000000),
         "<string>:2: found values nested deeper than 64, expected fewer levels"},
    };
    return table;
}

} // namespace

TEST(TextErrors, SayWhatWasFoundAndWhatWasExpected)
{
    for (const Case& c : cases()) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ErrorsOf(c.text), std::vector<std::string>{c.error});
    }
}

TEST(TextErrors, LeaveTheLayerAsItWas)
{
    const auto layer = Parse("def \"Kept\" {}\n");
    Errors errors;
    EXPECT_FALSE(layer->ImportFromString("#usda 1.0\ndef \"New\" {}\ndef {"));
    EXPECT_EQ(errors.Take().size(), 1u);
    EXPECT_EQ(layer->GetRootPrims().keys(), std::vector<std::string>{"Kept"});
}

TEST(TextErrors, EveryTruncationEndsInOneErrorOrALayer)
{
    const std::string text = R"(#usda 1.0
(
    "comment" # here
    customLayerData = { string a = "b"; dictionary d = { int[] i = [1, 2] } }
    subLayers = [@a.usda@ (offset = 1; scale = 2), @@@b@c@@@]
    strange = (1, [2, "x"], @y@)
)
def Mesh "A" (
    prepend references = [@a@</B> (offset = 1), </C>]
    variants = { string v = "w" }
    doc = """long
text"""
    permission = private
)
{
    custom uniform token[] t = ["a", 'b'] (doc = "d")
    matrix2d m = ((1, 0), (0, -1.5e-3))
    point3f[] p.timeSamples = { 1: [(1, 2, 3)], 2: None, }
    float c.connect = </A.out>
    delete rel r = [</X>, <Y>]
    /* block */
    def "B" { reorder properties = ["x"] }
    variantSet "v" = { "w" (kind = "k") { int x = inf } }
}
)";
    int whole = 0;
    for (size_t length = 0; length <= text.size(); ++length) {
        const std::vector<std::string> errors = ErrorsOf(text.substr(0, length));
        ASSERT_LE(errors.size(), 1u) << "at byte " << length;
        whole += errors.empty() ? 1 : 0;
    }
    EXPECT_LT(whole, 120);
}

TEST(TextErrors, EveryChangedByteEndsInOneErrorOrALayer)
{
    const std::string text =
        "#usda 1.0\n(\n doc = \"d\"\n x = (1, 2)\n)\ndef \"A\" (references = [@a@, </B>])\n{\n"
        " float3 v = (1, 2, 3)\n rel r = </A>\n variantSet \"s\" = { \"a\" { int i = 1 } }\n}\n";
    for (size_t at = 0; at < text.size(); ++at) {
        for (const char c : {'\0', '\n', '"', '@', '(', '}', '<', '\\', '9', '\xFF'}) {
            std::string changed = text;
            changed[at] = c;
            ASSERT_LE(ErrorsOf(changed).size(), 1u) << "byte " << at << " as " << static_cast<int>(c);
        }
    }
}

TEST(TextErrors, LargeInputTakesLinearTime)
{
    const auto seconds = [](const std::string& text) {
        const auto begin = std::chrono::steady_clock::now();
        const auto errors = ErrorsOf(text);
        EXPECT_LE(errors.size(), 1u);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    EXPECT_LT(seconds("#usda 1.0\n# " + std::string(8 << 20, 'x')), 5.0);
    EXPECT_LT(seconds("#usda 1.0\n(doc = \"" + std::string(8 << 20, 'x')), 5.0);
    EXPECT_LT(seconds("#usda 1.0\n" + repeat("/**/", 1 << 20)), 5.0);
    EXPECT_LT(seconds(inPrim("float[] x = [" + repeat("0.125, ", 1 << 20) + "]")), 5.0);
    EXPECT_LT(seconds(inPrim(repeat("(", 1 << 20))), 5.0);
}
