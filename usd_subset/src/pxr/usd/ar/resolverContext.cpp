#include "pxr/usd/ar/pathRules.h"

#include <pxr/usd/ar/resolverContext.h>

#include <functional>

PXR_NAMESPACE_OPEN_SCOPE

ArDefaultResolverContext::ArDefaultResolverContext(const std::vector<std::string>& searchPath)
{
    for (const std::string& directory : searchPath) {
        if (!directory.empty()) {
            _searchPath.push_back(Ar_AbsolutePath(directory));
        }
    }
}

std::string ArDefaultResolverContext::GetAsString() const
{
    std::string text = "Search path: [ ";
    for (const std::string& directory : _searchPath) {
        text += "\n    " + directory;
    }
    return text + (_searchPath.empty() ? "]" : "\n]");
}

size_t hash_value(const ArDefaultResolverContext& context)
{
    size_t hash = 0;
    for (const std::string& directory : context.GetSearchPath()) {
        hash = hash * 1000003u + std::hash<std::string>()(directory);
    }
    return hash;
}

ArResolverContext::ArResolverContext(const std::vector<ArResolverContext>& contexts)
{
    for (const ArResolverContext& context : contexts) {
        if (!_context) {
            _context = context._context;
        }
    }
}

std::string ArResolverContext::GetDebugString() const
{
    return _context ? _context->GetAsString() : std::string();
}

bool ArResolverContext::operator==(const ArResolverContext& rhs) const
{
    return _context == rhs._context || (_context && rhs._context && *_context == *rhs._context);
}

bool ArResolverContext::operator<(const ArResolverContext& rhs) const
{
    return rhs._context && (!_context || *_context < *rhs._context);
}

PXR_NAMESPACE_CLOSE_SCOPE
