#pragma once

#include <cstddef>

namespace vesk::tests {

/// Runs what is queued for the default pool, also what that queues, on the calling thread; returns how much
/// that was.
std::size_t runPooledWork();

/// Runs the first piece, if any; true when one ran.
bool runPooledPiece();

/// Destroys what is queued for the default pool.
void dropPooledWork();

} // namespace vesk::tests
