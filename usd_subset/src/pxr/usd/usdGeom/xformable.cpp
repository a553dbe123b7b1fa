#include <pxr/usd/usdGeom/xformable.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/vt/array.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr char kInvertPrefix[] = "!invert!";

bool _AreInverse(const TfToken& a, const TfToken& b)
{
    return kInvertPrefix + a.GetString() == b.GetString() || kInvertPrefix + b.GetString() == a.GetString();
}

bool _AreInverse(const UsdGeomXformOp& a, const UsdGeomXformOp& b)
{
    return a.GetAttr() == b.GetAttr() && a.IsInverseOp() != b.IsInverseOp();
}

void _WarnOfMissingOp(const UsdPrim& prim, const TfToken& opName)
{
    TF_WARN("xformOpOrder of <%s> names '%s', which the prim does not have; it is left out.",
            prim.GetPath().GetText(), opName.GetText());
}

} // namespace

bool UsdGeomXformable::_GetXformOpOrderValue(VtArray<TfToken>* xformOpOrder) const
{
    const UsdAttribute attribute = GetXformOpOrderAttr();
    if (!attribute) {
        return false;
    }
    attribute.Get(xformOpOrder, UsdTimeCode::Default());
    return true;
}

UsdGeomXformOp UsdGeomXformable::AddXformOp(UsdGeomXformOp::Type opType, UsdGeomXformOp::Precision precision,
                                            const TfToken& opSuffix, bool isInverseOp) const
{
    VtArray<TfToken> order;
    _GetXformOpOrderValue(&order);
    const TfToken opName = UsdGeomXformOp::GetOpName(opType, opSuffix, isInverseOp);
    if (std::find(order.cbegin(), order.cend(), opName) != order.cend()) {
        TF_CODING_ERROR("<%s> has '%s' in its xformOpOrder already.", GetPath().GetText(), opName.GetText());
        return UsdGeomXformOp();
    }
    UsdGeomXformOp op;
    if (const UsdAttribute attribute = GetPrim().GetAttribute(UsdGeomXformOp::GetOpName(opType, opSuffix))) {
        if (UsdGeomXformOp::GetPrecisionFromValueTypeName(attribute.GetTypeName()) != precision) {
            TF_CODING_ERROR("<%s> exists as a %s; the precision asked for is ignored.",
                            attribute.GetPath().GetText(), attribute.GetTypeName().GetAsToken().GetText());
        }
        op = UsdGeomXformOp(attribute, isInverseOp);
    } else {
        op = UsdGeomXformOp(GetPrim(), opType, precision, opSuffix, isInverseOp);
    }
    if (!op) {
        TF_CODING_ERROR("'%s' cannot be added to <%s>.", opName.GetText(), GetPath().GetText());
        return UsdGeomXformOp();
    }
    order.push_back(op.GetOpName());
    CreateXformOpOrderAttr().Set(order);
    return op;
}

UsdGeomXformOp UsdGeomXformable::GetXformOp(UsdGeomXformOp::Type opType, const TfToken& opSuffix,
                                            bool isInverseOp) const
{
    VtArray<TfToken> order;
    _GetXformOpOrderValue(&order);
    const TfToken opName = UsdGeomXformOp::GetOpName(opType, opSuffix, isInverseOp);
    if (std::find(order.cbegin(), order.cend(), opName) == order.cend()) {
        return UsdGeomXformOp();
    }
    return UsdGeomXformOp(GetPrim().GetAttribute(UsdGeomXformOp::GetOpName(opType, opSuffix)), isInverseOp);
}

bool UsdGeomXformable::SetResetXformStack(bool resetXform) const
{
    VtArray<TfToken> order;
    _GetXformOpOrderValue(&order);
    const TfToken& reset = UsdGeomXformOpTypes->resetXformStack;
    // Ops before the last reset have no effect, hence they go with it.
    const auto last =
        std::find(std::make_reverse_iterator(order.cend()), std::make_reverse_iterator(order.cbegin()), reset)
            .base();
    const bool resets = last != order.cbegin();
    if (resets == resetXform) {
        return true;
    }
    VtArray<TfToken> changed;
    if (resetXform) {
        changed.push_back(reset);
    }
    for (auto it = resetXform ? order.cbegin() : last; it != order.cend(); ++it) {
        changed.push_back(*it);
    }
    return CreateXformOpOrderAttr().Set(changed);
}

bool UsdGeomXformable::GetResetXformStack() const
{
    VtArray<TfToken> order;
    return _GetXformOpOrderValue(&order) &&
           std::find(order.cbegin(), order.cend(), UsdGeomXformOpTypes->resetXformStack) != order.cend();
}

bool UsdGeomXformable::SetXformOpOrder(const std::vector<UsdGeomXformOp>& orderedXformOps,
                                       bool resetXformStack) const
{
    VtArray<TfToken> order;
    if (resetXformStack) {
        order.push_back(UsdGeomXformOpTypes->resetXformStack);
    }
    for (const UsdGeomXformOp& op : orderedXformOps) {
        if (op.GetAttr().GetPrim() != GetPrim()) {
            TF_CODING_ERROR("<%s> cannot be a transform op of <%s>.", op.GetAttr().GetPath().GetText(),
                            GetPath().GetText());
            return false;
        }
        order.push_back(op.GetOpName());
    }
    return CreateXformOpOrderAttr().Set(order);
}

bool UsdGeomXformable::ClearXformOpOrder() const { return SetXformOpOrder({}); }

UsdGeomXformOp UsdGeomXformable::MakeMatrixXform() const
{
    ClearXformOpOrder();
    bool resets = false;
    if (!GetOrderedXformOps(&resets).empty()) {
        TF_WARN("The xformOpOrder of <%s> cannot be cleared: a stronger layer holds it.",
                GetPath().GetText());
        return UsdGeomXformOp();
    }
    return AddTransformOp();
}

std::vector<UsdGeomXformOp> UsdGeomXformable::GetOrderedXformOps(bool* resetsXformStack) const
{
    return _GetOrderedXformOps(resetsXformStack, /*withQueries=*/false);
}

std::vector<UsdGeomXformOp> UsdGeomXformable::_GetOrderedXformOps(bool* resetsXformStack,
                                                                  bool withQueries) const
{
    std::vector<UsdGeomXformOp> ops;
    bool resets = false;
    VtArray<TfToken> order;
    _GetXformOpOrderValue(&order);
    const UsdPrim prim = GetPrim();
    for (const TfToken& opName : std::as_const(order)) {
        if (opName == UsdGeomXformOpTypes->resetXformStack) {
            resets = true;
            ops.clear();
            continue;
        }
        bool isInverse = false;
        const UsdAttribute attribute = UsdGeomXformOp::_GetXformOpAttr(prim, opName, &isInverse);
        if (!attribute) {
            _WarnOfMissingOp(prim, opName);
            continue;
        }
        UsdGeomXformOp& op = ops.emplace_back();
        op._attr = attribute;
        op._isInverseOp = isInverse;
        op._Init();
        if (withQueries) {
            op._CreateAttributeQuery();
        }
    }
    if (resetsXformStack) {
        *resetsXformStack = resets;
    } else {
        TF_CODING_ERROR("resetsXformStack is null.");
    }
    return ops;
}

bool UsdGeomXformable::GetLocalTransformation(GfMatrix4d* transform, bool* resetsXformStack,
                                              UsdTimeCode time) const
{
    if (!transform || !resetsXformStack) {
        TF_CODING_ERROR("The transformation of <%s> needs both results to be written to.",
                        GetPath().GetText());
        return false;
    }
    transform->SetIdentity();
    *resetsXformStack = false;
    VtArray<TfToken> order;
    if (!_GetXformOpOrderValue(&order)) {
        return false;
    }
    const VtArray<TfToken>& names = order;
    const UsdPrim prim = GetPrim();
    for (size_t i = names.size(); i-- > 0;) {
        if (i > 0 && _AreInverse(names[i], names[i - 1])) {
            --i;
            continue;
        }
        if (names[i] == UsdGeomXformOpTypes->resetXformStack) {
            *resetsXformStack = true;
            break;
        }
        bool isInverse = false;
        const UsdAttribute attribute = UsdGeomXformOp::_GetXformOpAttr(prim, names[i], &isInverse);
        if (!attribute) {
            _WarnOfMissingOp(prim, names[i]);
            continue;
        }
        const UsdGeomXformOp op(attribute, isInverse);
        const GfMatrix4d matrix = op ? op.GetOpTransform(time) : GfMatrix4d(1.0);
        if (matrix != GfMatrix4d(1.0)) {
            *transform *= matrix;
        }
    }
    return true;
}

bool UsdGeomXformable::GetLocalTransformation(GfMatrix4d* transform, bool* resetsXformStack,
                                              const std::vector<UsdGeomXformOp>& ops, UsdTimeCode time) const
{
    if (resetsXformStack) {
        *resetsXformStack = GetResetXformStack();
    } else {
        TF_CODING_ERROR("resetsXformStack is null.");
    }
    return GetLocalTransformation(transform, ops, time);
}

bool UsdGeomXformable::GetLocalTransformation(GfMatrix4d* transform, const std::vector<UsdGeomXformOp>& ops,
                                              UsdTimeCode time)
{
    if (!transform) {
        TF_CODING_ERROR("transform is null.");
        return false;
    }
    GfMatrix4d result(1.0);
    for (size_t i = ops.size(); i-- > 0;) {
        if (i > 0 && _AreInverse(ops[i], ops[i - 1])) {
            --i;
            continue;
        }
        const GfMatrix4d matrix = ops[i].GetOpTransform(time);
        if (matrix != GfMatrix4d(1.0)) {
            result *= matrix;
        }
    }
    *transform = result;
    return true;
}

bool UsdGeomXformable::IsTransformationAffectedByAttrNamed(const TfToken& attrName)
{
    return attrName == UsdGeomTokens->xformOpOrder || UsdGeomXformOp::IsXformOp(attrName);
}

PXR_NAMESPACE_CLOSE_SCOPE
