#pragma once

/// Expressions over variables, as asset paths and variant selections may hold them: `"${SHOT}/model.usda"`.

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/traits.h>
#include <pxr/base/vt/value.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

struct Sdf_ExpressionNode;

/// A parsed expression: text between backquotes that evaluates to a string, a whole number, true or false, a
/// list of one of them, or nothing. It does not change once it is made. Thread: any.
class SdfVariableExpression
{
public:
    /// Parses an expression, its backquotes included.
    VESK_USD_API explicit SdfVariableExpression(const std::string& expr);
    /// An expression that cannot be evaluated.
    VESK_USD_API SdfVariableExpression();
    VESK_USD_API ~SdfVariableExpression();

    /// Says whether text stands between backquotes. It may still not be a correct expression.
    VESK_USD_API static bool IsExpression(const std::string& s);
    /// Says whether a value can be a variable's.
    VESK_USD_API static bool IsValidVariableType(const VtValue& value);

    /// Says whether the expression was correct.
    VESK_USD_API explicit operator bool() const;
    VESK_USD_API const std::string& GetString() const;
    /// What is wrong with an expression that is not correct.
    VESK_USD_API const std::vector<std::string>& GetErrors() const;

    /// What an empty list evaluates to: nobody knows what it would hold.
    class EmptyList
    {};

    class Result
    {
    public:
        VtValue value;                                 ///< empty after errors, and for None
        std::vector<std::string> errors;               ///< why there is no value
        std::unordered_set<std::string> usedVariables; ///< names that were asked for, there or not
    };

    VESK_USD_API Result Evaluate(const VtDictionary& variables) const;

    /// Evaluates; a result of another type is an error. Nothing is fine.
    template <class ResultType>
    Result EvaluateTyped(const VtDictionary& variables) const
    {
        Result result = Evaluate(variables);
        if (VtIsArray<ResultType>::value && result.value.IsHolding<EmptyList>()) {
            result.value = VtValue(ResultType());
        } else if (!result.value.IsEmpty() && !result.value.IsHolding<ResultType>()) {
            result.errors.push_back(_DescribeType(result.value, VtValue(ResultType())));
            result.value = VtValue();
        }
        return result;
    }

private:
    VESK_USD_API static std::string _DescribeType(const VtValue& got, const VtValue& expected);

    std::string _text;
    std::vector<std::string> _errors;
    std::shared_ptr<const Sdf_ExpressionNode> _root;
};

inline bool operator==(const SdfVariableExpression::EmptyList&, const SdfVariableExpression::EmptyList&)
{
    return true;
}
inline bool operator!=(const SdfVariableExpression::EmptyList&, const SdfVariableExpression::EmptyList&)
{
    return false;
}

PXR_NAMESPACE_CLOSE_SCOPE
