#pragma once

#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A part of a parsed variable expression.
struct Sdf_ExpressionNode
{
    enum class Kind
    {
        Constant, ///< value
        Variable, ///< text is its name
        Text,     ///< the strings of the parts, one after the other
        List,     ///< the parts
        Call      ///< text is the function's name, the parts are its arguments
    };

    Kind kind = Kind::Constant;
    VtValue value;
    std::string text;
    std::vector<Sdf_ExpressionNode> parts;
};

/// Parses an expression with its backquotes. Null, with what is wrong, when it is not correct.
std::shared_ptr<const Sdf_ExpressionNode> Sdf_ParseExpression(const std::string& text, std::string* error);

/// Whether a function takes a number of arguments; else, what is wrong.
bool Sdf_CheckCall(const std::string& function, size_t arguments, std::string* error);

/// Evaluates the parts of expressions over the same variables.
class Sdf_ExpressionEvaluator
{
public:
    struct Result
    {
        VtValue value;
        std::vector<std::string> errors;
    };

    explicit Sdf_ExpressionEvaluator(const VtDictionary& variables) : _variables(variables) {}

    Result Evaluate(const Sdf_ExpressionNode& node);
    std::unordered_set<std::string>& GetUsedVariables() { return _used; }

    /// The value as expressions hold it; empty when they cannot.
    static VtValue Normalize(const VtValue& value);
    static std::string DescribeType(const VtValue& value);

private:
    Result _EvaluateVariable(const std::string& name, bool* exists);
    Result _EvaluateText(const Sdf_ExpressionNode& node);
    Result _EvaluateList(const Sdf_ExpressionNode& node);
    Result _Call(const std::string& function, const std::vector<VtValue>& arguments);

    const VtDictionary& _variables;
    std::unordered_set<std::string> _used;
    std::vector<std::string> _open; // variables whose own expressions are being evaluated
};

PXR_NAMESPACE_CLOSE_SCOPE
