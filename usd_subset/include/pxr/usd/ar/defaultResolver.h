#pragma once

/// The search paths of the resolver that reads files on disk.

#include <pxr/pxr.h>
#include <pxr/usd/ar/api.h>
#include <pxr/usd/ar/defaultResolverContext.h>
#include <pxr/usd/ar/resolver.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Settings of the process's resolver.
class ArDefaultResolver
{
public:
    /// Sets the directories that are searched after those of the bound context. Initially they come from the
    /// environment variable PXR_AR_DEFAULT_SEARCH_PATH. Thread: any.
    AR_API static void SetDefaultSearchPath(const std::vector<std::string>& searchPath);
};

PXR_NAMESPACE_CLOSE_SCOPE
