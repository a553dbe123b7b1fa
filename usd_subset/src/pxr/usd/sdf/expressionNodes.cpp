#include "pxr/usd/sdf/expressionNodes.h"

#include <pxr/base/tf/stringUtils.h>
#include <pxr/base/vt/array.h>
#include <pxr/usd/sdf/variableExpression.h>

#include <algorithm>
#include <cstdint>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using EmptyList = SdfVariableExpression::EmptyList;
using Result = Sdf_ExpressionEvaluator::Result;

// Expressions whose values are expressions again, too long to follow.
constexpr size_t kMaxOpen = 100;

Result fail(const std::string& why) { return {VtValue(), {why}}; }

template <class T>
bool appendTo(VtValue* list, const VtValue& item)
{
    if (!item.IsHolding<T>() || !(list->IsEmpty() || list->IsHolding<VtArray<T>>())) {
        return false;
    }
    VtArray<T> items = list->GetWithDefault<VtArray<T>>();
    items.push_back(item.UncheckedGet<T>());
    *list = VtValue(items);
    return true;
}

template <class T>
VtValue compare(const std::string& how, const T& a, const T& b)
{
    if (how == "eq" || how == "neq") {
        return VtValue((a == b) == (how == "eq"));
    }
    if (how == "lt" || how == "geq") {
        return VtValue((a < b) == (how == "lt"));
    }
    return VtValue((b < a) == (how == "gt"));
}

Result callComparison(const std::string& how, const VtValue& a, const VtValue& b)
{
    if (a.GetTypeid() == b.GetTypeid()) {
        if (a.IsHolding<std::string>()) {
            return {compare(how, a.UncheckedGet<std::string>(), b.UncheckedGet<std::string>()), {}};
        }
        if (a.IsHolding<std::int64_t>()) {
            return {compare(how, a.UncheckedGet<std::int64_t>(), b.UncheckedGet<std::int64_t>()), {}};
        }
        if (a.IsHolding<bool>()) {
            return {compare(how, a.UncheckedGet<bool>(), b.UncheckedGet<bool>()), {}};
        }
        if (a.IsEmpty() && (how == "eq" || how == "neq")) {
            return {VtValue(how == "eq"), {}};
        }
    }
    return fail(TfStringPrintf("%s: values of types %s and %s cannot be compared.", how.c_str(),
                               Sdf_ExpressionEvaluator::DescribeType(a).c_str(),
                               Sdf_ExpressionEvaluator::DescribeType(b).c_str()));
}

Result callLogic(const std::string& how, const std::vector<VtValue>& arguments)
{
    bool result = how == "and";
    for (const VtValue& argument : arguments) {
        if (!argument.IsHolding<bool>()) {
            return fail(TfStringPrintf("%s: true or false is needed, not %s.", how.c_str(),
                                       Sdf_ExpressionEvaluator::DescribeType(argument).c_str()));
        }
        const bool value = argument.UncheckedGet<bool>();
        result = how == "and" ? result && value : how == "or" ? result || value : !value;
    }
    return {VtValue(result), {}};
}

Result callIf(const std::vector<VtValue>& arguments)
{
    const VtValue& condition = arguments[0];
    if (!condition.IsHolding<bool>()) {
        return fail("if: the condition must be true or false.");
    }
    const VtValue otherwise = arguments.size() > 2 ? arguments[2] : VtValue();
    if (!arguments[1].IsEmpty() && !otherwise.IsEmpty() &&
        arguments[1].GetTypeid() != otherwise.GetTypeid()) {
        return fail("if: both values must be of one type.");
    }
    return {condition.UncheckedGet<bool>() ? arguments[1] : otherwise, {}};
}

template <class T>
bool listContains(const VtValue& list, const VtValue& item, Result* result)
{
    if (!list.IsHolding<VtArray<T>>()) {
        return false;
    }
    const auto& items = list.UncheckedGet<VtArray<T>>();
    *result = item.IsHolding<T>()
                  ? Result{VtValue(std::count(items.begin(), items.end(), item.UncheckedGet<T>()) != 0), {}}
                  : fail("contains: the list holds values of another type.");
    return true;
}

Result callContains(const VtValue& where, const VtValue& what)
{
    Result result = fail("contains: a list or a string is needed.");
    if (where.IsHolding<EmptyList>()) {
        return {VtValue(false), {}};
    }
    if (where.IsHolding<std::string>() && what.IsHolding<std::string>()) {
        const auto& text = where.UncheckedGet<std::string>();
        return {VtValue(text.find(what.UncheckedGet<std::string>()) != std::string::npos), {}};
    }
    if (!listContains<std::string>(where, what, &result) &&
        !listContains<std::int64_t>(where, what, &result)) {
        listContains<bool>(where, what, &result);
    }
    return result;
}

// The size of a list or a string; negative for other values.
std::int64_t sizeOf(const VtValue& value)
{
    if (value.IsHolding<std::string>()) {
        return static_cast<std::int64_t>(value.UncheckedGet<std::string>().size());
    }
    const bool isList = value.IsHolding<EmptyList>() || value.IsArrayValued();
    return isList ? static_cast<std::int64_t>(value.GetArraySize()) : -1;
}

Result callAt(const VtValue& where, const VtValue& index)
{
    const std::int64_t size = sizeOf(where);
    if (size < 0 || !index.IsHolding<std::int64_t>()) {
        return fail("at: a list or a string, and a whole number are needed.");
    }
    std::int64_t at = index.UncheckedGet<std::int64_t>();
    at += at < 0 ? size : 0;
    if (at < 0 || at >= size) {
        return fail("at: there is no such item.");
    }
    const auto place = static_cast<size_t>(at);
    if (where.IsHolding<std::string>()) {
        return {VtValue(where.UncheckedGet<std::string>().substr(place, 1)), {}};
    }
    if (where.IsHolding<VtArray<std::string>>()) {
        return {VtValue(where.UncheckedGet<VtArray<std::string>>()[place]), {}};
    }
    if (where.IsHolding<VtArray<bool>>()) {
        return {VtValue(bool(where.UncheckedGet<VtArray<bool>>()[place])), {}};
    }
    return {VtValue(where.UncheckedGet<VtArray<std::int64_t>>()[place]), {}};
}

struct Function
{
    const char* name;
    size_t least;
    size_t most;
};

constexpr size_t kMany = SIZE_MAX;
constexpr Function kFunctions[] = {
    {"if", 2, 3},       {"eq", 2, 2},  {"neq", 2, 2},     {"lt", 2, 2},         {"leq", 2, 2},
    {"gt", 2, 2},       {"geq", 2, 2}, {"and", 2, kMany}, {"or", 2, kMany},     {"not", 1, 1},
    {"contains", 2, 2}, {"at", 2, 2},  {"len", 1, 1},     {"defined", 1, kMany}};

} // namespace

bool Sdf_CheckCall(const std::string& function, size_t arguments, std::string* error)
{
    for (const Function& known : kFunctions) {
        if (function == known.name) {
            const bool fits = arguments >= known.least && arguments <= known.most;
            *error = fits
                         ? std::string()
                         : TfStringPrintf("function '%s' does not take %zu arguments", known.name, arguments);
            return fits;
        }
    }
    *error = TfStringPrintf("there is no function '%s'", function.c_str());
    return false;
}

VtValue Sdf_ExpressionEvaluator::Normalize(const VtValue& value)
{
    if (value.IsHolding<int>()) {
        return VtValue(static_cast<std::int64_t>(value.UncheckedGet<int>()));
    }
    if (value.IsHolding<VtArray<int>>()) {
        const auto& items = value.UncheckedGet<VtArray<int>>();
        return VtValue(VtArray<std::int64_t>(items.begin(), items.end()));
    }
    const bool isKnown = value.IsHolding<std::string>() || value.IsHolding<bool>() ||
                         value.IsHolding<std::int64_t>() || value.IsHolding<VtArray<std::string>>() ||
                         value.IsHolding<VtArray<bool>>() || value.IsHolding<VtArray<std::int64_t>>();
    return isKnown ? value : VtValue();
}

std::string Sdf_ExpressionEvaluator::DescribeType(const VtValue& value)
{
    if (value.IsEmpty()) {
        return "None";
    }
    if (value.IsHolding<EmptyList>() || value.IsArrayValued()) {
        return "list";
    }
    return value.IsHolding<std::int64_t>() ? "int" : value.GetTypeName();
}

Result Sdf_ExpressionEvaluator::Evaluate(const Sdf_ExpressionNode& node)
{
    switch (node.kind) {
    case Sdf_ExpressionNode::Kind::Constant:
        return {node.value, {}};
    case Sdf_ExpressionNode::Kind::Text:
        return _EvaluateText(node);
    case Sdf_ExpressionNode::Kind::List:
        return _EvaluateList(node);
    case Sdf_ExpressionNode::Kind::Variable: {
        bool exists = false;
        Result result = _EvaluateVariable(node.text, &exists);
        return exists ? result : fail(TfStringPrintf("Variable '%s' has no value.", node.text.c_str()));
    }
    case Sdf_ExpressionNode::Kind::Call:
        break;
    }
    std::vector<VtValue> arguments;
    std::vector<std::string> errors;
    for (const Sdf_ExpressionNode& part : node.parts) {
        Result result = Evaluate(part);
        errors.insert(errors.end(), result.errors.begin(), result.errors.end());
        arguments.push_back(std::move(result.value));
    }
    return errors.empty() ? _Call(node.text, arguments) : Result{VtValue(), errors};
}

Result Sdf_ExpressionEvaluator::_Call(const std::string& function, const std::vector<VtValue>& arguments)
{
    if (function == "if") {
        return callIf(arguments);
    }
    if (function == "and" || function == "or" || function == "not") {
        return callLogic(function, arguments);
    }
    if (function == "contains") {
        return callContains(arguments[0], arguments[1]);
    }
    if (function == "at") {
        return callAt(arguments[0], arguments[1]);
    }
    if (function == "len") {
        const std::int64_t size = sizeOf(arguments[0]);
        return size < 0 ? fail("len: a list or a string is needed.") : Result{VtValue(size), {}};
    }
    if (function != "defined") {
        return callComparison(function, arguments[0], arguments[1]);
    }
    bool isDefined = true;
    for (const VtValue& name : arguments) {
        if (!name.IsHolding<std::string>()) {
            return fail("defined: the names of variables are needed.");
        }
        isDefined = isDefined && _variables.count(name.UncheckedGet<std::string>()) != 0;
    }
    return {VtValue(isDefined), {}};
}

Result Sdf_ExpressionEvaluator::_EvaluateVariable(const std::string& name, bool* exists)
{
    *exists = true;
    if (std::count(_open.begin(), _open.end(), name) || _open.size() >= kMaxOpen) {
        return fail(TfStringPrintf("Variable '%s' depends on its own value.", name.c_str()));
    }
    _used.insert(name);
    const auto found = _variables.find(name);
    if (found == _variables.end()) {
        *exists = false;
        return {};
    }
    const VtValue value = Normalize(found->second);
    if (value.IsEmpty()) {
        return fail(TfStringPrintf("Variable '%s' has a value of type %s, which expressions cannot hold.",
                                   name.c_str(), found->second.GetTypeName().c_str()));
    }
    if (!value.IsHolding<std::string>() ||
        !SdfVariableExpression::IsExpression(value.UncheckedGet<std::string>())) {
        return {value, {}};
    }
    std::string error;
    const auto parsed = Sdf_ParseExpression(value.UncheckedGet<std::string>(), &error);
    if (!parsed) {
        return fail(TfStringPrintf("In variable '%s': %s", name.c_str(), error.c_str()));
    }
    _open.push_back(name);
    Result result = Evaluate(*parsed);
    _open.pop_back();
    return result;
}

Result Sdf_ExpressionEvaluator::_EvaluateText(const Sdf_ExpressionNode& node)
{
    std::string text;
    for (const Sdf_ExpressionNode& part : node.parts) {
        if (part.kind == Sdf_ExpressionNode::Kind::Constant) {
            text += part.value.UncheckedGet<std::string>();
            continue;
        }
        bool exists = false;
        Result result = _EvaluateVariable(part.text, &exists);
        if (!result.errors.empty()) {
            return result;
        }
        if (!exists) {
            text += part.text; // OpenUSD leaves the name, too
        } else if (result.value.IsHolding<std::string>()) {
            text += result.value.UncheckedGet<std::string>();
        } else if (!result.value.IsEmpty()) {
            return fail(TfStringPrintf("Variable '%s' must be a string to stand in one; it is %s.",
                                       part.text.c_str(), DescribeType(result.value).c_str()));
        }
    }
    return {VtValue(text), {}};
}

Result Sdf_ExpressionEvaluator::_EvaluateList(const Sdf_ExpressionNode& node)
{
    VtValue list;
    std::vector<std::string> errors;
    for (const Sdf_ExpressionNode& part : node.parts) {
        const Result item = Evaluate(part);
        errors.insert(errors.end(), item.errors.begin(), item.errors.end());
        if (item.errors.empty() && !appendTo<std::string>(&list, item.value) &&
            !appendTo<std::int64_t>(&list, item.value) && !appendTo<bool>(&list, item.value)) {
            errors.push_back(TfStringPrintf("A list of %s cannot hold a value of type %s.",
                                            list.IsEmpty() ? "values" : list.GetTypeName().c_str(),
                                            DescribeType(item.value).c_str()));
        }
    }
    if (!errors.empty()) {
        return {VtValue(), errors};
    }
    return {list.IsEmpty() ? VtValue(EmptyList()) : list, {}};
}

PXR_NAMESPACE_CLOSE_SCOPE
