#pragma once

/// The tables of names that a crate file is written with.

#include "pxr/usd/sdf/crate/crateFormat.h"

#include <pxr/base/tf/token.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>

#include <string>
#include <unordered_map>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Gives tokens, strings and paths their indices, in the order in which they are first asked for. What cannot
/// be written is noted, and the file is then not to be finished. Thread: one.
class Sdf_CrateNames
{
public:
    Sdf_CrateNames();

    uint32_t IndexOf(const TfToken& token);
    uint32_t IndexOf(const std::string& text);
    uint32_t IndexOf(const SdfPath& path);

    const std::vector<TfToken>& GetTokens() const { return _tokens; }
    /// Returns the tokens of the strings.
    const std::vector<uint32_t>& GetStrings() const { return _strings; }
    const std::vector<SdfPath>& GetPaths() const { return _paths; }

    /// The tree of the paths, as Sdf_CratePathTreeReader::ReadLists() takes it.
    struct Tree
    {
        std::vector<uint32_t> indices;
        std::vector<int32_t> elements;
        std::vector<int32_t> jumps;
    };
    Tree MakeTree() const;

    /// Returns why the names cannot be written; empty where they can.
    const std::string& GetFault() const { return _fault; }

private:
    std::vector<std::vector<uint32_t>> _ChildrenInOrder() const;
    int32_t _ElementOf(const SdfPath& path) const;

    std::vector<TfToken> _tokens;
    std::vector<uint32_t> _strings;
    std::vector<SdfPath> _paths;
    std::unordered_map<TfToken, uint32_t, TfToken::HashFunctor> _tokenIndices;
    std::unordered_map<std::string, uint32_t> _stringIndices;
    std::unordered_map<SdfPath, uint32_t, SdfPath::Hash> _pathIndices;
    std::string _fault;
};

PXR_NAMESPACE_CLOSE_SCOPE
