#pragma once

/// Below this length a vector counts as having none.
#define GF_MIN_VECTOR_LENGTH 1e-10

/// How far from zero the dot product of two unit vectors may be for them to count as orthogonal.
#define GF_MIN_ORTHO_TOLERANCE 1e-6
