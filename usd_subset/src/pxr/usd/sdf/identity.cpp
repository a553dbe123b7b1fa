#include <pxr/usd/sdf/identity.h>
#include <pxr/usd/sdf/layer.h>

PXR_NAMESPACE_OPEN_SCOPE

void Sdf_IdentityRegistry::_Release::operator()(Sdf_Identity* identity) const
{
    if (const std::shared_ptr<_Table> live = table.lock()) {
        const std::lock_guard<std::mutex> lock(live->mutex);
        const auto it = live->identities.find(identity->_path);
        // Another identity may have taken the place since the last reference to this one went.
        if (it != live->identities.end() && it->second.expired()) {
            live->identities.erase(it);
        }
    }
    delete identity;
}

Sdf_IdentityRefPtr Sdf_IdentityRegistry::Identify(const SdfLayerHandle& layer, const SdfPath& path)
{
    const std::lock_guard<std::mutex> lock(_table->mutex);
    std::weak_ptr<Sdf_Identity>& entry = _table->identities[path];
    Sdf_IdentityRefPtr identity = entry.lock();
    if (!identity) {
        identity = Sdf_IdentityRefPtr(new Sdf_Identity(layer, path), _Release{_table});
        entry = identity;
    }
    return identity;
}

void Sdf_IdentityRegistry::MoveIdentity(const SdfPath& oldPath, const SdfPath& newPath)
{
    Sdf_IdentityRefPtr moved;
    Sdf_IdentityRefPtr replaced;
    const std::lock_guard<std::mutex> lock(_table->mutex);
    const auto it = _table->identities.find(oldPath);
    if (it == _table->identities.end()) {
        return;
    }
    moved = it->second.lock();
    _table->identities.erase(it);
    if (!moved) {
        return;
    }
    std::weak_ptr<Sdf_Identity>& entry = _table->identities[newPath];
    replaced = entry.lock();
    if (replaced) {
        replaced->_path = SdfPath();
    }
    entry = moved;
    moved->_path = newPath;
}

PXR_NAMESPACE_CLOSE_SCOPE
