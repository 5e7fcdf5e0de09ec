// VecInspection.h: a vector's two members, read as they lie, so that tests can tell its three modes apart.

#ifndef VECINSPECTION_H
#define VECINSPECTION_H

#include "Vec.h"

#include <array>
#include <cstring>
#include <ostream>

struct VecMembers
{
    double * values;
    int * count;
};
static_assert(sizeof(VecMembers) == sizeof(Vec));

inline VecMembers members(Vec const & v)
{
    VecMembers result;
    std::memcpy(&result, static_cast<void const *>(&v), sizeof(result));
    return result;
}

inline int countOf(Vec const & v)
{
    return members(v).count ? *members(v).count : 0; // 0: a view or an unowned block
}

// A counted vector; the constructor from three doubles would leak its block.
inline Vec vec(double x, double y, double z)
{
    double const row[3] = {x, y, z};
    return Vec(row);
}

inline std::array<double, 3> values(Vec const & v)
{
    return {v[0], v[1], v[2]};
}

inline std::ostream & operator<<(std::ostream & stream, Vec const & v)
{
    return stream << "(" << v[0] << ", " << v[1] << ", " << v[2] << ")";
}

#endif
