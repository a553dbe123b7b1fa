#include "pxr/usd/usd/schemaTable.h"

#include "pxr/usd/usd/schemaLiteral.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/schema.h>

#include <sstream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

Usd_SchemaTable*& _Head()
{
    static Usd_SchemaTable* head = nullptr;
    return head;
}

UsdSchemaKind _Kind(const std::string& word)
{
    static const std::pair<const char*, UsdSchemaKind> kinds[] = {
        {"base", UsdSchemaKind::AbstractBase},      {"abstract", UsdSchemaKind::AbstractTyped},
        {"concrete", UsdSchemaKind::ConcreteTyped}, {"api", UsdSchemaKind::SingleApplyAPI},
        {"multi", UsdSchemaKind::MultipleApplyAPI}, {"plain", UsdSchemaKind::NonAppliedAPI}};
    for (const auto& [name, kind] : kinds) {
        if (word == name) {
            return kind;
        }
    }
    return UsdSchemaKind::Invalid;
}

TfTokenVector _Tokens(std::istream& in)
{
    TfTokenVector tokens;
    for (std::string word; in >> word;) {
        tokens.emplace_back(word == "\"\"" ? std::string() : word);
    }
    return tokens;
}

/// Splits "TYPE NAME = FALLBACK | ALLOWED" at its separators, which stand between blanks.
Usd_SchemaRecord::Row _ParseProperty(std::string line)
{
    Usd_SchemaRecord::Row row;
    auto property = std::make_shared<Usd_SchemaProperty>();
    const auto cutAfter = [&line](const char* separator) {
        const size_t at = line.find(separator);
        std::string rest = at == std::string::npos ? std::string() : line.substr(at + 3);
        line.resize(std::min(at, line.size()));
        return rest;
    };
    std::istringstream allowed(cutAfter(" | "));
    const std::string literal = cutAfter(" = ");

    std::istringstream words(line);
    std::string word, name;
    words >> word;
    if (word == "override") {
        row.isOverride = true;
        words >> word;
    }
    if (word == "uniform") {
        property->variability = SdfVariabilityUniform;
        words >> word;
    }
    words >> name;
    row.name = TfToken(name, TfToken::Immortal);
    if (word == "rel") {
        property->specType = SdfSpecTypeRelationship;
        property->variability = SdfVariabilityUniform;
    } else {
        property->typeName = SdfSchema::GetInstance().FindType(word);
        const TfTokenVector tokens = _Tokens(allowed);
        property->allowedTokens.assign(tokens.begin(), tokens.end());
        if (!literal.empty()) {
            property->fallback = Usd_ParseSchemaLiteral(word, literal);
            TF_VERIFY(!property->fallback.IsEmpty(), "the fallback '%s' of %s is no %s", literal.c_str(),
                      name.c_str(), word.c_str());
        }
    }
    row.property = std::move(property);
    return row;
}

void _ParseDetail(const std::string& line, Usd_SchemaRecord* record)
{
    std::istringstream in(line);
    std::string word;
    in >> word;
    if (word == "apis") {
        record->builtInApis = _Tokens(in);
    } else if (word == "only") {
        record->canOnlyApplyTo = _Tokens(in);
    } else if (word == "auto") {
        record->autoApplyTo = _Tokens(in);
    } else {
        record->rows.push_back(_ParseProperty(line));
    }
}

/// The lines that are not empty, each with the lines that continue it.
std::vector<std::string> _LogicalLines(const char* text)
{
    const std::string continuation(8, ' ');
    std::vector<std::string> logical;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, continuation.size(), continuation) == 0) {
            logical.back() += line.substr(continuation.size() - 1);
        } else if (!line.empty()) {
            logical.push_back(line);
        }
    }
    return logical;
}

void _ParseTable(const char* text, std::vector<Usd_SchemaRecord>* records)
{
    for (const std::string& line : _LogicalLines(text)) {
        if (line[0] == ' ') {
            _ParseDetail(line, &records->back());
            continue;
        }
        std::istringstream in(line);
        std::string kind, identifier, colon;
        Usd_SchemaRecord record;
        in >> kind >> identifier >> record.typeName >> colon >> record.baseTypeName;
        record.kind = _Kind(kind);
        record.identifier = TfToken(identifier, TfToken::Immortal);
        TF_VERIFY(record.kind != UsdSchemaKind::Invalid, "'%s' begins with no schema kind", line.c_str());
        records->push_back(std::move(record));
    }
}

} // namespace

Usd_SchemaTable::Usd_SchemaTable(const char* text) : _text(text), _next(_Head()) { _Head() = this; }

std::vector<Usd_SchemaRecord> Usd_SchemaTable::ParseAll()
{
    std::vector<Usd_SchemaRecord> records;
    for (const Usd_SchemaTable* table = _Head(); table; table = table->_next) {
        _ParseTable(table->_text, &records);
    }
    return records;
}

PXR_NAMESPACE_CLOSE_SCOPE
