#include "malformed_text.h"

// A caret marks where the error is found.

namespace sdf_tests {

// clang-format off
const std::vector<Malformed>& malformedPrimMetadata()
{
    static const std::vector<Malformed> table = {
        {"^'doc = \"a\"", "a string that does not end on its line", "the closing '"},
        {"active = ^None", "'None'", "true, false, yes, no or a number"},
        {"kind = ^a", "'a'", "a kind between quotes"},
        {"kind = ^None", "'None'", "a kind between quotes"},
        {"add ^kind = [\"a\"]", "'kind'", "the name of a field that is edited as a list"},
        {"references = ^@@", "an empty asset path", "the path of a file, or </Prim> alone for a prim of this layer"},
        {"references = @a@\n^</B>", "'</'", "a metadata field's name or ')'"},
        {"references = ^<B>", "<B>", "the path of a prim that begins with '/', not in a variant"},
        {"references = ^</B.c>", "</B.c>", "the path of a prim that begins with '/', not in a variant"},
        {"references = ^</B{v=x}>", "</B{v=x}>", "the path of a prim that begins with '/', not in a variant"},
        {"references = ^</>", "</>", "the path of a prim that begins with '/', not in a variant"},
        {"references = @a@^</>", "</>", "the path of a prim that begins with '/', not in a variant"},
        {"references = @a@ (offset = 1^, scale = 2)", "','", "a new line, ';' or ')' behind an asset"},
        {"references = @a@ (offset = ^\"1\")", "'\"'", "a number"},
        {"references = @a@ (^foo = 1)", "'foo'", "offset, scale, customData or ')'"},
        {"references = ^[@a@, @a@]", "a list that names an item twice", "each item once"},
        {"references = [@a@ ^@b@]", "'@'", "',' or ']' in references"},
        {"references = @a@^, @b@", "','", "a new line, ';' or ')' in metadata"},
        {"references = ^\"a\"", "'\"'", "None, an asset path such as @file.usda@, a path such as </Prim>, or a list of them"},
        {"add references = ^None", "an empty list", "at least one item, as only a plain list may be empty"},
        {"add references = ^[]", "an empty list", "at least one item, as only a plain list may be empty"},
        {"payload = ^@@", "an empty asset path", "the path of a file, or </Prim> alone for a prim of this layer"},
        {"payload = @a@ (^customData = {})", "'customData'", "offset, scale or ')'"},
        {"add payload = ^None", "an empty list", "at least one item, as only a plain list may be empty"},
        {"inherits = ^<>", "<>", "the path of a prim, not in a variant"},
        {"inherits = ^</A.b>", "</A.b>", "the path of a prim, not in a variant"},
        {"inherits = ^</A{v=x}>", "</A{v=x}>", "the path of a prim, not in a variant"},
        {"inherits = ^</A{v=x}B>", "</A{v=x}B>", "the path of a prim, not in a variant"},
        {"inherits = ^</>", "</>", "the path of a prim, not in a variant"},
        {"inherits = ^[</A>, </A>]", "a list that names an item twice", "each item once"},
        {"inherits = ^<..>", "<..>", "the path of a prim, not in a variant"},
        {"add inherits = ^[]", "an empty list", "at least one item, as only a plain list may be empty"},
        {"variantSets = ^[\"a\", \"a\"]", "a list that names an item twice", "each item once"},
        {"variantSets = ^[]", "an empty list", "at least one variant set's name"},
        {"variantSets = ^None", "'None'", "a variant set's name between quotes, or a list of them"},
        {"variantSets = ^\"a b\"", "\"a b\"", "a variant set's name: letters, digits, '_', '-' and '|'"},
        {"variants = ^{token a = \"b\"}", "a selection for \"a\" that is no string", "entries of type string"},
        {"variants = ^{int a = 1}", "a selection for \"a\" that is no string", "entries of type string"},
        {"variants = ^{string a = \"x y\"}", "\"x y\" for \"a\"", "a variant's name: letters, digits, '_', '-' and '|'"},
        {"variants = ^None", "'None'", "'{' to open a dictionary"},
        {"relocates = {^<>: <A>}", "<>", "the path of a prim, not in a variant"},
        {"relocates = {<A>: ^<A.b>}", "<A.b>", "the path of a prim, not in a variant"},
        {"relocates = {^<A.b>: <A>}", "<A.b>", "the path of a prim, not in a variant"},
        {"relocates = {<A>: <B> ^<C>: <D>}", "'<'", "',' or '}' in relocates"},
        {"relocates = {^<A{v=x}>: <B>}", "<A{v=x}>", "the path of a prim, not in a variant"},
        {"relocates = {^</>: <B>}", "</>", "the path of a prim, not in a variant"},
        {"relocates = ^None", "'None'", "'{' in relocates"},
        {"prefixSubstitutions = {\"a\": ^1}", "'1'", "a string"},
        {"prefixSubstitutions = {^a: \"b\"}", "'a'", "a string"},
        {"apiSchemas = ^\"a\"", "'\"'", "'[' to open an array"},
        {"apiSchemas = [^a]", "'a'", "a string"},
        {"add apiSchemas = ^[]", "an empty list", "at least one item, as only a plain list may be empty"},
        {"foo = (1, ^[2])", "'['", "a value"},
        {"foo = 1 ^2", "'2'", "a new line, ';' or ')' in metadata"},
        {"foo^:bar = 1", "':'", "'=' behind a metadata field's name"},
        {"foo^.bar = 1", "'.'", "'=' behind a metadata field's name"},
        {"customData = ^None", "'None'", "'{' to open a dictionary"},
        {"permission = ^protected", "'protected'", "public or private"},
        {"comment ^= \"x\"", "'='", "a metadata field, which comment is not"},
        {"specifier ^= 1", "'='", "a metadata field, which specifier is not"},
        {"primChildren ^= [\"a\"]", "'='", "a metadata field, which primChildren is not"},
        {"^properties = [\"x\"]", "'properties'", "a metadata field's name or ')'"},
        {"variantSetChildren ^= [\"x\"]", "'='", "a metadata field, which variantSetChildren is not"},
        {"primOrder ^= [\"x\"]", "'='", "a metadata field, which primOrder is not"},
        {"displayName = ^5", "'5'", "a string"},
        {"^def = 1", "'def'", "a metadata field's name or ')'"},
        {"^None = 1", "'None'", "a metadata field's name or ')'"},
        {"^1 = 1", "'1'", "a metadata field's name or ')'"},
        {"\"a\" ^= 1", "'='", "a new line, ';' or ')' in metadata"},
        {"doc ^5", "'5'", "'=' behind doc"},
        {"doc = ^5", "'5'", "a string"},
        {"inherits^", "the end of the line", "'=' behind inherits"},
        {"^subLayers = [@a@]", "'subLayers'", "a metadata field's name or ')'"},
    };
    return table;
}
// clang-format on

// clang-format off
const std::vector<Malformed>& malformedLayerMetadata()
{
    static const std::vector<Malformed> table = {
        {"^'subLayers = []", "a string that does not end on its line", "the closing '"},
        {"subLayers = ^@a@", "'@'", "'[' in subLayers"},
        {"subLayers = [@a@ (offset = 1^, scale = 0)]", "','", "a new line, ';' or ')' behind an asset"},
        {"subLayers = [@a@\n^(offset = 1)]", "'('", "',' or ']' in subLayers"},
        {"subLayers = [^</A>]", "'</'", "an asset path such as @file.usda@"},
        {"subLayers = [^\"a\"]", "'\"'", "an asset path such as @file.usda@"},
        {"subLayers = ^None", "'None'", "'[' in subLayers"},
        {"add ^subLayers = [@a@]", "'subLayers'", "the name of a field that is edited as a list"},
        {"defaultPrim = ^A", "'A'", "a string"},
        {"defaultPrim = ^5", "'5'", "a string"},
        {"upAxis = ^Z", "'Z'", "a string"},
        {"metersPerUnit = ^\"a\"", "\"a\"", "a number"},
        {"framesPerSecond = ^0", "an invalid value for framesPerSecond", "another: Value must be greater than 0"},
        {"framesPerSecond = ^-1", "an invalid value for framesPerSecond", "another: Value must be greater than 0"},
        {"framesPerSecond = ^nan", "an invalid value for framesPerSecond", "another: Value must be greater than 0"},
        {"timeCodesPerSecond = ^None", "'None'", "a number"},
        {"customLayerData = ^None", "'None'", "'{' to open a dictionary"},
        {"customLayerData = ^5", "'5'", "'{' to open a dictionary"},
        {"^customData = {int a = 1}", "'customData'", "a metadata field's name or ')'"},
        {"^kind = \"a\"", "'kind'", "a metadata field's name or ')'"},
        {"^references = @a@", "'references'", "a metadata field's name or ')'"},
        {"comment ^= \"x\"", "'='", "a metadata field, which comment is not"},
        {"primChildren ^= [\"x\"]", "'='", "a metadata field, which primChildren is not"},
        {"^customData = 5", "'customData'", "a metadata field's name or ')'"},
    };
    return table;
}
// clang-format on

// clang-format off
const std::vector<Malformed>& malformedFiles()
{
    static const std::vector<Malformed> table = {
        {"#usda 1.0\ndef \"P\"\n{\nfloat x = 1; }\n^}\n", "'}'", "def, over, class or reorder rootPrims"},
        {"^#usda \n", "'#usda'", "a first line such as #usda 1.0"},
        {"^#usda\n", "'#usda'", "a first line such as #usda 1.0"},
        {"^#usda1.0\n", "'#usda1.0'", "a first line such as #usda 1.0"},
        {"^#sdf 1.4.32\n", "'#sdf 1.4.32'", "a first line such as #usda 1.0"},
        {"^", "an empty file", "a line such as #usda 1.0"},
        {"^\357\273\277#usda 1.0\n", "'\357\273\277#usda 1.0'", "a first line such as #usda 1.0"},
        {"#usda 1.0 (\n^)\n", "')'", "def, over, class or reorder rootPrims"},
        {"#usda 1.0\n()\n^()\n", "'()'", "def, over, class or reorder rootPrims"},
        {"#usda 1.0\ndef \"A\" {} ^def \"B\" {}", "'def'", "a new line behind a prim"},
        {"#usda 1.0\ndef \"A\" {}^;", "';'", "a new line behind a prim"},
        {"#usda 1.0\ndef \"A\" {}\r^", "the end of the file", "a new line behind a prim"},
        {"#usda 1.0\nreorder rootPrims = [\"A\"] ^def \"A\" {}\n", "'def'", "a new line or ';' behind a list of names"},
        {"#usda 1.0\n^int x = 1\n", "'int'", "def, over, class or reorder rootPrims"},
        {"#usda 1.0\n^;\n", "';'", "def, over, class or reorder rootPrims"},
        {"#usda 1.0\n^variantSet \"a\" = {}\n", "'variantSet'", "def, over, class or reorder rootPrims"},
        {"#usda 1.0\ndef \"A\" {}\n^(doc=\"x\")\n", "'('", "def, over, class or reorder rootPrims"},
        {"^#usda\t1.0\n", "'#usda\t1.0'", "a first line such as #usda 1.0"},
        {"#usda 1.0\n^/* c", "a comment without an end", "'*/'"},
        {"#usda 1.0\ndef \"A\" {\n# c^", "the end of the file", "a property, a prim, a variant set or '}'"},
        {"#usda 1.0\ndef \"A\" {\nint x = 1^", "the end of the file", "a new line or ';' behind a property"},
        {"#usda 1.0\ndef \"A\" {\nint x = 1\n}^}", "'}'", "a new line behind a prim"},
        {"^#USDA 1.0\n", "'#USDA 1.0'", "a first line such as #usda 1.0"},
        {"#usda 1.0\nreorder ^nameChildren = [\"a\"]\n", "'nameChildren'", "rootPrims"},
    };
    return table;
}
// clang-format on

} // namespace sdf_tests
