#pragma once

#include "contract_session.h"

#include <pxr/usd/usd/attribute.h>

namespace vesk::tests::contract {

/// Sets an attribute at the default time by an edit of the document, and waits until its renderers were told.
template <class T>
void setValue(ContractSession& session, const char* prim, const char* attribute, const T& value)
{
    session.document
        ->edit("edit",
               [&](const auto& context) {
                   return context.stage()
                       ->GetPrimAtPath(PXR_NS::SdfPath(prim))
                       .GetAttribute(PXR_NS::TfToken(attribute))
                       .Set(value);
               })
        .get();
    session.document->waitUntilIdle();
}

} // namespace vesk::tests::contract
