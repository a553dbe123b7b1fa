#pragma once

/// The names of the views and proxies that specs and layers return.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/childrenProxy.h>
#include <pxr/usd/sdf/childrenView.h>
#include <pxr/usd/sdf/declareHandles.h>
#include <pxr/usd/sdf/listEditorProxy.h>
#include <pxr/usd/sdf/listProxy.h>
#include <pxr/usd/sdf/mapEditProxy.h>
#include <pxr/usd/sdf/types.h>

PXR_NAMESPACE_OPEN_SCOPE

typedef SdfListProxy<SdfNameTokenKeyPolicy> SdfNameOrderProxy;
typedef SdfListProxy<SdfSubLayerTypePolicy> SdfSubLayerProxy;
typedef SdfListEditorProxy<SdfNameKeyPolicy> SdfNameEditorProxy;
typedef SdfListEditorProxy<SdfPathKeyPolicy> SdfPathEditorProxy;
typedef SdfListEditorProxy<SdfPayloadTypePolicy> SdfPayloadEditorProxy;
typedef SdfListEditorProxy<SdfReferenceTypePolicy> SdfReferenceEditorProxy;

typedef SdfChildrenView<Sdf_AttributeChildPolicy> SdfAttributeSpecView;
typedef SdfChildrenView<Sdf_PrimChildPolicy> SdfPrimSpecView;
typedef SdfChildrenView<Sdf_PropertyChildPolicy> SdfPropertySpecView;
typedef SdfChildrenView<Sdf_RelationshipChildPolicy> SdfRelationshipSpecView;
typedef SdfChildrenView<Sdf_VariantChildPolicy> SdfVariantView;
typedef SdfChildrenView<Sdf_VariantSetChildPolicy> SdfVariantSetView;
typedef SdfChildrenProxy<SdfVariantSetView> SdfVariantSetsProxy;

typedef SdfNameOrderProxy SdfNameChildrenOrderProxy;
typedef SdfNameOrderProxy SdfPropertyOrderProxy;
typedef SdfPathEditorProxy SdfConnectionsProxy;
typedef SdfPathEditorProxy SdfInheritsProxy;
typedef SdfPathEditorProxy SdfSpecializesProxy;
typedef SdfPathEditorProxy SdfTargetsProxy;
typedef SdfPayloadEditorProxy SdfPayloadsProxy;
typedef SdfReferenceEditorProxy SdfReferencesProxy;
typedef SdfNameEditorProxy SdfVariantSetNamesProxy;

typedef SdfMapEditProxy<VtDictionary> SdfDictionaryProxy;
typedef SdfMapEditProxy<SdfVariantSelectionMap> SdfVariantSelectionProxy;
typedef SdfMapEditProxy<SdfRelocatesMap> SdfRelocatesMapProxy;

/// Return a proxy for a list-op field of a spec.
SDF_API SdfPathEditorProxy SdfGetPathEditorProxy(const SdfSpecHandle& spec, const TfToken& pathField);
SDF_API SdfReferenceEditorProxy SdfGetReferenceEditorProxy(const SdfSpecHandle& spec,
                                                           const TfToken& referenceField);
SDF_API SdfPayloadEditorProxy SdfGetPayloadEditorProxy(const SdfSpecHandle& spec,
                                                       const TfToken& payloadField);
/// Returns a proxy for a field that orders names.
SDF_API SdfNameOrderProxy SdfGetNameOrderProxy(const SdfSpecHandle& spec, const TfToken& orderField);

PXR_NAMESPACE_CLOSE_SCOPE
