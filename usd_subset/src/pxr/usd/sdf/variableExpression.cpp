#include <pxr/usd/sdf/variableExpression.h>

#include "pxr/usd/sdf/expressionNodes.h"

#include <pxr/base/tf/stringUtils.h>

PXR_NAMESPACE_OPEN_SCOPE

SdfVariableExpression::SdfVariableExpression() : _errors{"There is no expression."} {}

SdfVariableExpression::SdfVariableExpression(const std::string& expr) : _text(expr)
{
    std::string error;
    _root = Sdf_ParseExpression(expr, &error);
    if (!_root) {
        _errors.push_back(error);
    }
}

SdfVariableExpression::~SdfVariableExpression() = default;

bool SdfVariableExpression::IsExpression(const std::string& s)
{
    return s.size() > 2 && s.front() == '`' && s.back() == '`';
}

bool SdfVariableExpression::IsValidVariableType(const VtValue& value)
{
    return value.IsEmpty() || value.IsHolding<EmptyList>() ||
           !Sdf_ExpressionEvaluator::Normalize(value).IsEmpty();
}

SdfVariableExpression::operator bool() const { return static_cast<bool>(_root); }

const std::string& SdfVariableExpression::GetString() const { return _text; }

const std::vector<std::string>& SdfVariableExpression::GetErrors() const { return _errors; }

SdfVariableExpression::Result SdfVariableExpression::Evaluate(const VtDictionary& variables) const
{
    if (!_root) {
        return {VtValue(), _errors, {}};
    }
    Sdf_ExpressionEvaluator evaluator(variables);
    Sdf_ExpressionEvaluator::Result result = evaluator.Evaluate(*_root);
    return {std::move(result.value), std::move(result.errors), std::move(evaluator.GetUsedVariables())};
}

std::string SdfVariableExpression::_DescribeType(const VtValue& got, const VtValue& expected)
{
    return TfStringPrintf("The expression gives a value of type %s, but %s is needed.",
                          got.GetTypeName().c_str(), expected.GetTypeName().c_str());
}

PXR_NAMESPACE_CLOSE_SCOPE
