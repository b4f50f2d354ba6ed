#pragma once

#include <string>

/// A vertex of a line of the cadastral document: the name of a point and the style of the segment.
struct CCtsVrt {
    std::string name;
    char lineType = 'C'; ///< C, T, P; V or D with colour P
    char colour = 'N';   ///< V, R, N; P
};
