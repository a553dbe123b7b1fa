#pragma once

/// The paths of a crate file: a tree whose elements are tokens, in depth-first order.

#include "pxr/usd/sdf/crate/crateFile.h"

#include <pxr/pxr.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Builds the paths of the tree without recursion. Each index is placed once, so that a tree that jumps back
/// into itself is found out. Throws Sdf_CrateError.
class Sdf_CratePathTreeReader
{
public:
    Sdf_CratePathTreeReader(const Sdf_CrateFile& file, size_t maxDepth, std::vector<SdfPath>* paths);

    /// Reads the items of files before 0.4.0, which lie one behind the other. Those of 0.0.1 begin with 4
    /// unused bytes.
    void ReadTree(Sdf_CrateCursor* cursor, bool padded);
    /// Builds the tree from the lists of later files. An element below 0 is the name of a prim's property. A
    /// jump says what follows: 0 a sibling, -1 a child, -2 neither, another number a child and, so much
    /// further on, a sibling.
    void ReadLists(const Sdf_CrateCursor& at, const std::vector<uint32_t>& indices,
                   const std::vector<int32_t>& elements, const std::vector<int32_t>& jumps);

private:
    struct _Sibling
    {
        uint64_t place;
        SdfPath parent;
        size_t depth;
    };
    const SdfPath& _Place(uint32_t index, uint32_t element, bool isProperty, const Sdf_CrateCursor& at);
    SdfPath _Append(const TfToken& token, uint32_t element, bool isProperty) const;
    SdfPath _AppendSpecial(const std::string& element) const;
    void _Enter(const SdfPath& path, const Sdf_CrateCursor& at);
    bool _NextSibling(uint64_t* place);

    enum _NameKind : unsigned char
    {
        _NameUnknown,
        _NameOfPrim,
        _NameOfProperty,
        _NameOther
    };
    _NameKind _KindOf(uint32_t element, const TfToken& token) const;

    const Sdf_CrateFile& _file;
    size_t _maxDepth;
    std::vector<SdfPath>& _paths;
    mutable std::vector<_NameKind> _kinds; // of the tokens, as far as they were asked for
    SdfPath _parent;
    bool _hasRoot = false;
    size_t _depth = 0;
    std::vector<_Sibling> _siblings;
};

PXR_NAMESPACE_CLOSE_SCOPE
